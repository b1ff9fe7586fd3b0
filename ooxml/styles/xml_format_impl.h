// XMLFormatImplT: a cell format of an Open XML book, a handle on one `xf`
// element of the stylesheet.  Borders and fills live in shared lists: a
// format edits a border or fill of its own, made at its first change; xf
// elements loaded with the same non-zero border or fill share it.
#ifndef TABRIX_OOXML_STYLES_XML_FORMAT_IMPL_H
#define TABRIX_OOXML_STYLES_XML_FORMAT_IMPL_H

#include <vector>

#include "ooxml/binding/parts/styles_more_facades.h"
#include "ooxml/styles/styles.h"
#include "tabrix/IFormatT.h"

namespace tabrix {

template <class C> class XMLFormatImplT : public IFormatPrivate<C> {
public:
    // A handle on a loaded xf; `borders` and `fills` are the entries of
    // the stylesheet's lists, in order.
    XMLFormatImplT(binding::c_node *xf, Styles<C> *styles,
                   const std::vector<binding::c_node *> &borders,
                   const std::vector<binding::c_node *> &fills);
    // Appends a blank xf with a border of its own.
    explicit XMLFormatImplT(Styles<C> *styles);

    IFontT<C> *font() override;
    bool setFont(IFontT<C> *font) override;
    int numFormat() override;
    void setNumFormat(int numFormat) override;
    AlignH alignH() override;
    void setAlignH(AlignH align) override;
    AlignV alignV() override;
    void setAlignV(AlignV align) override;
    bool wrap() override;
    void setWrap(bool wrap) override;
    int rotation() override;
    bool setRotation(int rotation) override;
    int indent() override;
    void setIndent(int indent) override;
    bool shrinkToFit() override;
    void setShrinkToFit(bool shrinkToFit) override;
    void setBorder(BorderStyle style) override;
    void setBorderColor(Color color) override;
    BorderStyle borderLeft() override { return BorderStyle(sideStyle(kLeft)); }
    void setBorderLeft(BorderStyle style) override { setSideStyle(kLeft, style); }
    BorderStyle borderRight() override { return BorderStyle(sideStyle(kRight)); }
    void setBorderRight(BorderStyle style) override { setSideStyle(kRight, style); }
    BorderStyle borderTop() override { return BorderStyle(sideStyle(kTop)); }
    void setBorderTop(BorderStyle style) override { setSideStyle(kTop, style); }
    BorderStyle borderBottom() override { return BorderStyle(sideStyle(kBottom)); }
    void setBorderBottom(BorderStyle style) override { setSideStyle(kBottom, style); }
    Color borderLeftColor() override { return Color(sideColor(kLeft)); }
    void setBorderLeftColor(Color color) override { setSideColor(kLeft, color); }
    Color borderRightColor() override { return Color(sideColor(kRight)); }
    void setBorderRightColor(Color color) override { setSideColor(kRight, color); }
    Color borderTopColor() override { return Color(sideColor(kTop)); }
    void setBorderTopColor(Color color) override { setSideColor(kTop, color); }
    Color borderBottomColor() override { return Color(sideColor(kBottom)); }
    void setBorderBottomColor(Color color) override { setSideColor(kBottom, color); }
    BorderDiagonal borderDiagonal() override;
    void setBorderDiagonal(BorderDiagonal border) override;
    BorderStyle borderDiagonalStyle() override { return BorderStyle(sideStyle(kDiagonal)); }
    void setBorderDiagonalStyle(BorderStyle style) override { setSideStyle(kDiagonal, style); }
    Color borderDiagonalColor() override { return Color(sideColor(kDiagonal)); }
    void setBorderDiagonalColor(Color color) override { setSideColor(kDiagonal, color); }
    FillPattern fillPattern() override;
    void setFillPattern(FillPattern pattern) override;
    Color patternForegroundColor() override { return Color(fillColor("fgColor")); }
    void setPatternForegroundColor(Color color) override { setFillColor("fgColor", color); }
    Color patternBackgroundColor() override { return Color(fillColor("bgColor")); }
    void setPatternBackgroundColor(Color color) override { setFillColor("bgColor", color); }
    bool locked() override;
    void setLocked(bool locked) override;
    bool hidden() override;
    void setHidden(bool hidden) override;
    bool rgbMode() override { return _styles->rgbMode(); }
    void setRgbMode(bool rgbMode) override { _styles->setRgbMode(rgbMode); }
    const C *customNumFormat() override;

    binding::c_node *xf() const { return _xf; }

private:
    static const char *const kLeft, *const kRight, *const kTop, *const kBottom, *const kDiagonal;
    binding::c_xf_more xfFacade() const { return binding::c_xf_more(_xf); }
    // The border and fill this format shows: its own, else the list's entry at its id.
    binding::c_node *shownBorder() const;
    binding::c_node *shownFill() const;
    // This format's own border or fill, made (a copy of what it showed) when it has none.
    binding::c_node *ownBorder();
    binding::c_node *ownFill();
    int sideStyle(const char *side) const;
    void setSideStyle(const char *side, int style);
    int sideColor(const char *side) const;
    void setSideColor(const char *side, int color);
    int fillColor(const char *which) const;
    void setFillColor(const char *which, int color);

    binding::c_node *_xf;
    Styles<C> *_styles;
    binding::c_node *_border = nullptr;
    binding::c_node *_fill = nullptr;
};

extern template class XMLFormatImplT<char>;
extern template class XMLFormatImplT<wchar_t>;

} // namespace tabrix

#endif
