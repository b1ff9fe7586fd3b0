#include "book/units.h"

#include <cmath>

namespace tabrix {

int getMaxDigWidth(const std::wstring &, int) { return 7; }

namespace {
double round2(double x) { return std::floor(x * 100.0 + 0.5) / 100.0; }
// Guards the divisions below against a zero or negative digit width.
int safeWidth(int w) { return w > 0 ? w : 1; }
} // namespace

int ExcelUnitsConverter::extraSpace(int w) { return w < 13 ? 8 : ((w - 13) / 16) * 8 + 16; }

int ExcelUnitsConverter::defaultColWidthPx(int chars, int w) { return chars * w + extraSpace(w); }

int ExcelUnitsConverter::numCharsToPx(double chars, int w) {
    if (chars > 1.0) return int(std::trunc(w * chars + extraSpace(w) - 3.0 + 0.5));
    return int(std::trunc((extraSpace(w) + w - 3) * chars + 0.5));
}

int ExcelUnitsConverter::xmlWidthToPx(double width, int w) {
    w = safeWidth(w);
    return int(std::trunc(std::floor(w * ((width * 256.0 + std::floor(128.0 / w)) / 256.0))));
}

double ExcelUnitsConverter::numCharsToXmlWidth(double chars, int w) {
    w = safeWidth(w);
    if (chars < 1.0) return std::floor(256.0 * (extraSpace(w) + w - 3) * chars / w) / 256.0;
    return std::floor((chars * w + extraSpace(w) - 3.0) / w * 256.0) / 256.0;
}

double ExcelUnitsConverter::pxToNumChars(int px, int w) {
    w = safeWidth(w);
    int small = extraSpace(w) + w - 3;
    if (px < small) return round2(double(px) / small);
    return round2(double(px + 3 - extraSpace(w)) / w);
}

} // namespace tabrix
