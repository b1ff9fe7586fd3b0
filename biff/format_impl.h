// FormatImplT: a cell or style format of a binary book, held exactly as the
// words of its XF record (id 224); every getter and setter is a bit
// operation over them.
#ifndef TABRIX_BIFF_FORMAT_IMPL_H
#define TABRIX_BIFF_FORMAT_IMPL_H
#include "biff/record_ids.h"
#include "biff/style_owner.h"
#include "biff/xls.h"
#include "tabrix/IFormatT.h"
#include <cstdint>
namespace tabrix {
template <class C> class FormatImplT : public IFormatPrivate<C> {
public:
    static const uint16_t kId = rid::XF;
    explicit FormatImplT(IStyleOwner<C> *owner);

    IFontT<C> *font() override;
    bool setFont(IFontT<C> *font) override;
    int numFormat() override { return ifmt; }
    void setNumFormat(int n) override { ifmt = uint16_t(n); }
    AlignH alignH() override { return AlignH(get(alignment, 0, 0x7)); }
    void setAlignH(AlignH a) override { put(alignment, 0, 0x7, a); }
    AlignV alignV() override { return AlignV(get(alignment, 4, 0x7)); }
    void setAlignV(AlignV a) override { put(alignment, 4, 0x7, a); }
    bool wrap() override { return get(alignment, 3, 1); }
    void setWrap(bool on) override { put(alignment, 3, 1, on); }
    int rotation() override { return int(get(alignment, 8, 0xFF)); }
    bool setRotation(int rotation) override;
    int indent() override { return int(get(alignment, 16, 0xF)); }
    void setIndent(int n) override { put(alignment, 16, 0xF, unsigned(n)); }
    bool shrinkToFit() override { return get(alignment, 20, 1); }
    void setShrinkToFit(bool on) override { put(alignment, 20, 1, on); }
    void setBorder(BorderStyle s) override;
    void setBorderColor(Color c) override;
    BorderStyle borderLeft() override { return BorderStyle(get(border1, 0, 0xF)); }
    void setBorderLeft(BorderStyle s) override { put(border1, 0, 0xF, s); }
    BorderStyle borderRight() override { return BorderStyle(get(border1, 4, 0xF)); }
    void setBorderRight(BorderStyle s) override { put(border1, 4, 0xF, s); }
    BorderStyle borderTop() override { return BorderStyle(get(border1, 8, 0xF)); }
    void setBorderTop(BorderStyle s) override { put(border1, 8, 0xF, s); }
    BorderStyle borderBottom() override { return BorderStyle(get(border1, 12, 0xF)); }
    void setBorderBottom(BorderStyle s) override { put(border1, 12, 0xF, s); }
    Color borderLeftColor() override { return Color(get(border1, 16, 0x7F)); }
    void setBorderLeftColor(Color c) override { put(border1, 16, 0x7F, c); }
    Color borderRightColor() override { return Color(get(border1, 23, 0x7F)); }
    void setBorderRightColor(Color c) override { put(border1, 23, 0x7F, c); }
    Color borderTopColor() override { return Color(get(border2, 0, 0x7F)); }
    void setBorderTopColor(Color c) override { put(border2, 0, 0x7F, c); }
    Color borderBottomColor() override { return Color(get(border2, 7, 0x7F)); }
    void setBorderBottomColor(Color c) override { put(border2, 7, 0x7F, c); }
    BorderDiagonal borderDiagonal() override { return BorderDiagonal(get(border1, 30, 0x3)); }
    void setBorderDiagonal(BorderDiagonal d) override { put(border1, 30, 0x3, d); }
    BorderStyle borderDiagonalStyle() override { return BorderStyle(get(border2, 21, 0xF)); }
    void setBorderDiagonalStyle(BorderStyle s) override { put(border2, 21, 0xF, s); }
    Color borderDiagonalColor() override { return Color(get(border2, 14, 0x7F)); }
    void setBorderDiagonalColor(Color c) override { put(border2, 14, 0x7F, c); }
    FillPattern fillPattern() override { return FillPattern(get(border2, 26, 0x3F)); }
    void setFillPattern(FillPattern p) override { put(border2, 26, 0x3F, p); }
    Color patternForegroundColor() override { return Color(get(fill, 0, 0x7F)); }
    void setPatternForegroundColor(Color c) override { put16(fill, 0, 0x7F, c); }
    Color patternBackgroundColor() override { return Color(get(fill, 7, 0x7F)); }
    void setPatternBackgroundColor(Color c) override { put16(fill, 7, 0x7F, c); }
    bool locked() override { return get(flags, 0, 1); }
    void setLocked(bool on) override { put16(flags, 0, 1, on); }
    bool hidden() override { return get(flags, 1, 1); }
    void setHidden(bool on) override { put16(flags, 1, 1, on); }
    bool rgbMode() override { return _owner->rgbMode(); }
    void setRgbMode(bool on) override { _owner->setRgbMode(on); }
    const C *customNumFormat() override;

    bool style() { return get(flags, 2, 1); }
    void setStyle(bool on) { put16(flags, 2, 1, on); }
    int readOrder() { return int(get(alignment, 22, 0x3)); }
    // Only adds bits: a reading order once set is not cleared here.
    void setReadOrder(int order) { alignment |= (uint32_t(order) & 0x3) << 22; }

    // `biff5`: the book's BOF version is 0x0500, whose XF layout differs
    // after the first three fields.
    void read(XlsRecords &xls, uint16_t size, bool biff5);
    void write(XlsRecords &xls);

    uint16_t ifnt = 0;
    uint16_t ifmt = 0;
    uint16_t flags = 0xFFF5;
    uint32_t alignment = 0xFC000020;
    uint32_t border1 = 0;
    uint32_t border2 = 0;
    uint16_t fill = 0x20C0;

private:
    // The setters write the value unmasked into its field: a value too wide
    // spills into the neighbouring bits, as stored records allow.
    static uint32_t get(uint32_t w, int shift, uint32_t mask) { return (w >> shift) & mask; }
    static void put(uint32_t &w, int shift, uint32_t mask, unsigned v) {
        w = (w & ~(mask << shift)) | (uint32_t(v) << shift);
    }
    static void put16(uint16_t &w, int shift, uint32_t mask, unsigned v) {
        w = uint16_t((w & ~(mask << shift)) | (uint32_t(v) << shift));
    }
    void readBiff5(XlsRecords &xls, unsigned short &remaining);
    IStyleOwner<C> *_owner;
    uint64_t _spare = 0;
};
} // namespace tabrix
#endif
