// IFontT: a font of a book; IFontPrivate adds what the library itself needs.
#ifndef TABRIX_IFONTT_H
#define TABRIX_IFONTT_H

#include "tabrix/enums.h"

namespace tabrix {

template <class C> class IFontT {
public:
    // The size in points.
    virtual int size() = 0;
    // Sets the size in points (up to 409).
    virtual void setSize(int size) = 0;
    // Whether the font is italic.
    virtual bool italic() = 0;
    // Makes the font italic (true) or upright.
    virtual void setItalic(bool italic) = 0;
    // Whether the text is struck out.
    virtual bool strikeOut() = 0;
    // Strikes the text out (true) or not.
    virtual void setStrikeOut(bool strikeOut) = 0;
    // The text colour (COLOR_NONE: automatic).
    virtual Color color() = 0;
    // Sets the text colour.
    virtual void setColor(Color color) = 0;
    // Whether the font is bold.
    virtual bool bold() = 0;
    // Makes the font bold (true) or normal.
    virtual void setBold(bool bold) = 0;
    // Normal, superscript or subscript.
    virtual Script script() = 0;
    // Sets normal, superscript or subscript.
    virtual void setScript(Script script) = 0;
    // The underline style.
    virtual Underline underline() = 0;
    // Sets the underline style.
    virtual void setUnderline(Underline underline) = 0;
    // The font's name, such as "Arial".
    virtual const C *name() = 0;
    // Sets the font's name; false for an empty or too long name.
    virtual bool setName(const C *name) = 0;
    virtual ~IFontT() {}
};

// The is... operations tell whether a font states the attribute itself; a
// binary font always does.
template <class C> class IFontPrivate : public IFontT<C> {
public:
    virtual bool isSize() = 0;
    virtual bool isItalic() = 0;
    virtual bool isStrikeOut() = 0;
    virtual bool isColor() = 0;
    virtual bool isBold() = 0;
    virtual bool isScript() = 0;
    virtual bool isUnderline() = 0;
    virtual bool isName() = 0;
    virtual bool rgbMode() = 0;
    virtual void setRgbMode(bool rgbMode) = 0;
};

} // namespace tabrix

#endif
