// Cell addresses and ranges in A1 notation, as a user types them:
// "A1:D10", "B2" (one cell), "A:C" (whole columns), "2:5" (whole rows),
// with or without "$", in any letter case.
#ifndef TABRIX_CLI_CELL_RANGE_H
#define TABRIX_CLI_CELL_RANGE_H

#include <string>

namespace cli {

// The largest sheet any workbook format of the library has.
const int kMaxRows = 1048576;
const int kMaxCols = 16384;

// A rectangle, zero-based and inclusive.  A whole-column range has open
// rows, a whole-row range open columns: they end at the sheet's last used
// row or column (see clampTo).
struct CellRange {
    int firstRow = 0, lastRow = 0, firstCol = 0, lastCol = 0;
    bool openRows = false, openCols = false;

    // The range's end moved to the given extents where it is open.
    CellRange clampTo(int usedLastRow, int usedLastCol) const;
};

// "A" for 0, "Z" for 25, "AA" for 26.
std::string columnName(int col);
// "B3" for row 2, col 1.
std::string cellName(int row, int col);
// "A1:D10", or "A1" for one cell.
std::string rangeName(int firstRow, int lastRow, int firstCol, int lastCol);

// Parses a range; throws UsageError with a message saying what is wrong.
CellRange parseRange(const std::string &text);

} // namespace cli

#endif
