// Xls: opening a compound file and reading its streams.  Every sector
// number is checked against the file, every chain is bounded by the number
// of entries of its table, and no table is sized beyond what the file holds.
#include "biff/xls.h"

#include "book/tberror.h"

#include <algorithm>
#include <cstring>

namespace tabrix {

namespace {
std::string num(uint64_t v) { return std::to_string(v); }
} // namespace

void XlsCore::readRaw(void *buffer, size_t length) {
    stream_->read(static_cast<char *>(buffer), std::streamsize(length));
    if (size_t(stream_->gcount()) != length) {
        stream_->clear();
        throw tberror("Xls::read(): file is truncated");
    }
}

uint32_t XlsCore::fatNext(uint32_t n) const {
    if (n >= fat_.size()) throw tberror("Xls: sector #" + num(n) + " is not found in _fat");
    return fat_[n];
}

uint32_t XlsCore::miniFatNext(uint32_t m) const {
    if (m >= miniFat_.size())
        throw tberror("Xls: mini sector #" + num(m) + " is not found in _minifat");
    return miniFat_[m];
}

void XlsCore::goSector(uint32_t n) {
    uint64_t pos = (uint64_t(n) + 1) * sectorSize_;
    if (pos >= fileSize_) throw tberror("Xls: sector #" + num(n) + " is out of the file");
    stream_->clear();
    if (stream_->tellg() != std::streamoff(pos)) stream_->seekg(std::streamoff(pos));
}

void XlsCore::goMiniSector(uint32_t m) {
    if (m >= miniFat_.size())
        throw tberror("Xls: mini sector #" + num(m) + " is not found in _minifat");
    if (!rootChainBuilt_) {
        // The root's chain, cut where it ends, leaves the table or the file,
        // or loops back: mini sectors beyond it are simply out of reach.
        rootChainBuilt_ = true;
        rootChain_.clear();
        uint64_t limit = uint64_t(fileSize_ / sectorSize_) + 1;
        uint32_t s = dir_.empty() ? kEndOfChain : dir_[0].startingSectorLocation;
        while (s < fat_.size() && rootChain_.size() < limit) {
            rootChain_.push_back(s);
            s = fat_[s];
        }
    }
    uint32_t perSector = sectorSize_ / miniSectorSize_;
    uint32_t index = m / perSector;
    if (index >= rootChain_.size())
        throw tberror("Xls: mini sector #" + num(m) + " is out of the file");
    uint32_t s = rootChain_[index];
    uint64_t pos = uint64_t(s) * sectorSize_ + sectorSize_ +
                   uint64_t(m % perSector) * miniSectorSize_;
    if (pos + miniSectorSize_ > fileSize_)
        throw tberror("Xls: mini sector #" + num(m) + " is out of the file");
    stream_->clear();
    stream_->seekg(std::streamoff(pos));
}

void XlsCore::readHeader(unsigned &total) {
    uint8_t raw[kHeaderSize];
    if (fileSize_ >= 2) {
        // The formats 2.x to 4.x are a bare record stream, headed by a BOF
        // (ids 0x0009, 0x0209, 0x0409) where a container has its signature.
        stream_->clear();
        stream_->seekg(0);
        readRaw(raw, 2);
        if (raw[0] == 0x09 && (raw[1] == 0x00 || raw[1] == 0x02 || raw[1] == 0x04))
            throw tberror("a bare record stream of the binary formats before 5.0 isn't supported");
    }
    if (fileSize_ < kHeaderSize) throw tberror("readHeader: file is corrupt (size < 512 bytes)");
    stream_->clear();
    stream_->seekg(0);
    readRaw(raw, 8);
    header_.fromBytes(raw); // signature only so far
    if (!header_.hasSignature()) throw tberror("invalid file format");
    readRaw(raw + 8, kHeaderSize - 8);
    header_.fromBytes(raw);
    total += kHeaderSize;
    rootChain_.clear();
    rootChainBuilt_ = false;
    keepCutoff_ = std::min<uint32_t>(header_.miniStreamCutoff, 4096);
    sectorSize_ = 1u << (header_.sectorShift % 32);
    miniSectorSize_ = 1u << (header_.miniSectorShift % 32);
    // Sectors must hold at least one directory entry, and mini sectors must
    // divide them; anything else could not describe a readable file.
    if (sectorSize_ < kDirEntrySize || sectorSize_ > (1u << 20) ||
        miniSectorSize_ > sectorSize_)
        throw tberror("readHeader: unsupported sector size");

    loadDifat(total);
    loadFat(total);
    loadMiniFat(total);
    loadDir(total);
    setWorkbookEntry();

    const DirEntry &wb = dir_[workbook_];
    curSector_ = wb.startingSectorLocation;
    if (curSector_ == kEndOfChain) throw tberror("Xls::read(): workbook stream is empty");
    if (wb.streamSize < 4096) {
        goMiniSector(curSector_);
    } else {
        // Tolerate a start that points at a marker sector by stepping on to
        // the next sector number; a stream that fits one sector may end there.
        while (curSector_ < fat_.size() &&
               (fat_[curSector_] == kFatSector || fat_[curSector_] == kSectorFree ||
                (fat_[curSector_] == kEndOfChain && wb.streamSize > sectorSize_)))
            ++curSector_;
        goSector(curSector_);
    }
    sectorOffset_ = 0;
    readTotal_ = 0;
    hops_ = 0;
    eof_ = false;
}

void XlsCore::loadDifat(unsigned &total) {
    uint32_t perSector = sectorSize_ / 4 - 1;
    if (uint64_t(header_.numDifatSectors) * sectorSize_ > fileSize_)
        throw tberror("loadDifat: file is corrupt [1]");
    difat_.assign(header_.difat, header_.difat + kHeaderDifatCount);
    difat_.resize(kHeaderDifatCount + size_t(header_.numDifatSectors) * perSector, kSectorFree);
    std::vector<uint8_t> buf(sectorSize_);
    uint32_t s = header_.firstDifatSector;
    uint32_t count = 0;
    size_t pos = kHeaderDifatCount;
    while (s != kEndOfChain && s != kSectorFree) {
        if (count >= header_.numDifatSectors)
            throw tberror("Xls::loadDifat(): difat chain contains more sectors than "
                          "_header.numDifatSectors (" + num(header_.numDifatSectors) + ")");
        goSector(s);
        total += perSector * 4;
        if (total > fileSize_) throw tberror("loadDifat: file is corrupt [1]");
        readRaw(buf.data(), sectorSize_);
        for (uint32_t i = 0; i < perSector; ++i) difat_[pos++] = getLE32(&buf[4 * i]);
        total += 4;
        if (total > fileSize_) throw tberror("loadDifat: file is corrupt [2]");
        s = getLE32(&buf[4 * perSector]);
        ++count;
    }
    if (count != header_.numDifatSectors)
        throw tberror("Xls::loadDifat(): difat chain sectors (" + num(count) +
                      ") not equal _header.numDifatSectors (" +
                      num(header_.numDifatSectors) + ")");
}

void XlsCore::loadFat(unsigned &total) {
    size_t count = size_t(std::count_if(difat_.begin(), difat_.end(), notFree));
    if (count != header_.numFatSectors)
        throw tberror("Xls::loadFat(): extract fat sectors (" + num(count) +
                      ") not equal _header.numFatSectors (" + num(header_.numFatSectors) +
                      ")");
    if (uint64_t(count) * sectorSize_ > fileSize_) throw tberror("loadFat: file is corrupt");
    uint32_t perSector = sectorSize_ / 4;
    fat_.assign(count * perSector, kSectorFree);
    std::vector<uint8_t> buf(sectorSize_);
    size_t pos = 0;
    for (uint32_t s : difat_) {
        if (!notFree(s)) continue;
        total += sectorSize_;
        if (total > fileSize_) throw tberror("loadFat: file is corrupt");
        goSector(s);
        readRaw(buf.data(), sectorSize_);
        for (uint32_t i = 0; i < perSector; ++i) fat_[pos++] = getLE32(&buf[4 * i]);
    }
}

void XlsCore::loadMiniFat(unsigned &total) {
    miniFat_.clear();
    uint32_t s = header_.miniFatSectorLocation;
    uint32_t count = header_.numMiniFatSectors;
    if (s == kEndOfChain || s == kSectorFree || count == 0) return;
    if (uint64_t(count) * sectorSize_ > fileSize_) throw tberror("loadMiniFat: file is corrupt");
    uint32_t perSector = sectorSize_ / 4;
    miniFat_.assign(size_t(count) * perSector, kSectorFree);
    std::vector<uint8_t> buf(sectorSize_);
    size_t pos = 0;
    for (;;) {
        if (pos >= miniFat_.size()) throw tberror("error in loading minifat");
        total += sectorSize_;
        if (total > fileSize_) throw tberror("loadMiniFat: file is corrupt");
        goSector(s);
        readRaw(buf.data(), sectorSize_);
        for (uint32_t i = 0; i < perSector; ++i) miniFat_[pos++] = getLE32(&buf[4 * i]);
        uint32_t next = fatNext(s);
        if (next == s) throw tberror("loadMiniFat: error in fat");
        if (next == kEndOfChain) break;
        s = next;
    }
}

void XlsCore::loadDir(unsigned &total) {
    dir_.clear();
    uint32_t first = header_.firstDirSector;
    if (first == kEndOfChain) return;
    uint64_t sectors = 0;
    for (uint32_t s = first; s != kEndOfChain;) {
        if (s >= fat_.size())
            throw tberror("Xls::loadDir(): sector #" + num(s) + " is not found in _fat");
        uint32_t next = fat_[s];
        if (next == s) throw tberror("loadDir: error in fat [1]");
        ++sectors;
        // Also ends a cyclic chain: it would soon claim more than the file.
        if (sectors * sectorSize_ > fileSize_) throw tberror("loadDir: file is corrupt [1]");
        s = next;
    }
    uint32_t perSector = sectorSize_ / kDirEntrySize;
    dir_.assign(size_t(sectors) * perSector, DirEntry());
    std::vector<uint8_t> buf(sectorSize_);
    size_t pos = 0;
    for (uint32_t s = first; s != kEndOfChain;) {
        if (pos >= dir_.size()) throw tberror("Xls::loadDir(): unexpected DirEntry found");
        total += sectorSize_;
        if (total > fileSize_) throw tberror("loadDir: file is corrupt [2]");
        goSector(s);
        readRaw(buf.data(), sectorSize_);
        for (uint32_t i = 0; i < perSector; ++i) dir_[pos++].fromBytes(&buf[i * kDirEntrySize]);
        uint32_t next = fatNext(s);
        if (next == s) throw tberror("loadDir: error in fat [2]");
        s = next;
    }
}

void XlsCore::setWorkbookEntry() {
    for (size_t i = 0; i < dir_.size(); ++i)
        if (dir_[i].isWorkbook()) {
            workbook_ = i;
            return;
        }
    for (size_t i = 0; i < dir_.size(); ++i)
        if (dir_[i].isBook()) {
            workbook_ = i;
            return;
        }
    throw tberror("Xls::read(): workbook section is not found");
}

// The whole of sector curSector_, or what of it the file holds.
void XlsCore::fillCache() {
    goSector(curSector_);
    uint64_t pos = (uint64_t(curSector_) + 1) * sectorSize_;
    size_t avail = size_t(std::min<uint64_t>(sectorSize_, fileSize_ - pos));
    cached_ = kNoSector;
    if (memory_) {
        sector_ = memory_ + pos;
    } else {
        cache_.resize(sectorSize_);
        readRaw(cache_.data(), avail);
        sector_ = cache_.data();
    }
    cacheLen_ = uint32_t(avail);
    cached_ = curSector_;
}

size_t XlsCore::read(void *buffer, size_t length) {
    if (size() < 4096 && length < 4096) return readMini(buffer, length);
    uint8_t *out = static_cast<uint8_t *>(buffer);
    size_t done = 0;
    while (done < length) {
        if (sectorOffset_ >= sectorSize_) {
            uint32_t next = fatNext(curSector_);
            if (next == kEndOfChain) {
                eof_ = true;
                return done;
            }
            // A chain can't visit more sectors than the file holds.
            if (++hops_ > uint64_t(fileSize_ / sectorSize_) + 1)
                throw tberror("Xls::read(): fat chain is cyclic");
            curSector_ = next;
            sectorOffset_ = 0;
        }
        if (cached_ != curSector_) fillCache();
        size_t chunk = std::min<size_t>(length - done, sectorSize_ - sectorOffset_);
        if (sectorOffset_ + chunk > cacheLen_) throw tberror("Xls::read(): file is truncated");
        std::memcpy(out + done, sector_ + sectorOffset_, chunk);
        sectorOffset_ += uint32_t(chunk);
        done += chunk;
        readTotal_ += chunk;
    }
    return done;
}

size_t XlsCore::readMini(void *buffer, size_t length) {
    cached_ = kNoSector; // mini sector numbers must not hit the sector cache
    uint8_t *out = static_cast<uint8_t *>(buffer);
    size_t done = 0;
    while (done < length) {
        if (sectorOffset_ >= miniSectorSize_) {
            uint32_t next = miniFatNext(curSector_);
            if (next == kEndOfChain) {
                eof_ = true;
                return done;
            }
            // Only a stream below 4096 bytes is served from the mini stream.
            if (++hops_ > std::min<uint64_t>(miniFat_.size(), 4096 / miniSectorSize_ + 1))
                throw tberror("Xls::read(): minifat chain is cyclic");
            curSector_ = next;
            goMiniSector(curSector_);
            sectorOffset_ = 0;
        }
        size_t chunk = std::min<size_t>(length - done, miniSectorSize_ - sectorOffset_);
        readRaw(out + done, chunk);
        sectorOffset_ += uint32_t(chunk);
        done += chunk;
        readTotal_ += chunk;
    }
    return done;
}

void XlsCore::readInt16Slow(uint16_t &value) {
    uint8_t b[2] = {0, 0};
    value = read(b, 2) == 2 ? getLE16(b) : 0;
}

void XlsCore::readInt32Slow(uint32_t &value) {
    uint8_t b[4] = {0, 0, 0, 0};
    value = read(b, 4) == 4 ? getLE32(b) : 0;
}

void XlsCore::readDouble(double &value) {
    uint8_t b[8] = {0};
    if (read(b, 8) != 8) {
        value = 0;
        return;
    }
    uint64_t bits = uint64_t(getLE32(b)) | (uint64_t(getLE32(b + 4)) << 32);
    std::memcpy(&value, &bits, 8);
}

// A whole stream of a known size: through the mini stream when it is below
// the cutoff (the root's own stream always lives in the FAT).
std::vector<uint8_t> XlsCore::readWholeStream(const DirEntry &e) {
    uint64_t size = e.streamSize;
    if (size > fileSize_) throw tberror("Xls::readSections(): stream size is out of the file");
    std::vector<uint8_t> bytes(size_t(size), 0);
    bool mini = e.type != DirEntry::Root && !e.isRoot() && size < header_.miniStreamCutoff;
    uint32_t unit = mini ? miniSectorSize_ : sectorSize_;
    size_t limit = mini ? miniFat_.size() : fat_.size();
    uint32_t s = e.startingSectorLocation;
    size_t done = 0, hops = 0;
    while (done < size) {
        if (s == kEndOfChain || s == kSectorFree)
            throw tberror("Xls::readSections(): stream is shorter than its size");
        if (++hops > limit + 1) throw tberror("Xls::readSections(): fat chain is cyclic");
        if (mini)
            goMiniSector(s);
        else
            goSector(s);
        size_t chunk = std::min<size_t>(size - done, unit);
        readRaw(bytes.data() + done, chunk);
        done += chunk;
        s = mini ? miniFatNext(s) : fatNext(s);
    }
    return bytes;
}

void XlsCore::readSections() {
    kept_.clear();
    // Streams don't share sectors, so together they can't exceed the file;
    // this bounds the memory a hostile directory can ask for.
    uint64_t keptTotal = 0;
    // The workbook cursor stays valid: its read position comes back after.
    std::streamoff resume = stream_->tellg();
    for (size_t i = 0; i < dir_.size(); ++i) {
        const DirEntry &e = dir_[i];
        if (i == workbook_ || e.startingSectorLocation == kEndOfChain ||
            e.startingSectorLocation == kSectorFree || e.type == DirEntry::Unknown ||
            e.type == DirEntry::Storage)
            continue;
        // The root's stream is the mini stream, which keeps the small
        // streams alive.  Some producers leave the root's name empty, so its
        // type counts as much as its name.
        bool root = e.isRoot() || e.type == DirEntry::Root;
        if (e.streamSize < keepCutoff_ && !(root && e.streamSize != 0)) continue;
        keptTotal += e.streamSize;
        if (keptTotal > fileSize_)
            throw tberror("Xls::readSections(): streams are larger than the file");
        kept_[i] = readWholeStream(e);
    }
    stream_->clear();
    if (resume >= 0) stream_->seekg(resume);
}

} // namespace tabrix
