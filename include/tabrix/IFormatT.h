// IFormatT: a cell format of a book; IFormatPrivate adds what the library
// itself needs.
#ifndef TABRIX_IFORMATT_H
#define TABRIX_IFORMATT_H

#include "tabrix/IFontT.h"

namespace tabrix {

template <class C> class IFormatT {
public:
    // The format's font.
    virtual IFontT<C> *font() = 0;
    // Gives the format a font of the same book; false for a foreign font.
    virtual bool setFont(IFontT<C> *font) = 0;
    // The number format identifier: built-in 0 to 49 or one from addCustomNumFormat.
    virtual int numFormat() = 0;
    // Sets the number format identifier.
    virtual void setNumFormat(int numFormat) = 0;
    // The horizontal alignment.
    virtual AlignH alignH() = 0;
    // Sets the horizontal alignment.
    virtual void setAlignH(AlignH align) = 0;
    // The vertical alignment (bottom by default).
    virtual AlignV alignV() = 0;
    // Sets the vertical alignment.
    virtual void setAlignV(AlignV align) = 0;
    // Whether text wraps inside the cell.
    virtual bool wrap() = 0;
    // Wraps text inside the cell (true) or not.
    virtual void setWrap(bool wrap) = 0;
    // The text rotation: 0-90 degrees up, 91-180 down (90 + degrees), 255 vertical.
    virtual int rotation() = 0;
    // Sets the text rotation; false for a value above 180 other than 255.
    virtual bool setRotation(int rotation) = 0;
    // The indent level of the text.
    virtual int indent() = 0;
    // Sets the indent level of the text.
    virtual void setIndent(int indent) = 0;
    // Whether text shrinks to fit the cell.
    virtual bool shrinkToFit() = 0;
    // Shrinks text to fit the cell (true) or not.
    virtual void setShrinkToFit(bool shrinkToFit) = 0;
    // Sets the style of all four borders.
    virtual void setBorder(BorderStyle style) = 0;
    // Sets the colour of all four borders.
    virtual void setBorderColor(Color color) = 0;
    // The style of the left border.
    virtual BorderStyle borderLeft() = 0;
    // Sets the style of the left border.
    virtual void setBorderLeft(BorderStyle style) = 0;
    // The style of the right border.
    virtual BorderStyle borderRight() = 0;
    // Sets the style of the right border.
    virtual void setBorderRight(BorderStyle style) = 0;
    // The style of the top border.
    virtual BorderStyle borderTop() = 0;
    // Sets the style of the top border.
    virtual void setBorderTop(BorderStyle style) = 0;
    // The style of the bottom border.
    virtual BorderStyle borderBottom() = 0;
    // Sets the style of the bottom border.
    virtual void setBorderBottom(BorderStyle style) = 0;
    // The colour of the left border.
    virtual Color borderLeftColor() = 0;
    // Sets the colour of the left border.
    virtual void setBorderLeftColor(Color color) = 0;
    // The colour of the right border.
    virtual Color borderRightColor() = 0;
    // Sets the colour of the right border.
    virtual void setBorderRightColor(Color color) = 0;
    // The colour of the top border.
    virtual Color borderTopColor() = 0;
    // Sets the colour of the top border.
    virtual void setBorderTopColor(Color color) = 0;
    // The colour of the bottom border.
    virtual Color borderBottomColor() = 0;
    // Sets the colour of the bottom border.
    virtual void setBorderBottomColor(Color color) = 0;
    // Which diagonals are drawn: none, down, up or both.
    virtual BorderDiagonal borderDiagonal() = 0;
    // Sets which diagonals are drawn.
    virtual void setBorderDiagonal(BorderDiagonal border) = 0;
    // The style of the diagonal lines.
    virtual BorderStyle borderDiagonalStyle() = 0;
    // Sets the style of the diagonal lines.
    virtual void setBorderDiagonalStyle(BorderStyle style) = 0;
    // The colour of the diagonal lines.
    virtual Color borderDiagonalColor() = 0;
    // Sets the colour of the diagonal lines.
    virtual void setBorderDiagonalColor(Color color) = 0;
    // The fill pattern of the cell background.
    virtual FillPattern fillPattern() = 0;
    // Sets the fill pattern of the cell background.
    virtual void setFillPattern(FillPattern pattern) = 0;
    // The foreground colour of the fill (the colour of a solid fill).
    virtual Color patternForegroundColor() = 0;
    // Sets the foreground colour of the fill (the colour of a solid fill).
    virtual void setPatternForegroundColor(Color color) = 0;
    // The background colour of the fill pattern.
    virtual Color patternBackgroundColor() = 0;
    // Sets the background colour of the fill pattern.
    virtual void setPatternBackgroundColor(Color color) = 0;
    // Whether the cell is locked when its sheet is protected.
    virtual bool locked() = 0;
    // Locks the cell when its sheet is protected (true) or not.
    virtual void setLocked(bool locked) = 0;
    // Whether the cell's formula is hidden when its sheet is protected.
    virtual bool hidden() = 0;
    // Hides the cell's formula when its sheet is protected (true) or not.
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
