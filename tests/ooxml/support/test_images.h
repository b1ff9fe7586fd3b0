// Images of each kind the pictures tests place: PNG and BMP whole, JPEG
// and EMF headers enough for the size readers.
#ifndef TABRIX_TESTS_OOXML_TEST_IMAGES_H
#define TABRIX_TESTS_OOXML_TEST_IMAGES_H

#include <initializer_list>
#include <string>
#include <zlib.h>

namespace testimages {

// Each value as `bytes` bytes, big or little endian.
inline std::string put(std::initializer_list<unsigned> values, int bytes, bool big) {
    std::string s;
    for (unsigned v : values)
        for (int i = 0; i < bytes; ++i) s += char(v >> (8 * (big ? bytes - 1 - i : i)));
    return s;
}

// A whole PNG of one colour, so that decoders take it too.
inline std::string png(int w, int h) {
    auto chunk = [](const char *type, const std::string &body) {
        const std::string typed = type + body;
        return put({unsigned(body.size())}, 4, true) + typed +
               put({unsigned(crc32(0, (const Bytef *)typed.data(), uInt(typed.size())))}, 4, true);
    };
    std::string raw;
    for (int y = 0; y < h; ++y) raw += '\0' + std::string(size_t(w) * 3, '\x60');
    std::string packed(compressBound(uLong(raw.size())), '\0');
    uLongf size = uLongf(packed.size());
    compress((Bytef *)&packed[0], &size, (const Bytef *)raw.data(), uLong(raw.size()));
    packed.resize(size);
    return "\x89PNG\r\n\x1a\n" +
           chunk("IHDR",
                 put({unsigned(w), unsigned(h)}, 4, true) + std::string("\x08\x02\0\0\0", 5)) +
           chunk("IDAT", packed) + chunk("IEND", "");
}
inline std::string jpeg(int w, int h) {
    return std::string("\xFF\xD8\xFF\xE0\0\x10JFIF\0\x01\x01\0\0\x01\0\x01\0\0\xFF\xC0\0\x0b\x08",
                       25) +
           put({unsigned(h), unsigned(w)}, 2, true) + std::string("\x01\x01\x11\0\xFF\xD9", 6);
}
inline std::string bmp(int w, int h) {
    const unsigned pixels = unsigned((w * 3 + 3) / 4 * 4 * h);
    return "BM" + put({54 + pixels, 0, 54, 40, unsigned(w), unsigned(h)}, 4, false) +
           put({1, 24}, 2, false) + put({0, pixels, 0, 0, 0, 0}, 4, false) +
           std::string(pixels, '\x70');
}
// A header record with the bounds, then the end record.
inline std::string emf(int w, int h) {
    const unsigned x = unsigned(w), y = unsigned(h);
    return put({1, 88, 0, 0, x, y, 0, 0, x * 26, y * 26}, 4, false) +
           put({0x464D4520, 0x10000, 108, 2, 0, 0, 0, 0}, 4, false) +
           put({1920, 1080, 508, 286, 14, 20, 0, 16, 20}, 4, false);
}

} // namespace testimages

#endif
