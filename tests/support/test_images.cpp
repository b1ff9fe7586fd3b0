#include "support/test_images.h"

#include <initializer_list>
#include <zlib.h>

namespace testimages {

namespace {

// Each value as `bytes` bytes, big or little endian.
std::string put(std::initializer_list<unsigned> values, int bytes, bool big) {
    std::string s;
    for (unsigned v : values)
        for (int i = 0; i < bytes; ++i) s += char(v >> (8 * (big ? bytes - 1 - i : i)));
    return s;
}

std::string pngChunk(const char *type, const std::string &body) {
    const std::string typed = type + body;
    return put({unsigned(body.size())}, 4, true) + typed +
           put({unsigned(crc32(0, (const Bytef *)typed.data(), uInt(typed.size())))}, 4, true);
}

} // namespace

// One colour, compressed, with true checksums.
std::string png(int width, int height) {
    std::string raw;
    for (int y = 0; y < height; ++y) raw += '\0' + std::string(size_t(width) * 3, '\x60');
    std::string packed(compressBound(uLong(raw.size())), '\0');
    uLongf size = uLongf(packed.size());
    compress((Bytef *)&packed[0], &size, (const Bytef *)raw.data(), uLong(raw.size()));
    packed.resize(size);
    return "\x89PNG\r\n\x1a\n" +
           pngChunk("IHDR", put({unsigned(width), unsigned(height)}, 4, true) +
                                std::string("\x08\x02\0\0\0", 5)) +
           pngChunk("IDAT", packed) + pngChunk("IEND", "");
}

std::string jpeg(int width, int height, unsigned char app) {
    return std::string("\xFF\xD8\xFF", 3) + char(app) + put({16}, 2, true) +
           std::string(app == 0xE0 ? "JFIF" : "Exif") +
           std::string("\0\x01\x01\0\0\x01\0\x01\0\0", 10) + "\xFF\xC0" + put({11}, 2, true) +
           '\x08' + put({unsigned(height), unsigned(width)}, 2, true) +
           std::string("\x01\x01\x11\0\xFF\xD9", 6);
}

std::string dib(int width, int height) {
    const unsigned pixels = unsigned((width * 3 + 3) / 4 * 4 * height);
    return put({40, unsigned(width), unsigned(height)}, 4, false) + put({1, 24}, 2, false) +
           put({0, pixels, 0, 0, 0, 0}, 4, false) + std::string(pixels, '\x70');
}

std::string bmp(int width, int height) {
    const std::string info = dib(width, height);
    return "BM" + put({unsigned(14 + info.size()), 0, 54}, 4, false) + info;
}

std::string wmf() {
    // Placeable header (checksum not checked by readers), the metafile's own
    // header, then its end record.
    return put({0x9AC6CDD7}, 4, false) + put({0, 0, 0, 1000, 1000, 1440}, 2, false) +
           put({0}, 4, false) + put({0x1234, 1, 9, 0x300}, 2, false) + put({12}, 4, false) +
           put({0}, 2, false) + put({3}, 4, false) + put({0}, 2, false) + put({3}, 4, false) +
           put({0}, 2, false);
}

// A header record with the bounds, then the end record.
std::string emf(int right, int bottom) {
    const unsigned x = unsigned(right), y = unsigned(bottom);
    return put({1, 88, 0, 0, x, y, 0, 0, x * 26, y * 26}, 4, false) +
           put({0x464D4520, 0x10000, 108, 2, 0, 0, 0, 0}, 4, false) +
           put({1920, 1080, 508, 286, 14, 20, 0, 16, 20}, 4, false);
}

} // namespace testimages
