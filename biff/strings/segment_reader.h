// SegmentReader: tolerant reading of a logical record that may go on in
// CONTINUE records, with a 32-bit counter.  It never consumes a record that
// is not a CONTINUE: when the data ends early it stops, leaving the stream
// at the next record, and ok() turns false.  Zero-sized CONTINUE records
// are passed over.
#ifndef TABRIX_BIFF_STRINGS_SEGMENT_READER_H
#define TABRIX_BIFF_STRINGS_SEGMENT_READER_H

#include "biff/xls.h"

#include <cstdint>
#include <cstring>

namespace tabrix {

class SegmentReader {
public:
    SegmentReader(XlsRecords &xls, uint32_t &remaining) : _xls(xls), _remaining(remaining) {}

    bool ok() const { return _ok; }

    // Enters the next CONTINUE record.
    bool next() {
        while (_ok) {
            if (_xls.eof() || _xls.peekInt16() != XlsRecords::kContinueId) return fail();
            uint16_t id = 0, size = 0;
            _xls.readInt16(id);
            _xls.readInt16(size);
            if (_xls.eof()) return fail();
            if (size) {
                _remaining = size;
                return true;
            }
        }
        return false;
    }

    bool bytes(void *buffer, size_t n) {
        uint8_t *out = static_cast<uint8_t *>(buffer);
        std::memset(out, 0, n);
        while (n > 0) {
            if (_remaining == 0 && !next()) return false;
            size_t k = n < _remaining ? n : _remaining;
            size_t got = _xls.read(out, k);
            _remaining -= uint32_t(k);
            if (got < k) return fail();
            out += k;
            n -= k;
        }
        return _ok;
    }

    void skip(size_t n) {
        uint8_t buf[256];
        while (n > 0 && _ok) {
            size_t k = n < sizeof buf ? n : sizeof buf;
            bytes(buf, k);
            n -= k;
        }
    }

    uint8_t byte() {
        uint8_t b = 0;
        bytes(&b, 1);
        return b;
    }
    uint16_t int16() {
        uint8_t b[2];
        bytes(b, 2);
        return uint16_t(b[0] | (b[1] << 8));
    }
    uint32_t int32() {
        uint8_t b[4];
        bytes(b, 4);
        return uint32_t(b[0]) | (uint32_t(b[1]) << 8) | (uint32_t(b[2]) << 16) |
               (uint32_t(b[3]) << 24);
    }

private:
    bool fail() {
        _ok = false;
        return false;
    }

    XlsRecords &_xls;
    uint32_t &_remaining;
    bool _ok = true;
};

} // namespace tabrix

#endif
