// XMLFontImplT: a font of an Open XML book, a handle on one `font` element
// of the stylesheet.  The element's children come in any order; an absent
// child reads as the default (the default font's name and size).
#ifndef TABRIX_OOXML_STYLES_XML_FONT_IMPL_H
#define TABRIX_OOXML_STYLES_XML_FONT_IMPL_H

#include "book/xstring.h"
#include "ooxml/binding/parts/styles_facades.h"
#include "ooxml/styles/styles.h"
#include "tabrix/IFontT.h"

namespace tabrix {

template <class C> class XMLFontImplT : public IFontPrivate<C> {
public:
    XMLFontImplT(binding::c_node *font, Styles<C> *styles) : _font(font), _styles(styles) {}

    int size() override;
    void setSize(int size) override;
    bool italic() override { return flag("i"); }
    void setItalic(bool on) override { setFlag("i", on); }
    bool strikeOut() override { return flag("strike"); }
    void setStrikeOut(bool on) override { setFlag("strike", on); }
    Color color() override;
    void setColor(Color color) override;
    bool bold() override { return flag("b"); }
    void setBold(bool on) override { setFlag("b", on); }
    Script script() override;
    void setScript(Script script) override;
    Underline underline() override;
    void setUnderline(Underline underline) override;
    const C *name() override;
    bool setName(const C *name) override;

    bool isSize() override { return has("sz"); }
    bool isItalic() override { return has("i"); }
    bool isStrikeOut() override { return has("strike"); }
    bool isColor() override { return has("color"); }
    bool isBold() override { return has("b"); }
    bool isScript() override { return has("vertAlign"); }
    bool isUnderline() override { return has("u"); }
    bool isName() override { return has("name"); }
    bool rgbMode() override { return _styles->rgbMode(); }
    void setRgbMode(bool rgbMode) override { _styles->setRgbMode(rgbMode); }

    binding::c_node *element() const { return _font; }

private:
    bool has(const char *kind) const { return _font->child(kind) != nullptr; }
    // The child of this kind, appended when absent.
    binding::c_node *ensure(const char *kind);
    bool flag(const char *kind);
    void setFlag(const char *kind, bool on);

    binding::c_node *_font;
    Styles<C> *_styles;
    XString _text;
};

extern template class XMLFontImplT<char>;
extern template class XMLFontImplT<wchar_t>;

} // namespace tabrix

#endif
