#include "biff/font_impl.h"
#include "book/failure_frame.h"
#include "book/tberror.h"
#include "book/text_result.h"
namespace tabrix {
namespace {
const char *const kFontError = "error in Font record";

uint8_t fontByte(XlsRecords &xls, unsigned short &remaining) {
    if (remaining == 0) throw tberror(kFontError);
    uint8_t b = 0;
    xls.readWithContinueRecords(&b, 1, remaining);
    return b;
}
} // namespace

template <class C> FontImplT<C>::FontImplT(IStyleOwner<C> *owner) : _owner(owner) {}

template <class C> void FontImplT<C>::setSize(int size) {
    uint16_t twips = uint16_t(unsigned(size) * 20u);
    dyHeight = twips < 8192 ? twips : 8191;
}

template <class C> const C *FontImplT<C>::name() {
    return guarded(_owner->message(), static_cast<const C *>(nullptr), [&] {
        return textResult<C>(_nameBuf, _owner->message(), _name.c_str(), _owner->utf8Mode());
    });
}

template <class C> bool FontImplT<C>::setName(const C *name) {
    return guarded(_owner->message(), false, [&] {
        std::wstring wide;
        wideText(name, _owner->utf8Mode(), wide);
        setWideName(wide);
        return true;
    });
}

template <class C> void FontImplT<C>::setWideName(const std::wstring &name) {
    if (name.size() > 255) throw tberror("string is too long");
    _name = name;
}

template <class C> void FontImplT<C>::read(XlsRecords &xls, uint16_t size, bool oldFormat) {
    if (size <= 13) throw tberror("Font size is incorrect");
    unsigned short remaining = size;
    for (uint16_t *f : {&dyHeight, &grbit, &icv, &bls, &sss}) xls.readInt16(*f, remaining);
    for (uint8_t *b : {&uls, &bFamily, &bCharSet, &reserved}) *b = fontByte(xls, remaining);
    // The name's count decides its length: check it against the record first.
    uint16_t head = xls.peekInt16();
    unsigned cch = head & 0xFF;
    unsigned need = oldFormat ? 1 + cch : 2 + cch * ((head >> 8) & 1 ? 2 : 1);
    if (remaining == 0 || need > remaining) throw tberror(kFontError);
    ShortXLUnicodeString s;
    s.read(xls, oldFormat, _owner->pool());
    remaining = uint16_t(remaining - need);
    _name = s.text ? s.text : L"";
    while (remaining) fontByte(xls, remaining);
}

template <class C> void FontImplT<C>::write(XlsRecords &xls) {
    ShortXLUnicodeString s(_name.c_str(), _owner->pool());
    xls.write(kId, uint16_t(14 + s.size()));
    for (uint16_t f : {dyHeight, grbit, icv, bls, sss}) xls.writeInt16(f);
    uint8_t bytes[4] = {uls, bFamily, bCharSet, reserved};
    xls.write(bytes, 4);
    s.write(xls);
}

template class FontImplT<char>;
template class FontImplT<wchar_t>;
} // namespace tabrix
