#include "biff/format_impl.h"
#include "book/failure_frame.h"
#include "book/tberror.h"
namespace tabrix {
namespace {
const char *const kXfSize = "XF size is incorrect";

// True when the record ended exactly before this field; a field cut by the
// end of the record is an error.
bool ended(unsigned short remaining, unsigned width) {
    if (remaining == 0) return true;
    if (remaining < width) throw tberror(kXfSize);
    return false;
}
} // namespace

template <class C> FormatImplT<C>::FormatImplT(IStyleOwner<C> *owner) : _owner(owner) {
    setBorderColor(Color(64));
    setBorderDiagonalStyle(BORDERSTYLE_NONE);
    (void)_spare;
}

template <class C> IFontT<C> *FormatImplT<C>::font() {
    return guarded(_owner->message(), static_cast<IFontT<C> *>(nullptr), [&]() -> IFontT<C> * {
        // The file's font numbering has no index 4.
        if (ifnt == 4) throw tberror("incorrect font");
        return _owner->fontAt(ifnt < 4 ? ifnt : ifnt - 1u);
    });
}

template <class C> bool FormatImplT<C>::setFont(IFontT<C> *font) {
    return guarded(_owner->message(), false, [&] {
        int pos = _owner->fontPosition(font);
        if (pos < 0) throw tberror("specified font not found");
        ifnt = uint16_t(pos + 1);
        return true;
    });
}

template <class C> bool FormatImplT<C>::setRotation(int rotation) {
    return guarded(_owner->message(), false, [&] {
        if (rotation < 0 || (rotation > 180 && rotation != 255))
            throw tberror("rotation must be in range 0-180 or 255");
        put(alignment, 8, 0xFF, unsigned(rotation));
        return true;
    });
}

template <class C> void FormatImplT<C>::setBorder(BorderStyle s) {
    setBorderLeft(s);
    setBorderRight(s);
    setBorderTop(s);
    setBorderBottom(s);
}

template <class C> void FormatImplT<C>::setBorderColor(Color c) {
    setBorderLeftColor(c);
    setBorderRightColor(c);
    setBorderTopColor(c);
    setBorderBottomColor(c);
}

template <class C> const C *FormatImplT<C>::customNumFormat() {
    if (ifmt < 164) return nullptr;
    return _owner->customNumFormat(ifmt);
}

template <class C> void FormatImplT<C>::read(XlsRecords &xls, uint16_t size, bool biff5) {
    unsigned short remaining = size;
    for (uint16_t *f : {&ifnt, &ifmt, &flags}) {
        if (ended(remaining, 2)) return;
        xls.readInt16(*f, remaining);
    }
    if (biff5) return readBiff5(xls, remaining);
    for (uint32_t *w : {&alignment, &border1, &border2}) {
        if (ended(remaining, 4)) return;
        xls.readInt32(*w, remaining);
    }
    if (ended(remaining, 2)) return;
    xls.readInt16(fill, remaining);
    uint8_t skip = 0;
    while (remaining) xls.readWithContinueRecords(&skip, 1, remaining);
}

template <class C> void FormatImplT<C>::readBiff5(XlsRecords &xls, unsigned short &remaining) {
    if (ended(remaining, 10)) return;
    uint8_t b[2] = {0, 0};
    xls.readWithContinueRecords(b, 2, remaining);
    uint32_t a = 0, w = 0;
    xls.readInt32(a, remaining);
    xls.readInt32(w, remaining);
    setAlignH(AlignH(b[0] & 0x7));
    setWrap(b[0] & 0x8);
    setAlignV(AlignV((b[0] >> 4) & 0x7));
    static const int kRotation[4] = {0, 255, 90, 180};
    setRotation(kRotation[b[1] & 0x3]);
    setPatternForegroundColor(Color(a & 0x7F));
    setPatternBackgroundColor(Color((a >> 7) & 0x7F));
    setFillPattern(FillPattern((a >> 16) & 0x3F));
    setBorderBottom(BorderStyle((a >> 22) & 0x7));
    setBorderBottomColor(Color(a >> 31));
    setBorderTop(BorderStyle(w & 0x7));
    setBorderLeft(BorderStyle((w >> 3) & 0x7));
    setBorderRight(BorderStyle((w >> 6) & 0x7));
    setBorderTopColor(Color((w >> 9) & 0x7F));
    setBorderLeftColor(Color((w >> 16) & 0x7F));
    setBorderRightColor(Color((w >> 23) & 0x7F));
    uint8_t skip = 0;
    while (remaining) xls.readWithContinueRecords(&skip, 1, remaining);
}

template <class C> void FormatImplT<C>::write(XlsRecords &xls) {
    xls.write(kId, 20);
    for (uint16_t f : {ifnt, ifmt, flags}) xls.writeInt16(f);
    for (uint32_t w : {alignment, border1, border2}) xls.writeInt32(w);
    xls.writeInt16(fill);
}

template class FormatImplT<char>;
template class FormatImplT<wchar_t>;
} // namespace tabrix
