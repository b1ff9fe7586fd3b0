// IFormatT: a cell format of a book; IFormatPrivate adds what the library
// itself needs.
#ifndef TABRIX_IFORMATT_H
#define TABRIX_IFORMATT_H

#include "tabrix/IFontT.h"

namespace tabrix {

template <class C> class IFormatT {
public:
    virtual IFontT<C> *font() = 0;
    virtual bool setFont(IFontT<C> *font) = 0;
    virtual int numFormat() = 0;
    virtual void setNumFormat(int numFormat) = 0;
    virtual AlignH alignH() = 0;
    virtual void setAlignH(AlignH align) = 0;
    virtual AlignV alignV() = 0;
    virtual void setAlignV(AlignV align) = 0;
    virtual bool wrap() = 0;
    virtual void setWrap(bool wrap) = 0;
    virtual int rotation() = 0;
    virtual bool setRotation(int rotation) = 0;
    virtual int indent() = 0;
    virtual void setIndent(int indent) = 0;
    virtual bool shrinkToFit() = 0;
    virtual void setShrinkToFit(bool shrinkToFit) = 0;
    virtual void setBorder(BorderStyle style) = 0;
    virtual void setBorderColor(Color color) = 0;
    virtual BorderStyle borderLeft() = 0;
    virtual void setBorderLeft(BorderStyle style) = 0;
    virtual BorderStyle borderRight() = 0;
    virtual void setBorderRight(BorderStyle style) = 0;
    virtual BorderStyle borderTop() = 0;
    virtual void setBorderTop(BorderStyle style) = 0;
    virtual BorderStyle borderBottom() = 0;
    virtual void setBorderBottom(BorderStyle style) = 0;
    virtual Color borderLeftColor() = 0;
    virtual void setBorderLeftColor(Color color) = 0;
    virtual Color borderRightColor() = 0;
    virtual void setBorderRightColor(Color color) = 0;
    virtual Color borderTopColor() = 0;
    virtual void setBorderTopColor(Color color) = 0;
    virtual Color borderBottomColor() = 0;
    virtual void setBorderBottomColor(Color color) = 0;
    virtual BorderDiagonal borderDiagonal() = 0;
    virtual void setBorderDiagonal(BorderDiagonal border) = 0;
    virtual BorderStyle borderDiagonalStyle() = 0;
    virtual void setBorderDiagonalStyle(BorderStyle style) = 0;
    virtual Color borderDiagonalColor() = 0;
    virtual void setBorderDiagonalColor(Color color) = 0;
    virtual FillPattern fillPattern() = 0;
    virtual void setFillPattern(FillPattern pattern) = 0;
    virtual Color patternForegroundColor() = 0;
    virtual void setPatternForegroundColor(Color color) = 0;
    virtual Color patternBackgroundColor() = 0;
    virtual void setPatternBackgroundColor(Color color) = 0;
    virtual bool locked() = 0;
    virtual void setLocked(bool locked) = 0;
    virtual bool hidden() = 0;
    virtual void setHidden(bool hidden) = 0;
    virtual ~IFormatT() {}
};

template <class C> class IFormatPrivate : public IFormatT<C> {
public:
    virtual bool rgbMode() = 0;
    virtual void setRgbMode(bool rgbMode) = 0;
    virtual const C *customNumFormat() = 0;
};

} // namespace tabrix

#endif
