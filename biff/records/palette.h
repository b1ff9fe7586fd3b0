// Palette (id 146): the colours behind palette indexes 8 and up, with the
// allocation that colorPack makes in it.
#ifndef TABRIX_BIFF_RECORDS_PALETTE_H
#define TABRIX_BIFF_RECORDS_PALETTE_H
#include "biff/record_ids.h"
#include "biff/xls.h"
#include <cstdint>
#include <vector>
namespace tabrix {
struct LongRGB {
    uint8_t red = 0, green = 0, blue = 0, reserved = 0;
    uint32_t value() const { return uint32_t(red) << 16 | uint32_t(green) << 8 | blue; }
    void setValue(uint32_t rgb) {
        red = uint8_t(rgb >> 16);
        green = uint8_t(rgb >> 8);
        blue = uint8_t(rgb);
    }
};

class Palette {
public:
    static const uint16_t kId = rid::Palette;
    static const int kNoColor = 32767;
    uint16_t ccv = 56;
    std::vector<LongRGB> colors;
    // Entries taken by addRGB (or found by it), which it won't overwrite.
    std::vector<bool> used = std::vector<bool>(56, false);

    Palette(); // the default palette of indexes 8 to 63
    // Index of the colour, allocating an entry for a new one; 32767 when
    // every entry is taken.
    int addRGB(uint8_t r, uint8_t g, uint8_t b);
    // Throws for an index with no entry.
    void getRGB(int color, int &r, int &g, int &b) const;
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
};
} // namespace tabrix
#endif
