#include "test_images.h"

namespace bifftest {

namespace {

void le16(ImageBytes &b, uint32_t v) {
    b.push_back(uint8_t(v));
    b.push_back(uint8_t(v >> 8));
}
void le32(ImageBytes &b, uint32_t v) {
    le16(b, v & 0xFFFF);
    le16(b, v >> 16);
}
void be16(ImageBytes &b, uint32_t v) {
    b.push_back(uint8_t(v >> 8));
    b.push_back(uint8_t(v));
}
void be32(ImageBytes &b, uint32_t v) {
    be16(b, v >> 16);
    be16(b, v & 0xFFFF);
}
void text(ImageBytes &b, const char *t) {
    while (*t) b.push_back(uint8_t(*t++));
}

} // namespace

ImageBytes pngImage(uint32_t width, uint32_t height) {
    ImageBytes b = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
    be32(b, 13);
    text(b, "IHDR");
    be32(b, width);
    be32(b, height);
    for (uint8_t v : {8, 2, 0, 0, 0}) b.push_back(v);
    be32(b, 0x12345678); // checksum, not checked by the store
    be32(b, 0);
    text(b, "IEND");
    be32(b, 0xAE426082);
    return b;
}

ImageBytes jpegImage(uint8_t app, uint16_t width, uint16_t height) {
    ImageBytes b = {0xFF, 0xD8, 0xFF, app};
    be16(b, 16);
    text(b, app == 0xE0 ? "JFIF" : "Exif");
    b.insert(b.end(), 10, 0);
    for (uint8_t v : {0xFF, 0xDB}) b.push_back(v);
    be16(b, 4);
    be16(b, 0);
    for (uint8_t v : {0xFF, 0xC0}) b.push_back(v);
    be16(b, 11);
    b.push_back(8);
    be16(b, height);
    be16(b, width);
    for (uint8_t v : {1, 1, 0x11, 0}) b.push_back(v);
    for (uint8_t v : {0xFF, 0xD9}) b.push_back(v);
    return b;
}

ImageBytes dibImage(int32_t width, int32_t height) {
    ImageBytes b;
    le32(b, 40);
    le32(b, uint32_t(width));
    le32(b, uint32_t(height));
    le16(b, 1);
    le16(b, 24);
    for (int i = 0; i < 6; ++i) le32(b, 0);
    b.insert(b.end(), 4, 0x7F);
    return b;
}

ImageBytes bmpImage(int32_t width, int32_t height) {
    ImageBytes dib = dibImage(width, height);
    ImageBytes b = {'B', 'M'};
    le32(b, uint32_t(14 + dib.size()));
    le32(b, 0);
    le32(b, 54);
    b.insert(b.end(), dib.begin(), dib.end());
    return b;
}

ImageBytes wmfImage() {
    ImageBytes b = {0xD7, 0xCD, 0xC6, 0x9A};
    for (uint32_t v : {0u, 0u, 0u, 1000u, 1000u, 1440u}) le16(b, v);
    le32(b, 0);
    le16(b, 0x1234); // checksum, not checked by the store
    // Header of the metafile itself, then its end record.
    for (uint32_t v : {1u, 9u, 0x300u}) le16(b, v);
    le32(b, 12);
    le16(b, 0);
    le32(b, 3);
    le16(b, 0);
    le32(b, 3);
    le16(b, 0);
    return b;
}

ImageBytes emfImage(int32_t right, int32_t bottom) {
    ImageBytes b;
    le32(b, 1);  // header record
    le32(b, 88); // its size
    for (int32_t v : {0, 0, right, bottom, 0, 0, right * 26, bottom * 26}) le32(b, uint32_t(v));
    le32(b, 0x464D4520); // " EMF"
    le32(b, 0x10000);
    le32(b, 88 + 20); // file size
    le32(b, 2);       // records
    while (b.size() < 88) b.push_back(0);
    for (uint32_t v : {14u, 20u, 0u, 16u, 20u}) le32(b, v); // end of file record
    return b;
}

} // namespace bifftest
