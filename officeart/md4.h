// MD4 message digest (RFC 1320), the digest that names each stored picture.
#ifndef TABRIX_OFFICEART_MD4_H
#define TABRIX_OFFICEART_MD4_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace tabrix {

class MD4 {
public:
    MD4() { init(); }
    void init();
    void update(const uint8_t *data, size_t size);
    std::array<uint8_t, 16> final();

private:
    void transform(const uint8_t block[64]);

    uint32_t _state[4];
    uint64_t _count = 0; // bytes taken
    uint8_t _buffer[64];
};

// The digest of size bytes at data, written to digest.
void md4(const uint8_t *data, size_t size, uint8_t digest[16]);

} // namespace tabrix

#endif
