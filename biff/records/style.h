// Style (id 659), StyleExt (id 2194) and the block of the two that a book
// keeps for each cell style.
#ifndef TABRIX_BIFF_RECORDS_STYLE_H
#define TABRIX_BIFF_RECORDS_STYLE_H
#include "biff/record_ids.h"
#include "biff/strings/xl_unicode_string.h"
#include "biff/xls.h"
#include "book/mem_pool.h"
#include <cstdint>
#include <vector>
namespace tabrix {
class Style {
public:
    static const uint16_t kId = rid::Style;
    uint16_t ixfe = 0x8010; // bit 15: a built-in style
    uint8_t builtInStyle = 4;
    uint8_t level = 0xFF;
    XLUnicodeString name;
    Style() = default;
    Style(uint16_t xf, uint8_t style) : ixfe(xf), builtInStyle(style) {}
    bool builtIn() const { return ixfe & 0x8000; }
    void read(XlsRecords &xls, uint16_t size, bool oldFormat, MemPool &pool);
    void write(XlsRecords &xls) const;
};

// Kept as its raw bytes.
class StyleExt {
public:
    static const uint16_t kId = rid::StyleExt;
    std::vector<uint8_t> data;
    // Reads the record header too: another id is "StyleExt: unexpected record".
    void read(XlsRecords &xls);
    void write(XlsRecords &xls) const;
};

class StyleBlock {
public:
    Style style;
    StyleExt ext;
    bool hasExt = false;
    StyleBlock() = default;
    StyleBlock(uint16_t xf, uint8_t builtIn) : style(xf, builtIn) {}
    // A Style of `size`, then a StyleExt if one follows.
    void read(XlsRecords &xls, uint16_t size, bool oldFormat, MemPool &pool);
    void write(XlsRecords &xls) const;
};
} // namespace tabrix
#endif
