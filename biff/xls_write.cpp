// Xls: writing a compound file.  Order behind the header: workbook stream,
// kept streams in directory order, mini FAT, DIFAT, FAT, directory; every
// stream in one contiguous run of 512-byte sectors.
#include "biff/xls.h"

#include "biff/cfb_fat.h"
#include "book/tberror.h"

#include <cstring>
#include <utility>

namespace tabrix {

namespace {
const char *const kWriteError = "stream error, perhaps it's too small writing buffer";
const uint32_t kWriteSector = 512;
const uint32_t kMinWorkbook = 4096;

uint32_t sectorsFor(uint64_t bytes) { return uint32_t((bytes + kWriteSector - 1) / kWriteSector); }
} // namespace

void XlsCore::checkWritable() const {
    if (!stream_ && !toMemory_) throw tberror(kWriteError);
}

void XlsCore::noWritePos() { throw tberror("can't get the current write position"); }

void XlsCore::writeToMemory() {
    stream_ = nullptr;
    toMemory_ = true;
}

// `length` more bytes at the end of the output, to be filled by the caller.
char *XlsCore::appendRoom(size_t length) {
    checkWritable();
    if (length > out_.capacityBytes() - outSize_) out_.grow(outSize_ + length, outSize_);
    char *at = out_.bytes() + outSize_;
    outSize_ += length;
    return at;
}

void XlsCore::writeRaw(const void *buffer, size_t length) {
    char *at = appendRoom(length);
    if (length) std::memcpy(at, buffer, length);
}

void XlsCore::writeFill(size_t count, uint8_t fill) {
    char *at = appendRoom(count);
    if (count) std::memset(at, fill, count);
}

void XlsCore::writeHeader() {
    if (!stream_ && !toMemory_) throw tberror("stream error");
    outSize_ = 0;
    writeFill(kHeaderSize, 0);
}

// The first write of the workbook stream starts behind the header, and a
// write that needs room grows the buffer.
void XlsCore::writeSlow(const void *buffer, size_t length) {
    checkWritable();
    if (outSize_ < kHeaderSize) writeFill(kHeaderSize - outSize_, 0);
    writeRaw(buffer, length);
    written_ += length;
}

uint32_t XlsCore::writeTail(uint32_t size, uint8_t fill) {
    uint32_t rest = size % kWriteSector;
    if (rest) writeFill(kWriteSector - rest, fill);
    return sectorsFor(size);
}

void XlsCore::close() {
    checkWritable();
    if (workbook_ >= dir_.size()) throw tberror(kWriteError);
    uint64_t n = 0;
    DirEntry &wb = dir_[workbook_];
    if (written_ > 0) {
        if (written_ < kMinWorkbook) {
            writeFill(size_t(kMinWorkbook - written_), 0);
            written_ = kMinWorkbook;
        }
        if (written_ > 0xFFFFFFFFull) throw tberror("compound file is too big");
        wb.startingSectorLocation = 0;
        wb.streamSize = written_;
        n = writeTail(uint32_t(written_), 0);
    } else {
        wb.startingSectorLocation = kEndOfChain;
        wb.streamSize = 0;
        if (outSize_ < kHeaderSize) writeFill(kHeaderSize - outSize_, 0);
    }

    for (auto &k : kept_) {
        DirEntry &e = dir_[k.first];
        e.startingSectorLocation = uint32_t(n);
        e.streamSize = k.second.size();
        if (!k.second.empty()) writeRaw(k.second.data(), k.second.size());
        n += writeTail(uint32_t(k.second.size()), 0);
    }

    if (!miniFat_.empty()) {
        header_.miniFatSectorLocation = uint32_t(n);
        std::vector<uint8_t> bytes(miniFat_.size() * 4);
        for (size_t i = 0; i < miniFat_.size(); ++i) putLE32(&bytes[4 * i], miniFat_[i]);
        writeRaw(bytes.data(), bytes.size());
        uint32_t sectors = writeTail(uint32_t(bytes.size()), 0);
        header_.numMiniFatSectors = sectors;
        n += sectors;
    }

    // The streams left in the mini stream are those below this cutoff.
    header_.miniStreamCutoff = keepCutoff_;
    uint32_t d = uint32_t((dir_.size() + 3) / 4);
    FatLayout layout = computeFatLayout(n, d);
    uint32_t f = layout.fatSectors, g = layout.difatSectors;
    header_.numFatSectors = f;
    header_.numDifatSectors = g;
    fat_ = buildFat(uint32_t(n), layout, d);

    // Each stream is one run of the data chain; end the run before the next.
    if (!miniFat_.empty()) {
        uint32_t loc = header_.miniFatSectorLocation;
        if (loc > n) throw tberror("miniFatSectorLocation is out of range");
        if (loc > 0) fat_[loc - 1] = kEndOfChain;
    }
    for (auto &k : kept_) {
        uint32_t start = dir_[k.first].startingSectorLocation;
        if (start > n) throw tberror("startingSectorLocation is out of range");
        if (start > 0) fat_[start - 1] = kEndOfChain;
    }

    uint32_t firstFat = uint32_t(n) + g;
    for (uint32_t i = 0; i < kHeaderDifatCount; ++i)
        header_.difat[i] = i < f ? firstFat + i : kSectorFree;
    if (g) {
        header_.firstDifatSector = uint32_t(n);
        std::vector<uint32_t> rest(size_t(g) * 127, kSectorFree);
        for (uint32_t i = kHeaderDifatCount; i < f; ++i) rest[i - kHeaderDifatCount] = firstFat + i;
        std::vector<uint8_t> sector(kWriteSector);
        for (uint32_t k = 0; k < g; ++k) {
            for (uint32_t i = 0; i < 127; ++i) putLE32(&sector[4 * i], rest[size_t(k) * 127 + i]);
            putLE32(&sector[508], k + 1 < g ? uint32_t(n) + k + 1 : kEndOfChain);
            writeRaw(sector.data(), sector.size());
        }
    }
    difat_.assign(header_.difat, header_.difat + kHeaderDifatCount);

    std::vector<uint8_t> fatBytes(fat_.size() * 4);
    for (size_t i = 0; i < fat_.size(); ++i) putLE32(&fatBytes[4 * i], fat_[i]);
    writeRaw(fatBytes.data(), fatBytes.size());

    header_.firstDirSector = uint32_t(n) + g + f;
    std::vector<uint8_t> dirBytes(size_t(d) * kWriteSector, 0);
    for (size_t i = 0; i < dir_.size(); ++i) dir_[i].toBytes(&dirBytes[i * kDirEntrySize]);
    writeRaw(dirBytes.data(), dirBytes.size());

    if (outSize_ > 0xFFFFFFFFull) throw tberror("compound file is too big");
    fileSize_ = uint32_t(outSize_);
    header_.toBytes(reinterpret_cast<uint8_t *>(out_.bytes()));
    if (stream_) {
        stream_->seekp(0);
        stream_->write(out_.bytes(), std::streamsize(outSize_));
        stream_->flush();
        if (!*stream_) throw tberror(kWriteError);
        out_.release();
        outSize_ = 0;
    }
}

uint8_t *XlsCore::patchPlace(uint32_t pos, size_t n) {
    checkWritable();
    const size_t at = size_t(kHeaderSize) + pos;
    if (at > outSize_ || n > outSize_ - at) throw tberror(kWriteError);
    return reinterpret_cast<uint8_t *>(out_.bytes()) + at;
}

ByteRegion XlsCore::takeOutput(size_t &size) {
    size = outSize_;
    outSize_ = 0;
    return std::move(out_);
}

} // namespace tabrix
