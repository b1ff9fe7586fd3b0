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
    _stream->read(static_cast<char *>(buffer), std::streamsize(length));
    if (size_t(_stream->gcount()) != length) {
        _stream->clear();
        throw tberror("Xls::read(): file is truncated");
    }
}

uint32_t XlsCore::fatNext(uint32_t n) const {
    if (n >= _fat.size()) throw tberror("Xls: sector #" + num(n) + " is not found in _fat");
    return _fat[n];
}

uint32_t XlsCore::miniFatNext(uint32_t m) const {
    if (m >= _miniFat.size())
        throw tberror("Xls: mini sector #" + num(m) + " is not found in _minifat");
    return _miniFat[m];
}

void XlsCore::goSector(uint32_t n) {
    uint64_t pos = (uint64_t(n) + 1) * _sectorSize;
    if (pos >= _fileSize) throw tberror("Xls: sector #" + num(n) + " is out of the file");
    _stream->clear();
    if (_stream->tellg() != std::streamoff(pos)) _stream->seekg(std::streamoff(pos));
}

void XlsCore::goMiniSector(uint32_t m) {
    if (m >= _miniFat.size())
        throw tberror("Xls: mini sector #" + num(m) + " is not found in _minifat");
    if (!_rootChainBuilt) {
        // The root's chain, cut where it ends, leaves the table or the file,
        // or loops back: mini sectors beyond it are simply out of reach.
        _rootChainBuilt = true;
        _rootChain.clear();
        uint64_t limit = uint64_t(_fileSize / _sectorSize) + 1;
        uint32_t s = _dir.empty() ? kEndOfChain : _dir[0].startingSectorLocation;
        while (s < _fat.size() && _rootChain.size() < limit) {
            _rootChain.push_back(s);
            s = _fat[s];
        }
    }
    uint32_t perSector = _sectorSize / _miniSectorSize;
    uint32_t index = m / perSector;
    if (index >= _rootChain.size())
        throw tberror("Xls: mini sector #" + num(m) + " is out of the file");
    uint32_t s = _rootChain[index];
    uint64_t pos =
        uint64_t(s) * _sectorSize + _sectorSize + uint64_t(m % perSector) * _miniSectorSize;
    if (pos + _miniSectorSize > _fileSize)
        throw tberror("Xls: mini sector #" + num(m) + " is out of the file");
    _stream->clear();
    _stream->seekg(std::streamoff(pos));
}

void XlsCore::readHeader(unsigned &total) {
    uint8_t raw[kHeaderSize];
    if (_fileSize >= 2) {
        // The formats 2.x to 4.x are a bare record stream, headed by a BOF
        // (ids 0x0009, 0x0209, 0x0409) where a container has its signature.
        _stream->clear();
        _stream->seekg(0);
        readRaw(raw, 2);
        if (raw[0] == 0x09 && (raw[1] == 0x00 || raw[1] == 0x02 || raw[1] == 0x04))
            throw tberror("a bare record stream of the binary formats before 5.0 isn't supported");
    }
    if (_fileSize < kHeaderSize) throw tberror("readHeader: file is corrupt (size < 512 bytes)");
    _stream->clear();
    _stream->seekg(0);
    readRaw(raw, 8);
    _header.fromBytes(raw); // signature only so far
    if (!_header.hasSignature()) throw tberror("invalid file format");
    readRaw(raw + 8, kHeaderSize - 8);
    _header.fromBytes(raw);
    total += kHeaderSize;
    _rootChain.clear();
    _rootChainBuilt = false;
    _keepCutoff = std::min<uint32_t>(_header.miniStreamCutoff, 4096);
    _sectorSize = 1u << (_header.sectorShift % 32);
    _miniSectorSize = 1u << (_header.miniSectorShift % 32);
    // Sectors must hold at least one directory entry, and mini sectors must
    // divide them; anything else could not describe a readable file.
    if (_sectorSize < kDirEntrySize || _sectorSize > (1u << 20) || _miniSectorSize > _sectorSize)
        throw tberror("readHeader: unsupported sector size");

    loadDifat(total);
    loadFat(total);
    loadMiniFat(total);
    loadDir(total);
    setWorkbookEntry();

    const DirEntry &wb = _dir[_workbook];
    _curSector = wb.startingSectorLocation;
    if (_curSector == kEndOfChain) throw tberror("Xls::read(): workbook stream is empty");
    if (wb.streamSize < 4096) {
        goMiniSector(_curSector);
    } else {
        // Tolerate a start that points at a marker sector by stepping on to
        // the next sector number; a stream that fits one sector may end there.
        while (_curSector < _fat.size() &&
               (_fat[_curSector] == kFatSector || _fat[_curSector] == kSectorFree ||
                (_fat[_curSector] == kEndOfChain && wb.streamSize > _sectorSize)))
            ++_curSector;
        goSector(_curSector);
    }
    _sectorOffset = 0;
    _readTotal = 0;
    _hops = 0;
    _eof = false;
}

