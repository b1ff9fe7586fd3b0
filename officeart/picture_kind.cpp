#include "officeart/picture_kind.h"

#include "book/tberror.h"

#include <cstring>

namespace tabrix {

namespace {

const BlipKindInfo kKinds[] = {
    {BlipKind::EMF, 0xF01A, 980, 981, 0, 0, 2, 4, true, "OfficeArtBlipEMF"},
    {BlipKind::WMF, 0xF01B, 534, 535, 0, 0, 3, 2, true, "OfficeArtBlipWMF"},
    {BlipKind::PICT, 0xF01C, 1346, 1347, 0, 0, 4, 5, true, "OfficeArtBlipPICT"},
    {BlipKind::JPEG, 0xF01D, 1130, 1131, 1762, 1763, 5, 1, false, "OfficeArtBlipJPEG"},
    {BlipKind::PNG, 0xF01E, 1760, 1761, 0, 0, 6, 0, false, "OfficeArtBlipPNG"},
    {BlipKind::DIB, 0xF01F, 1960, 1961, 0, 0, 7, 3, false, "OfficeArtBlipDIB"},
    {BlipKind::TIFF, 0xF020, 1764, 1765, 0, 0, 17, 6, false, "OfficeArtBlipTIFF"},
};

struct NameRule {
    const char *suffix;
    BlipKind kind;
};
const NameRule kNames[] = {
    {".png", BlipKind::PNG},  {".PNG", BlipKind::PNG}, {".jpg", BlipKind::JPEG},
    {".JPG", BlipKind::JPEG}, {".wmf", BlipKind::WMF}, {".WMF", BlipKind::WMF},
    {".bmp", BlipKind::DIB},  {".BMP", BlipKind::DIB}, {".dib", BlipKind::DIB},
    {".DIB", BlipKind::DIB},  {".emf", BlipKind::EMF}, {".EMF", BlipKind::EMF},
};

const uint8_t kPlaceable[4] = {0xD7, 0xCD, 0xC6, 0x9A};

uint32_t le32(const std::vector<uint8_t> &b, size_t at) {
    if (at + 4 > b.size()) return 0;
    return uint32_t(b[at]) | uint32_t(b[at + 1]) << 8 | uint32_t(b[at + 2]) << 16 |
           uint32_t(b[at + 3]) << 24;
}

uint32_t be32(const std::vector<uint8_t> &b, size_t at) {
    if (at + 4 > b.size()) return 0;
    return uint32_t(b[at]) << 24 | uint32_t(b[at + 1]) << 16 | uint32_t(b[at + 2]) << 8 |
           uint32_t(b[at + 3]);
}

PictureSize jpegSize(const std::vector<uint8_t> &b) {
    if (b.size() < 2 || b[0] != 0xFF || b[1] != 0xD8) throw tberror("invalid jpg file");
    PictureSize s;
    size_t at = 2;
    while (at + 4 <= b.size()) {
        if (b[at] == 0xFF && b[at + 1] >= 0xC0 && b[at + 1] <= 0xC3) {
            if (at + 9 > b.size()) return PictureSize();
            s.height = (b[at + 5] << 8) | b[at + 6];
            s.width = (b[at + 7] << 8) | b[at + 8];
            return s;
        }
        at += size_t((b[at + 2] << 8) | b[at + 3]) + 2;
    }
    return PictureSize();
}

} // namespace

const BlipKindInfo &blipKindInfo(BlipKind kind) { return kKinds[int(kind)]; }

BlipKind blipKindOfType(uint16_t type) {
    for (const BlipKindInfo &k : kKinds)
        if (k.type == type) return k.kind;
    throw tberror("error in record OfficeArtBlip");
}

BlipKind sniffPicture(const uint8_t *d, size_t size) {
    if (!d || size < 5) throw tberror("unknown picture format");
    if (d[0] == 0x89 && std::memcmp(d + 1, "PNG", 3) == 0) return BlipKind::PNG;
    if (d[0] == 0xFF && d[1] == 0xD8 && d[2] == 0xFF) return BlipKind::JPEG;
    if (std::memcmp(d, kPlaceable, 4) == 0) return BlipKind::WMF;
    if (d[0] == 0x42 && d[1] == 'M') return BlipKind::DIB;
    switch (d[0]) {
    case 0x0C:
    case 0x28:
    case 0x40:
    case 0x6C:
    case 0x7C: return BlipKind::DIB;
    default: break;
    }
    if (d[0] == 0x01 && d[1] == 0x00) return BlipKind::EMF;
    throw tberror("unknown picture format");
}

BlipKind pictureKindOfName(const std::string &path) {
    if (path.size() >= 4) {
        const char *tail = path.c_str() + path.size() - 4;
        for (const NameRule &r : kNames)
            if (std::strcmp(tail, r.suffix) == 0) return r.kind;
    }
    throw tberror("unknown picture format");
}

void preparePictureBytes(std::vector<uint8_t> &b) {
    if (b.size() >= 23 && std::memcmp(b.data(), kPlaceable, 4) == 0)
        b.erase(b.begin(), b.begin() + 22);
    if (b.size() >= 15 && b[0] == 'B' && b[1] == 'M') b.erase(b.begin(), b.begin() + 14);
}

PictureSize pictureSizeOf(BlipKind kind, const std::vector<uint8_t> &image) {
    PictureSize s;
    switch (kind) {
    case BlipKind::EMF:
        s.width = int(le32(image, 16));
        s.height = int(le32(image, 20));
        break;
    case BlipKind::WMF: s.width = s.height = 200; break;
    case BlipKind::JPEG: s = jpegSize(image); break;
    case BlipKind::PNG:
        s.width = int(be32(image, 16));
        s.height = int(be32(image, 20));
        break;
    case BlipKind::DIB:
        s.width = int(le32(image, 4));
        s.height = int(le32(image, 8));
        break;
    case BlipKind::PICT:
    case BlipKind::TIFF: break;
    }
    return s;
}

} // namespace tabrix
