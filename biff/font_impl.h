// FontImplT: a font of a binary book, held as the fields of its Font record
// (id 49) and read and written as that record.
#ifndef TABRIX_BIFF_FONT_IMPL_H
#define TABRIX_BIFF_FONT_IMPL_H
#include "biff/record_ids.h"
#include "biff/strings/short_xl_unicode_string.h"
#include "biff/style_owner.h"
#include "biff/xls.h"
#include "tabrix/IFontT.h"
#include <cstdint>
#include <string>
namespace tabrix {
template <class C> class FontImplT : public IFontPrivate<C> {
public:
    static const uint16_t kId = rid::Font;
    explicit FontImplT(IStyleOwner<C> *owner);

    int size() override { return dyHeight / 20; }
    void setSize(int size) override;
    bool italic() override { return grbit & 0x02; }
    void setItalic(bool on) override { setBit(grbit, 0x02, on); }
    bool strikeOut() override { return grbit & 0x08; }
    void setStrikeOut(bool on) override { setBit(grbit, 0x08, on); }
    Color color() override { return Color(icv); }
    void setColor(Color color) override { icv = uint16_t(color); }
    bool bold() override { return bls >= 700; }
    void setBold(bool on) override { bls = on ? 700 : 400; }
    Script script() override { return Script(sss); }
    void setScript(Script s) override { sss = uint16_t(s); }
    Underline underline() override { return Underline(uls); }
    void setUnderline(Underline u) override { uls = uint8_t(u); }
    const C *name() override;
    bool setName(const C *name) override;

    bool isSize() override { return true; }
    bool isItalic() override { return true; }
    bool isStrikeOut() override { return true; }
    bool isColor() override { return true; }
    bool isBold() override { return true; }
    bool isScript() override { return true; }
    bool isUnderline() override { return true; }
    bool isName() override { return true; }
    bool rgbMode() override { return _owner->rgbMode(); }
    void setRgbMode(bool on) override { _owner->setRgbMode(on); }

    const std::wstring &wideName() const { return _name; }
    // Throws "string is too long" at 256 characters and more.
    void setWideName(const std::wstring &name);

    // `oldFormat`: the book's BOF version is below 0x0501.
    void read(XlsRecords &xls, uint16_t size, bool oldFormat);
    void write(XlsRecords &xls);

    uint16_t dyHeight = 200;
    uint16_t grbit = 0;
    uint16_t icv = 32767;
    uint16_t bls = 400;
    uint16_t sss = 0;
    uint8_t uls = 0;
    uint8_t bFamily = 0;
    uint8_t bCharSet = 0;
    uint8_t reserved = 0;

private:
    static void setBit(uint16_t &w, uint16_t bit, bool on) {
        w = on ? uint16_t(w | bit) : uint16_t(w & ~bit);
    }
    std::wstring _name = L"Arial";
    XString _nameBuf;
    IStyleOwner<C> *_owner;
};
} // namespace tabrix
#endif
