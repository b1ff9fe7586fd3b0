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
    if (!_stream && !_toMemory) throw tberror(kWriteError);
}

void XlsCore::noWritePos() { throw tberror("can't get the current write position"); }

void XlsCore::writeToMemory() {
    _stream = nullptr;
    _toMemory = true;
}

// `length` more bytes at the end of the output, to be filled by the caller.
char *XlsCore::appendRoom(size_t length) {
    checkWritable();
    if (length > _out.capacityBytes() - _outSize) _out.grow(_outSize + length, _outSize);
    char *at = _out.bytes() + _outSize;
    _outSize += length;
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
    if (!_stream && !_toMemory) throw tberror("stream error");
    _outSize = 0;
    writeFill(kHeaderSize, 0);
}

// The first write of the workbook stream starts behind the header, and a
// write that needs room grows the buffer.
void XlsCore::writeSlow(const void *buffer, size_t length) {
    checkWritable();
    if (_outSize < kHeaderSize) writeFill(kHeaderSize - _outSize, 0);
    writeRaw(buffer, length);
    _written += length;
}

uint32_t XlsCore::writeTail(uint32_t size, uint8_t fill) {
    uint32_t rest = size % kWriteSector;
    if (rest) writeFill(kWriteSector - rest, fill);
    return sectorsFor(size);
}

void XlsCore::close() {
    checkWritable();
    if (_workbook >= _dir.size()) throw tberror(kWriteError);
    uint64_t n = 0;
    DirEntry &wb = _dir[_workbook];
    if (_written > 0) {
        if (_written < kMinWorkbook) {
            writeFill(size_t(kMinWorkbook - _written), 0);
            _written = kMinWorkbook;
        }
        if (_written > 0xFFFFFFFFull) throw tberror("compound file is too big");
        wb.startingSectorLocation = 0;
        wb.streamSize = _written;
        n = writeTail(uint32_t(_written), 0);
    } else {
        wb.startingSectorLocation = kEndOfChain;
        wb.streamSize = 0;
        if (_outSize < kHeaderSize) writeFill(kHeaderSize - _outSize, 0);
    }

    for (auto &k : _kept) {
        DirEntry &e = _dir[k.first];
        e.startingSectorLocation = uint32_t(n);
        e.streamSize = k.second.size();
        if (!k.second.empty()) writeRaw(k.second.data(), k.second.size());
        n += writeTail(uint32_t(k.second.size()), 0);
    }

    if (!_miniFat.empty()) {
        _header.miniFatSectorLocation = uint32_t(n);
        std::vector<uint8_t> bytes(_miniFat.size() * 4);
        for (size_t i = 0; i < _miniFat.size(); ++i) putLE32(&bytes[4 * i], _miniFat[i]);
        writeRaw(bytes.data(), bytes.size());
        uint32_t sectors = writeTail(uint32_t(bytes.size()), 0);
        _header.numMiniFatSectors = sectors;
        n += sectors;
    }

    // The streams left in the mini stream are those below this cutoff.
    _header.miniStreamCutoff = _keepCutoff;
    uint32_t d = uint32_t((_dir.size() + 3) / 4);
    FatLayout layout = computeFatLayout(n, d);
    uint32_t f = layout.fatSectors, g = layout.difatSectors;
    _header.numFatSectors = f;
    _header.numDifatSectors = g;
    _fat = buildFat(uint32_t(n), layout, d);

    // Each stream is one run of the data chain; end the run before the next.
    if (!_miniFat.empty()) {
        uint32_t loc = _header.miniFatSectorLocation;
        if (loc > n) throw tberror("miniFatSectorLocation is out of range");
        if (loc > 0) _fat[loc - 1] = kEndOfChain;
    }
    for (auto &k : _kept) {
        uint32_t start = _dir[k.first].startingSectorLocation;
        if (start > n) throw tberror("startingSectorLocation is out of range");
        if (start > 0) _fat[start - 1] = kEndOfChain;
    }

    uint32_t firstFat = uint32_t(n) + g;
    for (uint32_t i = 0; i < kHeaderDifatCount; ++i)
        _header.difat[i] = i < f ? firstFat + i : kSectorFree;
    if (g) {
        _header.firstDifatSector = uint32_t(n);
        std::vector<uint32_t> rest(size_t(g) * 127, kSectorFree);
        for (uint32_t i = kHeaderDifatCount; i < f; ++i) rest[i - kHeaderDifatCount] = firstFat + i;
        std::vector<uint8_t> sector(kWriteSector);
        for (uint32_t k = 0; k < g; ++k) {
            for (uint32_t i = 0; i < 127; ++i) putLE32(&sector[4 * i], rest[size_t(k) * 127 + i]);
            putLE32(&sector[508], k + 1 < g ? uint32_t(n) + k + 1 : kEndOfChain);
            writeRaw(sector.data(), sector.size());
        }
    }
    _difat.assign(_header.difat, _header.difat + kHeaderDifatCount);

    std::vector<uint8_t> fatBytes(_fat.size() * 4);
    for (size_t i = 0; i < _fat.size(); ++i) putLE32(&fatBytes[4 * i], _fat[i]);
    writeRaw(fatBytes.data(), fatBytes.size());

    _header.firstDirSector = uint32_t(n) + g + f;
    std::vector<uint8_t> dirBytes(size_t(d) * kWriteSector, 0);
    for (size_t i = 0; i < _dir.size(); ++i) _dir[i].toBytes(&dirBytes[i * kDirEntrySize]);
    writeRaw(dirBytes.data(), dirBytes.size());

    if (_outSize > 0xFFFFFFFFull) throw tberror("compound file is too big");
    _fileSize = uint32_t(_outSize);
    _header.toBytes(reinterpret_cast<uint8_t *>(_out.bytes()));
    if (_stream) {
        _stream->seekp(0);
        _stream->write(_out.bytes(), std::streamsize(_outSize));
        _stream->flush();
        if (!*_stream) throw tberror(kWriteError);
        _out.release();
        _outSize = 0;
    }
}

uint8_t *XlsCore::patchPlace(uint32_t pos, size_t n) {
    checkWritable();
    const size_t at = size_t(kHeaderSize) + pos;
    if (at > _outSize || n > _outSize - at) throw tberror(kWriteError);
    return reinterpret_cast<uint8_t *>(_out.bytes()) + at;
}

ByteRegion XlsCore::takeOutput(size_t &size) {
    size = _outSize;
    _outSize = 0;
    return std::move(_out);
}

} // namespace tabrix
