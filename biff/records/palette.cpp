#include "biff/records/palette.h"
#include "book/failure_frame.h"
#include "book/tberror.h"
namespace tabrix {
namespace {
// 0xRRGGBB for indexes 8 to 63.
const uint32_t kDefaultPalette[56] = {
    0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF,
    0x800000, 0x008000, 0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080,
    0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF, 0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF,
    0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000, 0x008080, 0x0000FF,
    0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
    0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696,
    0x003366, 0x339966, 0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333};
} // namespace

Palette::Palette() : colors(56) {
    for (size_t i = 0; i < 56; ++i) colors[i].setValue(kDefaultPalette[i]);
}

int Palette::addRGB(uint8_t r, uint8_t g, uint8_t b) {
    uint32_t rgb = uint32_t(r) << 16 | uint32_t(g) << 8 | b;
    for (size_t i = 0; i < colors.size(); ++i) {
        if (colors[i].value() == rgb) {
            if (i < used.size()) used[i] = true;
            return int(i) + 8;
        }
    }
    for (size_t i = 0; i < colors.size() && i < used.size(); ++i) {
        if (!used[i]) {
            colors[i].setValue(rgb);
            used[i] = true;
            return int(i) + 8;
        }
    }
    throw tberror("no free color index, limit is reached for xls format");
}

void Palette::getRGB(int color, int &r, int &g, int &b) const {
    if (color < 8 || size_t(color - 8) >= colors.size()) throw tberror(kGeneralFailure);
    const LongRGB &c = colors[size_t(color - 8)];
    r = c.red;
    g = c.green;
    b = c.blue;
}

void Palette::read(XlsRecords &xls, uint16_t size) {
    unsigned short remaining = size;
    if (size < 2) throw tberror("Palette size is incorrect");
    uint16_t n = 0;
    xls.readInt16(n, remaining);
    // Checked before anything is allocated: the count must fit the record.
    if (remaining != 4u * n) throw tberror("Palette size is incorrect");
    ccv = n;
    colors.assign(n, LongRGB());
    for (LongRGB &c : colors) {
        uint8_t b[4] = {0, 0, 0, 0};
        xls.readWithContinueRecords(b, 4, remaining);
        c.red = b[0];
        c.green = b[1];
        c.blue = b[2];
        c.reserved = b[3];
    }
}

void Palette::write(XlsRecords &xls) const {
    uint16_t bytes = uint16_t((colors.size() * 4) & ~size_t(3));
    xls.write(kId, uint16_t(bytes | 2));
    xls.writeInt16(ccv);
    for (const LongRGB &c : colors) {
        uint8_t b[4] = {c.red, c.green, c.blue, c.reserved};
        xls.write(b, 4);
    }
}
} // namespace tabrix
