#include "support/test_images.h"

#include <vector>
#include <zlib.h>

namespace testimages {

namespace {

void be32(std::string &s, unsigned v) {
    for (int shift = 24; shift >= 0; shift -= 8) s += char((v >> shift) & 0xFF);
}
void le32(std::string &s, unsigned v) {
    for (int shift = 0; shift < 32; shift += 8) s += char((v >> shift) & 0xFF);
}
void le16(std::string &s, unsigned v) {
    s += char(v & 0xFF);
    s += char((v >> 8) & 0xFF);
}
void be16(std::string &s, unsigned v) {
    s += char((v >> 8) & 0xFF);
    s += char(v & 0xFF);
}

void chunk(std::string &out, const char *type, const std::string &body) {
    be32(out, unsigned(body.size()));
    const std::string typed = std::string(type, 4) + body;
    out += typed;
    be32(out,
         unsigned(crc32(0, reinterpret_cast<const Bytef *>(typed.data()), uInt(typed.size()))));
}

} // namespace

std::string png(int width, int height) {
    std::string out("\x89PNG\r\n\x1a\n", 8), header;
    be32(header, unsigned(width));
    be32(header, unsigned(height));
    header += std::string("\x08\x02\x00\x00\x00", 5); // 8-bit RGB
    chunk(out, "IHDR", header);
    std::string raw;
    for (int y = 0; y < height; ++y) {
        raw += '\0';
        for (int x = 0; x < width; ++x) raw += "\x20\x80\xE0";
    }
    std::vector<Bytef> packed(compressBound(uLong(raw.size())));
    uLongf size = uLongf(packed.size());
    compress(packed.data(), &size, reinterpret_cast<const Bytef *>(raw.data()), uLong(raw.size()));
    chunk(out, "IDAT", std::string(reinterpret_cast<const char *>(packed.data()), size));
    chunk(out, "IEND", "");
    return out;
}

std::string bmp(int width, int height) {
    const int stride = (width * 3 + 3) / 4 * 4;
    std::string out = "BM";
    le32(out, unsigned(54 + stride * height));
    le32(out, 0);
    le32(out, 54);
    le32(out, 40);
    le32(out, unsigned(width));
    le32(out, unsigned(height));
    le16(out, 1);
    le16(out, 24);
    for (int i = 0; i < 6; ++i) le32(out, i == 1 ? unsigned(stride * height) : 0);
    out += std::string(size_t(stride * height), '\x70');
    return out;
}

std::string jpeg(int width, int height) {
    std::string out("\xFF\xD8\xFF\xE0", 4);
    be16(out, 16);
    out += std::string("JFIF\0\x01\x01\x00\x00\x01\x00\x01\x00\x00", 14);
    out += std::string("\xFF\xC0", 2);
    be16(out, 11);
    out += '\x08';
    be16(out, unsigned(height));
    be16(out, unsigned(width));
    out += std::string("\x01\x01\x11\x00", 4);
    out += std::string("\xFF\xD9", 2);
    return out;
}

std::string emf(int width, int height) {
    std::string out;
    le32(out, 1);  // EMR_HEADER
    le32(out, 88); // its size
    for (int v : {0, 0, width, height, 0, 0, width * 26, height * 26}) le32(out, unsigned(v));
    le32(out, 0x464D4520); // " EMF"
    le32(out, 0x10000);
    le32(out, 88 + 20);
    le32(out, 2);
    le16(out, 0);
    le16(out, 0);
    for (int v : {0, 0, 0, 1920, 1080, 508, 286}) le32(out, unsigned(v));
    le32(out, 14); // EMR_EOF
    le32(out, 20);
    for (int v : {0, 16, 20}) le32(out, unsigned(v));
    return out;
}

} // namespace testimages
