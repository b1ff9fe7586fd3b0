// The eight-byte header in front of every drawing record: version (4 bits)
// and instance (12 bits) in the first word, the record type, the body length.
#ifndef TABRIX_OFFICEART_RECORD_HEADER_H
#define TABRIX_OFFICEART_RECORD_HEADER_H

#include "officeart/byte_cursor.h"

#include <cstdint>
#include <vector>

namespace tabrix {

class OfficeArtRecordHeader {
public:
    static const size_t kSize = 8;

    OfficeArtRecordHeader() = default;
    OfficeArtRecordHeader(uint16_t ver, uint16_t instance, uint16_t type, uint32_t len)
        : _verInstance(uint16_t((ver & 0xF) | (instance << 4))), _type(type), _len(len) {}

    uint16_t ver() const { return _verInstance & 0xF; }
    uint16_t instance() const { return uint16_t(_verInstance >> 4); }
    uint16_t type() const { return _type; }
    uint32_t len() const { return _len; }
    void setVer(uint16_t v) { _verInstance = uint16_t((_verInstance & 0xFFF0) | (v & 0xF)); }
    void setInstance(uint16_t i) { _verInstance = uint16_t((_verInstance & 0xF) | (i << 4)); }
    void setType(uint16_t t) { _type = t; }
    void setLen(uint32_t l) { _len = l; }

    void read(ByteCursor &in, const std::string &message) {
        _verInstance = in.u16(message);
        _type = in.u16(message);
        _len = in.u32(message);
    }
    void write(std::vector<uint8_t> &out) const {
        putU16(out, _verInstance);
        putU16(out, _type);
        putU32(out, _len);
    }

private:
    uint16_t _verInstance = 0;
    uint16_t _type = 0;
    uint32_t _len = 0;
};

} // namespace tabrix

#endif
