// ByteCursor: bounded little-endian reads over a byte buffer, and the
// matching appends to a byte vector.  A read past the end throws tberror
// with the message the caller names, so every record reports itself.
#ifndef TABRIX_OFFICEART_BYTE_CURSOR_H
#define TABRIX_OFFICEART_BYTE_CURSOR_H

#include "book/tberror.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tabrix {

class ByteCursor {
public:
    ByteCursor(const uint8_t *data, size_t size) : _data(data), _size(size) {}

    size_t left() const { return _size - _pos; }
    size_t pos() const { return _pos; }
    const uint8_t *here() const { return _data + _pos; }

    void need(size_t n, const std::string &message) const {
        if (n > left()) throw tberror(message);
    }
    uint8_t u8(const std::string &message) {
        need(1, message);
        return _data[_pos++];
    }
    uint16_t u16(const std::string &message) {
        need(2, message);
        uint16_t v = uint16_t(_data[_pos] | (_data[_pos + 1] << 8));
        _pos += 2;
        return v;
    }
    uint32_t u32(const std::string &message) {
        need(4, message);
        uint32_t v = 0;
        for (int i = 3; i >= 0; --i) v = (v << 8) | _data[_pos + size_t(i)];
        _pos += 4;
        return v;
    }
    std::vector<uint8_t> bytes(size_t n, const std::string &message) {
        need(n, message);
        std::vector<uint8_t> out(_data + _pos, _data + _pos + n);
        _pos += n;
        return out;
    }
    // A cursor over the next n bytes; this one moves past them.
    ByteCursor sub(size_t n, const std::string &message) {
        need(n, message);
        ByteCursor inner(_data + _pos, n);
        _pos += n;
        return inner;
    }

private:
    const uint8_t *_data;
    size_t _size;
    size_t _pos = 0;
};

inline void putU8(std::vector<uint8_t> &out, uint8_t v) { out.push_back(v); }
inline void putU16(std::vector<uint8_t> &out, uint16_t v) {
    out.push_back(uint8_t(v));
    out.push_back(uint8_t(v >> 8));
}
inline void putU32(std::vector<uint8_t> &out, uint32_t v) {
    for (int i = 0; i < 4; ++i) out.push_back(uint8_t(v >> (8 * i)));
}
inline void putBytes(std::vector<uint8_t> &out, const std::vector<uint8_t> &bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

} // namespace tabrix

#endif