void XlsCore::loadDifat(unsigned &total) {
    uint32_t perSector = _sectorSize / 4 - 1;
    if (uint64_t(_header.numDifatSectors) * _sectorSize > _fileSize)
        throw tberror("loadDifat: file is corrupt [1]");
    _difat.assign(_header.difat, _header.difat + kHeaderDifatCount);
    _difat.resize(kHeaderDifatCount + size_t(_header.numDifatSectors) * perSector, kSectorFree);
    std::vector<uint8_t> buf(_sectorSize);
    uint32_t s = _header.firstDifatSector;
    uint32_t count = 0;
    size_t pos = kHeaderDifatCount;
    while (s != kEndOfChain && s != kSectorFree) {
        if (count >= _header.numDifatSectors)
            throw tberror("Xls::loadDifat(): difat chain contains more sectors than "
                          "_header.numDifatSectors (" +
                          num(_header.numDifatSectors) + ")");
        goSector(s);
        total += perSector * 4;
        if (total > _fileSize) throw tberror("loadDifat: file is corrupt [1]");
        readRaw(buf.data(), _sectorSize);
        for (uint32_t i = 0; i < perSector; ++i) _difat[pos++] = getLE32(&buf[4 * i]);
        total += 4;
        if (total > _fileSize) throw tberror("loadDifat: file is corrupt [2]");
        s = getLE32(&buf[4 * perSector]);
        ++count;
    }
    if (count != _header.numDifatSectors)
        throw tberror("Xls::loadDifat(): difat chain sectors (" + num(count) +
                      ") not equal _header.numDifatSectors (" + num(_header.numDifatSectors) + ")");
}

void XlsCore::loadFat(unsigned &total) {
    size_t count = size_t(std::count_if(_difat.begin(), _difat.end(), notFree));
    if (count != _header.numFatSectors)
        throw tberror("Xls::loadFat(): extract fat sectors (" + num(count) +
                      ") not equal _header.numFatSectors (" + num(_header.numFatSectors) + ")");
    if (uint64_t(count) * _sectorSize > _fileSize) throw tberror("loadFat: file is corrupt");
    uint32_t perSector = _sectorSize / 4;
    _fat.assign(count * perSector, kSectorFree);
    std::vector<uint8_t> buf(_sectorSize);
    size_t pos = 0;
    for (uint32_t s : _difat) {
        if (!notFree(s)) continue;
        total += _sectorSize;
        if (total > _fileSize) throw tberror("loadFat: file is corrupt");
        goSector(s);
        readRaw(buf.data(), _sectorSize);
        for (uint32_t i = 0; i < perSector; ++i) _fat[pos++] = getLE32(&buf[4 * i]);
    }
}

void XlsCore::loadMiniFat(unsigned &total) {
    _miniFat.clear();
    uint32_t s = _header.miniFatSectorLocation;
    uint32_t count = _header.numMiniFatSectors;
    if (s == kEndOfChain || s == kSectorFree || count == 0) return;
    if (uint64_t(count) * _sectorSize > _fileSize) throw tberror("loadMiniFat: file is corrupt");
    uint32_t perSector = _sectorSize / 4;
    _miniFat.assign(size_t(count) * perSector, kSectorFree);
    std::vector<uint8_t> buf(_sectorSize);
    size_t pos = 0;
    for (;;) {
        if (pos >= _miniFat.size()) throw tberror("error in loading minifat");
        total += _sectorSize;
        if (total > _fileSize) throw tberror("loadMiniFat: file is corrupt");
        goSector(s);
        readRaw(buf.data(), _sectorSize);
        for (uint32_t i = 0; i < perSector; ++i) _miniFat[pos++] = getLE32(&buf[4 * i]);
        uint32_t next = fatNext(s);
        if (next == s) throw tberror("loadMiniFat: error in fat");
        if (next == kEndOfChain) break;
        s = next;
    }
}

void XlsCore::loadDir(unsigned &total) {
    _dir.clear();
    uint32_t first = _header.firstDirSector;
    if (first == kEndOfChain) return;
    uint64_t sectors = 0;
    for (uint32_t s = first; s != kEndOfChain;) {
        if (s >= _fat.size())
            throw tberror("Xls::loadDir(): sector #" + num(s) + " is not found in _fat");
        uint32_t next = _fat[s];
        if (next == s) throw tberror("loadDir: error in fat [1]");
        ++sectors;
        // Also ends a cyclic chain: it would soon claim more than the file.
        if (sectors * _sectorSize > _fileSize) throw tberror("loadDir: file is corrupt [1]");
        s = next;
    }
    uint32_t perSector = _sectorSize / kDirEntrySize;
    _dir.assign(size_t(sectors) * perSector, DirEntry());
    std::vector<uint8_t> buf(_sectorSize);
    size_t pos = 0;
    for (uint32_t s = first; s != kEndOfChain;) {
        if (pos >= _dir.size()) throw tberror("Xls::loadDir(): unexpected DirEntry found");
        total += _sectorSize;
        if (total > _fileSize) throw tberror("loadDir: file is corrupt [2]");
        goSector(s);
        readRaw(buf.data(), _sectorSize);
        for (uint32_t i = 0; i < perSector; ++i) _dir[pos++].fromBytes(&buf[i * kDirEntrySize]);
        uint32_t next = fatNext(s);
        if (next == s) throw tberror("loadDir: error in fat [2]");
        s = next;
    }
}

