// Little-endian fields and signatures of the zip format.
#pragma once

#include <cstdint>
#include <string>

namespace tabrix {
namespace zipfmt {

constexpr uint32_t kLocalSig = 0x04034b50;
constexpr uint32_t kCentralSig = 0x02014b50;
constexpr uint32_t kEndSig = 0x06054b50;
constexpr uint32_t kEnd64Sig = 0x06064b50;
constexpr uint32_t kLocator64Sig = 0x07064b50;
constexpr uint16_t kZip64Extra = 0x0001;
constexpr size_t kLocalSize = 30, kCentralSize = 46, kEndSize = 22, kEnd64Size = 56,
                 kLocator64Size = 20;
// The end record plus the longest comment.
constexpr size_t kEndWindow = kEndSize + 0xFFFF;

inline uint16_t get16(const unsigned char *p) { return static_cast<uint16_t>(p[0] | p[1] << 8); }
inline uint32_t get32(const unsigned char *p) {
    return get16(p) | static_cast<uint32_t>(get16(p + 2)) << 16;
}
inline uint64_t get64(const unsigned char *p) {
    return get32(p) | static_cast<uint64_t>(get32(p + 4)) << 32;
}

inline void put16(std::string &s, uint16_t v) {
    s += char(v & 0xFF);
    s += char(v >> 8);
}
inline void put32(std::string &s, uint32_t v) {
    put16(s, uint16_t(v));
    put16(s, uint16_t(v >> 16));
}
inline void put64(std::string &s, uint64_t v) {
    put32(s, uint32_t(v));
    put32(s, uint32_t(v >> 32));
}

} // namespace zipfmt
} // namespace tabrix
