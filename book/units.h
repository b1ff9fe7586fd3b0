// Column widths between characters, pixels and the Open XML width, for a
// font whose widest digit is `w` pixels.
#ifndef TABRIX_BOOK_UNITS_H
#define TABRIX_BOOK_UNITS_H

#include <string>

namespace tabrix {

// The widest digit of a font in pixels; the library uses 7 for every font.
int getMaxDigWidth(const std::wstring &fontName, int fontSize);

class ExcelUnitsConverter {
public:
    static int extraSpace(int w);
    static int defaultColWidthPx(int chars, int w);
    static int numCharsToPx(double chars, int w);
    static int xmlWidthToPx(double width, int w);
    static double numCharsToXmlWidth(double chars, int w);
    static double pxToNumChars(int px, int w);
};

} // namespace tabrix

#endif
