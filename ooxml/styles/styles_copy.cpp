// New formats and fonts, blank or copied through the interface from a
// format or font of any book.  Colours cross as RGB values between Open XML
// books and as palette indices from a binary one.
#include <string>

#include "book/tberror.h"
#include "ooxml/styles/styles.h"
#include "ooxml/styles/xml_font_impl.h"
#include "ooxml/styles/xml_format_impl.h"

namespace tabrix {

namespace {

// Puts both books in the colour mode of the exchange and back afterwards.
template <class Private, class Styles> class ModeExchange {
public:
    ModeExchange(Private *other, Styles &mine, bool rgb) : _other(other), _mine(mine) {
        _mineWas = mine.rgbMode();
        mine.setRgbMode(rgb);
        if (other) {
            _otherWas = other->rgbMode();
            other->setRgbMode(rgb);
        }
    }
    ~ModeExchange() {
        if (_other) _other->setRgbMode(_otherWas);
        _mine.setRgbMode(_mineWas);
    }
    ModeExchange(const ModeExchange &) = delete;
    ModeExchange &operator=(const ModeExchange &) = delete;

private:
    Private *_other;
    Styles &_mine;
    bool _otherWas = false, _mineWas = false;
};

} // namespace

template <class C> IFontT<C> *Styles<C>::addFont(IFontT<C> *init) {
    binding::c_node *fonts = fontsElement();
    binding::c_node *element = fonts->append("font");
    fonts->set_attribute("count", std::to_string(fonts->count("font")));
    _fonts.emplace_back(new XMLFontImplT<C>(element, this));
    XMLFontImplT<C> *font = _fonts.back().get();
    if (!init) return font;

    auto *priv = dynamic_cast<IFontPrivate<C> *>(init);
    ModeExchange<IFontPrivate<C>, Styles<C>> mode(priv, *this,
                                                  dynamic_cast<XMLFontImplT<C> *>(init) != nullptr);
    if (!priv || priv->isName()) font->setName(init->name());
    if (!priv || priv->isSize()) font->setSize(init->size());
    if (!priv || priv->isItalic()) font->setItalic(init->italic());
    if (!priv || priv->isStrikeOut()) font->setStrikeOut(init->strikeOut());
    if (!priv || priv->isColor()) font->setColor(init->color());
    if (!priv || priv->isBold()) font->setBold(init->bold());
    if (!priv || priv->isScript()) font->setScript(init->script());
    if (!priv || priv->isUnderline()) font->setUnderline(init->underline());
    return font;
}

template <class C> IFormatT<C> *Styles<C>::addFormat(IFormatT<C> *init) {
    _formats.emplace_back(new XMLFormatImplT<C>(this));
    XMLFormatImplT<C> *f = _formats.back().get();
    if (!init) return f;

    auto *priv = dynamic_cast<IFormatPrivate<C> *>(init);
    ModeExchange<IFormatPrivate<C>, Styles<C>> mode(
        priv, *this, dynamic_cast<XMLFormatImplT<C> *>(init) != nullptr);
    if (_doc.root().child("fonts")) f->setFont(addFont(init->font()));
    const int id = init->numFormat();
    const C *custom = id > 163 && priv ? priv->customNumFormat() : nullptr;
    f->setNumFormat(custom ? addCustomNumFormat(custom) : id);
    f->setAlignH(init->alignH());
    f->setAlignV(init->alignV());
    f->setWrap(init->wrap());
    f->setRotation(init->rotation());
    f->setIndent(init->indent());
    f->setShrinkToFit(init->shrinkToFit());
    f->setBorderLeft(init->borderLeft());
    f->setBorderRight(init->borderRight());
    f->setBorderTop(init->borderTop());
    f->setBorderBottom(init->borderBottom());
    f->setBorderLeftColor(init->borderLeftColor());
    f->setBorderRightColor(init->borderRightColor());
    f->setBorderTopColor(init->borderTopColor());
    f->setBorderBottomColor(init->borderBottomColor());
    f->setBorderDiagonal(init->borderDiagonal());
    f->setBorderDiagonalStyle(init->borderDiagonalStyle());
    f->setBorderDiagonalColor(init->borderDiagonalColor());
    f->setFillPattern(init->fillPattern());
    f->setPatternForegroundColor(init->patternForegroundColor());
    f->setPatternBackgroundColor(init->patternBackgroundColor());
    f->setLocked(init->locked());
    f->setHidden(init->hidden());
    return f;
}

template class Styles<char>;
template class Styles<wchar_t>;

} // namespace tabrix
