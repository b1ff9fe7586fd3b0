// The bounds of a worksheet's rows and columns, checked with the cell
// operations' messages.
#pragma once

#include "book/tberror.h"

namespace tabrix {

constexpr int kXmlRows = 1048576;
constexpr int kXmlCols = 16384;
constexpr const char *kXmlIndexOutOfRange = "index is out of range";

inline void checkXmlRow(int row) {
    if (row < 0 || row >= kXmlRows) throw tberror("row must be in range 0-1048575");
}
inline void checkXmlCol(int col) {
    if (col < 0 || col >= kXmlCols) throw tberror("col must be in range 0-16383");
}

// A span of rows (or columns) first..last: in order and on the sheet.
inline void checkXmlSpan(int first, int last, bool rows) {
    if (last < first)
        throw tberror(rows ? "rowLast must be greater than or equal to rowFirst"
                           : "colLast must be greater than or equal to colFirst");
    if (rows) {
        checkXmlRow(first);
        checkXmlRow(last);
    } else {
        checkXmlCol(first);
        checkXmlCol(last);
    }
}

} // namespace tabrix
