// Xls: the byte-level access of a binary workbook held in a compound file.
// Reading, it finds the workbook stream and serves its bytes sector by
// sector; writing, it lays the workbook stream out behind the header and at
// close() appends the streams kept from a load, the allocation tables and
// the directory.  The stream is owned by the caller: a file stream for
// disk files, a string stream for memory.
#ifndef TABRIX_BIFF_XLS_H
#define TABRIX_BIFF_XLS_H

#include "book/byte_region.h"
#include "biff/cfb_directory.h"
#include "biff/cfb_header.h"

#include <cstdint>
#include <cstring>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace tabrix {

class XlsCore {
public:
    XlsCore();

    // true: a new file's container (two directory entries, nothing kept);
    // false: keep directory, kept streams and mini FAT for a re-save.
    void reset(bool fresh);
    // A stream over a MemoryBuf is read in place, sector by sector.
    void setStreamPtr(std::iostream *s);
    std::iostream *stream() const { return _stream; }
    void flush();

    void calcFileSize();
    uint32_t fileSize() const { return _fileSize; }

    // Opens the container; `total` counts the metadata bytes read.
    void readHeader(unsigned &total);
    // Keeps every stream other than the workbook stream for a later save.
    void readSections();

    size_t read(void *buffer, size_t length);
    size_t readMini(void *buffer, size_t length);
    void goSector(uint32_t n);
    void goMiniSector(uint32_t m);
    // Little-endian fields of the workbook stream.  On a short read the
    // value is 0 and eof() is set.  Fields inside the current sector take
    // the inline path.
    void readInt16(uint16_t &value) {
        if (_cached == _curSector && _sectorOffset + 2 <= _cacheLen) {
            const uint8_t *p = _sector + _sectorOffset;
            value = uint16_t(p[0] | (p[1] << 8));
            _sectorOffset += 2;
            _readTotal += 2;
            return;
        }
        readInt16Slow(value);
    }
    void readInt32(uint32_t &value) {
        if (_cached == _curSector && _sectorOffset + 4 <= _cacheLen) {
            const uint8_t *p = _sector + _sectorOffset;
            value = uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) |
                    (uint32_t(p[3]) << 24);
            _sectorOffset += 4;
            _readTotal += 4;
            return;
        }
        readInt32Slow(value);
    }
    void readDouble(double &value);
    bool eof() const { return _eof; }
    uint32_t size() const;

    void setCheckPoint(uint16_t tag);
    uint16_t restoreCheckPoint();
    uint16_t peekInt16();

    // Writing collects the whole file in memory; close() completes it and
    // hands it to the stream in one write, or keeps it for takeOutput()
    // after writeToMemory().
    void writeToMemory();
    void writeHeader();
    void write(const void *buffer, size_t length) {
        if (_outSize >= kHeaderSize && length <= _out.capacityBytes() - _outSize) {
            std::memcpy(_out.bytes() + _outSize, buffer, length);
            _outSize += length;
            _written += length;
            return;
        }
        writeSlow(buffer, length);
    }
    uint32_t writePos() {
        if (!_stream && !_toMemory) noWritePos();
        return uint32_t(_outSize > kHeaderSize ? _outSize - kHeaderSize : 0);
    }
    uint32_t writeTail(uint32_t size, uint8_t fill);
    void close();
    // The file written by the last close() to memory; empty afterwards.
    ByteRegion takeOutput(size_t &size);
    // The `n` bytes at a workbook-stream position written before, to be
    // overwritten; throws when they were not written.
    uint8_t *patchPlace(uint32_t pos, size_t n);

    std::string dump() const;

    const XlsHeader &header() const { return _header; }
    const std::vector<DirEntry> &directory() const { return _dir; }
    const std::vector<uint32_t> &fat() const { return _fat; }
    const std::vector<uint32_t> &miniFat() const { return _miniFat; }
    const std::vector<uint32_t> &difat() const { return _difat; }
    const std::map<size_t, std::vector<uint8_t>> &keptStreams() const { return _kept; }
    size_t workbookIndex() const { return _workbook; }

