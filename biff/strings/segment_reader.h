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
    SegmentReader(XlsRecords &xls, uint32_t &remaining) : xls_(xls), remaining_(remaining) {}

    bool ok() const { return ok_; }

    // Enters the next CONTINUE record.
    bool next() {
        while (ok_) {
            if (xls_.eof() || xls_.peekInt16() != XlsRecords::kContinueId) return fail();
            uint16_t id = 0, size = 0;
            xls_.readInt16(id);
            xls_.readInt16(size);
            if (xls_.eof()) return fail();
            if (size) {
                remaining_ = size;
                return true;
            }
        }
        return false;
    }

    bool bytes(void *buffer, size_t n) {
        uint8_t *out = static_cast<uint8_t *>(buffer);
        std::memset(out, 0, n);
        while (n > 0) {
            if (remaining_ == 0 && !next()) return false;
            size_t k = n < remaining_ ? n : remaining_;
            size_t got = xls_.read(out, k);
            remaining_ -= uint32_t(k);
            if (got < k) return fail();
            out += k;
            n -= k;
        }
        return ok_;
    }

    void skip(size_t n) {
        uint8_t buf[256];
        while (n > 0 && ok_) {
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
        ok_ = false;
        return false;
    }

    XlsRecords &xls_;
    uint32_t &remaining_;
    bool ok_ = true;
};

} // namespace tabrix

#endif
