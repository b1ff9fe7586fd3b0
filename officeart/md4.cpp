#include "officeart/md4.h"

#include <cstring>

namespace tabrix {

namespace {

inline uint32_t rotl(uint32_t x, int s) { return (x << s) | (x >> (32 - s)); }
inline uint32_t f(uint32_t x, uint32_t y, uint32_t z) { return (x & y) | (~x & z); }
inline uint32_t g(uint32_t x, uint32_t y, uint32_t z) { return (x & y) | (x & z) | (y & z); }
inline uint32_t h(uint32_t x, uint32_t y, uint32_t z) { return x ^ y ^ z; }

// Word order and shifts of the three rounds.
const int kOrder2[16] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};
const int kOrder3[16] = {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15};
const int kShift1[4] = {3, 7, 11, 19};
const int kShift2[4] = {3, 5, 9, 13};
const int kShift3[4] = {3, 9, 11, 15};

} // namespace

void MD4::init() {
    _state[0] = 0x67452301;
    _state[1] = 0xefcdab89;
    _state[2] = 0x98badcfe;
    _state[3] = 0x10325476;
    _count = 0;
}

void MD4::transform(const uint8_t block[64]) {
    uint32_t x[16];
    for (int i = 0; i < 16; ++i)
        x[i] = uint32_t(block[4 * i]) | uint32_t(block[4 * i + 1]) << 8 |
               uint32_t(block[4 * i + 2]) << 16 | uint32_t(block[4 * i + 3]) << 24;
    uint32_t s[4] = {_state[0], _state[1], _state[2], _state[3]};
    // Each step updates one of a, b, c, d in turn: index (4 - i % 4) % 4.
    for (int i = 0; i < 16; ++i) {
        int a = (4 - i % 4) % 4;
        s[a] =
            rotl(s[a] + f(s[(a + 1) % 4], s[(a + 2) % 4], s[(a + 3) % 4]) + x[i], kShift1[i % 4]);
    }
    for (int i = 0; i < 16; ++i) {
        int a = (4 - i % 4) % 4;
        s[a] = rotl(s[a] + g(s[(a + 1) % 4], s[(a + 2) % 4], s[(a + 3) % 4]) + x[kOrder2[i]] +
                        0x5a827999,
                    kShift2[i % 4]);
    }
    for (int i = 0; i < 16; ++i) {
        int a = (4 - i % 4) % 4;
        s[a] = rotl(s[a] + h(s[(a + 1) % 4], s[(a + 2) % 4], s[(a + 3) % 4]) + x[kOrder3[i]] +
                        0x6ed9eba1,
                    kShift3[i % 4]);
    }
    for (int i = 0; i < 4; ++i) _state[i] += s[i];
}

void MD4::update(const uint8_t *data, size_t size) {
    size_t have = size_t(_count % 64);
    _count += size;
    while (size > 0) {
        size_t take = 64 - have < size ? 64 - have : size;
        std::memcpy(_buffer + have, data, take);
        have += take;
        data += take;
        size -= take;
        if (have == 64) {
            transform(_buffer);
            have = 0;
        }
    }
}

std::array<uint8_t, 16> MD4::final() {
    uint64_t bits = _count * 8;
    uint8_t pad[72] = {0x80};
    size_t have = size_t(_count % 64);
    size_t padLen = have < 56 ? 56 - have : 120 - have;
    update(pad, padLen);
    uint8_t len[8];
    for (int i = 0; i < 8; ++i) len[i] = uint8_t(bits >> (8 * i));
    update(len, 8);
    std::array<uint8_t, 16> out;
    for (int i = 0; i < 16; ++i) out[size_t(i)] = uint8_t(_state[i / 4] >> (8 * (i % 4)));
    init();
    return out;
}

void md4(const uint8_t *data, size_t size, uint8_t digest[16]) {
    MD4 m;
    m.update(data, size);
    std::array<uint8_t, 16> d = m.final();
    std::memcpy(digest, d.data(), 16);
}

} // namespace tabrix