private:
    void loadDifat(unsigned &total);
    void loadFat(unsigned &total);
    void loadMiniFat(unsigned &total);
    void loadDir(unsigned &total);
    void setWorkbookEntry();
    void readRaw(void *buffer, size_t length);
    uint32_t fatNext(uint32_t n) const;
    uint32_t miniFatNext(uint32_t m) const;
    std::vector<uint8_t> readWholeStream(const DirEntry &e);
    void writeRaw(const void *buffer, size_t length);
    void writeFill(size_t count, uint8_t fill);
    char *appendRoom(size_t length);
    void writeSlow(const void *buffer, size_t length);
    [[noreturn]] static void noWritePos();
    void checkWritable() const;

    struct CheckPoint {
        std::streamoff readPos = 0, writePos = 0;
        uint32_t sector = 0, offset = 0;
        uint64_t readTotal = 0, hops = 0;
        bool eof = false;
        uint16_t tag = 0;
    };

    XlsHeader _header;
    uint32_t _sectorSize = 512;
    uint32_t _miniSectorSize = 64;
    std::vector<uint32_t> _difat;
    std::vector<uint32_t> _fat;
    std::vector<uint32_t> _miniFat;
    std::vector<DirEntry> _dir;
    size_t _workbook = 1;
    // Keyed by directory index so that a save visits them in directory order.
    std::map<size_t, std::vector<uint8_t>> _kept;
    // Streams below this size stay in the mini stream through a save: the
    // loaded file's cutoff, but never above the 4096 a saved file states.
    uint32_t _keepCutoff = 4096;
    // Sectors of the root's chain (the mini stream), built on first use.
    std::vector<uint32_t> _rootChain;
    bool _rootChainBuilt = false;
    uint32_t _curSector = 0;
    uint32_t _sectorOffset = 0;
    uint64_t _readTotal = 0;
    uint64_t _hops = 0; // sectors followed, bounds a cyclic chain
    uint64_t _written = 0;
    // The file being written, header included, and its length.
    ByteRegion _out;
    size_t _outSize = 0;
    bool _toMemory = false;
    bool _eof = false;
    CheckPoint _check;
    uint32_t _fileSize = 0;
    std::iostream *_stream = nullptr;
    // The sector of the workbook stream read last, whole: small reads come
    // from it instead of the stream.  `_sector` points into the stream's own
    // bytes when it is in memory, else into `_cache`.
    static const uint32_t kNoSector = 0xFFFFFFFFu;
    uint32_t _cached = kNoSector;
    uint32_t _cacheLen = 0;
    const uint8_t *_sector = nullptr;
    std::vector<uint8_t> _cache;
    const uint8_t *_memory = nullptr;
    void fillCache();
    void readInt16Slow(uint16_t &value);
    void readInt32Slow(uint32_t &value);
};

// The record layer: headers, plain little-endian writes and the operations
// that follow a logical record across CONTINUE records.  `remaining` counts
// the bytes not yet consumed (reading) or not yet filled (writing) in the
// current physical record.
class XlsRecords : public XlsCore {
public:
    static const uint16_t kContinueId = 60;
    static const uint16_t kMaxRecordData = 8224;

    using XlsCore::readInt16;
    using XlsCore::readInt32;
    using XlsCore::write;

    void readInt16(uint16_t &value, unsigned short &remaining);
    void readInt32(uint32_t &value, unsigned short &remaining);
    // Answers `length` (0 for length <= 0); throws when the data runs into a
    // record that is not a CONTINUE.
    int readWithContinueRecords(void *buffer, int length, unsigned short &remaining);
    // With nothing left in the record and a CONTINUE next, enters it.
    void checkContinue(unsigned short &remaining);

    void writeInt16(uint16_t value) {
        const uint8_t b[2] = {uint8_t(value), uint8_t(value >> 8)};
        write(b, 2);
    }
    void writeInt32(uint32_t value) {
        const uint8_t b[4] = {uint8_t(value), uint8_t(value >> 8), uint8_t(value >> 16),
                              uint8_t(value >> 24)};
        write(b, 4);
    }
    void writeDouble(double value);
    void writeInt16(uint16_t value, unsigned short &remaining);
    void writeInt32(uint32_t value, unsigned short &remaining);
    // Record header; with a buffer, also the data when size > 0.
    void write(uint16_t id, uint16_t size);
    void write(uint16_t id, const void *buffer, uint16_t size);
    // Overwrites 16 bits at a workbook-stream position written before and
    // comes back to the current write position.
    void patchInt16(uint32_t pos, uint16_t value);

private:
    // Reads the next record header into `remaining`; `who` names the caller
    // in the message when that record is not a CONTINUE.  A CONTINUE of size
    // 0 carries nothing and is passed over.
    void enterContinue(unsigned short &remaining, const char *who);
    void readByte(uint8_t &b, unsigned short &remaining, const char *who);
};

// Closes the record being written as 8224 - remaining bytes long and opens a
// CONTINUE declared at 8224.
template <class X> void writeContinue(X &xls, unsigned short &remaining) {
    uint32_t p = xls.writePos();
    xls.patchInt16(p + remaining - 8226u, uint16_t(8224u - remaining));
    xls.write(XlsRecords::kContinueId, XlsRecords::kMaxRecordData);
    remaining = XlsRecords::kMaxRecordData;
}

template <class TCHAR> class Xls : public XlsRecords {};

} // namespace tabrix

#endif