void XlsCore::setWorkbookEntry() {
    for (size_t i = 0; i < _dir.size(); ++i)
        if (_dir[i].isWorkbook()) {
            _workbook = i;
            return;
        }
    for (size_t i = 0; i < _dir.size(); ++i)
        if (_dir[i].isBook()) {
            _workbook = i;
            return;
        }
    throw tberror("Xls::read(): workbook section is not found");
}

// The whole of sector _curSector, or what of it the file holds.
void XlsCore::fillCache() {
    goSector(_curSector);
    uint64_t pos = (uint64_t(_curSector) + 1) * _sectorSize;
    size_t avail = size_t(std::min<uint64_t>(_sectorSize, _fileSize - pos));
    _cached = kNoSector;
    if (_memory) {
        _sector = _memory + pos;
    } else {
        _cache.resize(_sectorSize);
        readRaw(_cache.data(), avail);
        _sector = _cache.data();
    }
    _cacheLen = uint32_t(avail);
    _cached = _curSector;
}

size_t XlsCore::read(void *buffer, size_t length) {
    if (size() < 4096 && length < 4096) return readMini(buffer, length);
    uint8_t *out = static_cast<uint8_t *>(buffer);
    size_t done = 0;
    while (done < length) {
        if (_sectorOffset >= _sectorSize) {
            uint32_t next = fatNext(_curSector);
            if (next == kEndOfChain) {
                _eof = true;
                return done;
            }
            // A chain can't visit more sectors than the file holds.
            if (++_hops > uint64_t(_fileSize / _sectorSize) + 1)
                throw tberror("Xls::read(): fat chain is cyclic");
            _curSector = next;
            _sectorOffset = 0;
        }
        if (_cached != _curSector) fillCache();
        size_t chunk = std::min<size_t>(length - done, _sectorSize - _sectorOffset);
        if (_sectorOffset + chunk > _cacheLen) throw tberror("Xls::read(): file is truncated");
        std::memcpy(out + done, _sector + _sectorOffset, chunk);
        _sectorOffset += uint32_t(chunk);
        done += chunk;
        _readTotal += chunk;
    }
    return done;
}

size_t XlsCore::readMini(void *buffer, size_t length) {
    _cached = kNoSector; // mini sector numbers must not hit the sector cache
    uint8_t *out = static_cast<uint8_t *>(buffer);
    size_t done = 0;
    while (done < length) {
        if (_sectorOffset >= _miniSectorSize) {
            uint32_t next = miniFatNext(_curSector);
            if (next == kEndOfChain) {
                _eof = true;
                return done;
            }
            // Only a stream below 4096 bytes is served from the mini stream.
            if (++_hops > std::min<uint64_t>(_miniFat.size(), 4096 / _miniSectorSize + 1))
                throw tberror("Xls::read(): minifat chain is cyclic");
            _curSector = next;
            goMiniSector(_curSector);
            _sectorOffset = 0;
        }
        size_t chunk = std::min<size_t>(length - done, _miniSectorSize - _sectorOffset);
        readRaw(out + done, chunk);
        _sectorOffset += uint32_t(chunk);
        done += chunk;
        _readTotal += chunk;
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
    if (size > _fileSize) throw tberror("Xls::readSections(): stream size is out of the file");
    std::vector<uint8_t> bytes(size_t(size), 0);
    bool mini = e.type != DirEntry::Root && !e.isRoot() && size < _header.miniStreamCutoff;
    uint32_t unit = mini ? _miniSectorSize : _sectorSize;
    size_t limit = mini ? _miniFat.size() : _fat.size();
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
    _kept.clear();
    // Streams don't share sectors, so together they can't exceed the file;
    // this bounds the memory a hostile directory can ask for.
    uint64_t keptTotal = 0;
    // The workbook cursor stays valid: its read position comes back after.
    std::streamoff resume = _stream->tellg();
    for (size_t i = 0; i < _dir.size(); ++i) {
        const DirEntry &e = _dir[i];
        if (i == _workbook || e.startingSectorLocation == kEndOfChain ||
            e.startingSectorLocation == kSectorFree || e.type == DirEntry::Unknown ||
            e.type == DirEntry::Storage)
            continue;
        // The root's stream is the mini stream, which keeps the small
        // streams alive.  Some producers leave the root's name empty, so its
        // type counts as much as its name.
        bool root = e.isRoot() || e.type == DirEntry::Root;
        if (e.streamSize < _keepCutoff && !(root && e.streamSize != 0)) continue;
        keptTotal += e.streamSize;
        if (keptTotal > _fileSize)
            throw tberror("Xls::readSections(): streams are larger than the file");
        _kept[i] = readWholeStream(e);
    }
    _stream->clear();
    if (resume >= 0) _stream->seekg(resume);
}

} // namespace tabrix
