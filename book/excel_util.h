// A1-style cell addresses to and from zero-based row and column.
#ifndef TABRIX_BOOK_EXCEL_UTIL_H
#define TABRIX_BOOK_EXCEL_UTIL_H

#include <string>

namespace tabrix {

class ExcelUtil {
public:
    // "A1", "$A$1"; a row of -1 leaves the row number out ("$A").
    static std::wstring rowColToAddr(int row, int col, bool rowRelative, bool colRelative);
    // Column letters of a zero-based column: 0 -> "A", 26 -> "AA".
    static std::wstring makeCol(int col);
    // Any output may be null.  A missing part answers -1.
    static void addrToRowCol(const wchar_t *addr, int *row, int *col, bool *rowRelative,
                             bool *colRelative);
};

} // namespace tabrix

#endif
