#include "cell_range.h"

#include "cli.h"
#include "tabrix/cell_address.h"

#include <utility>

namespace cli {

namespace {

// One end of a range: a column, a row, or both.
struct Corner {
    int row = -1; // -1 when absent
    int col = -1;
};

[[noreturn]] void bad(const std::string &text, const std::string &why) {
    throw UsageError("bad range '" + text + "': " + why);
}

Corner parseCorner(const std::string &text, const std::string &part) {
    tabrix::AddressRules rules;
    rules.columnText = tabrix::ColumnText::AnyCase;
    rules.maxColumn = kMaxCols;
    rules.maxRow = kMaxRows;
    tabrix::CellAddress a = tabrix::scanCellAddress(part.data(), part.size(), rules);
    if (a.status == tabrix::CellAddress::ColumnTooLarge)
        bad(text, "column " + part.substr(a.lettersBegin, a.lettersEnd - a.lettersBegin) +
                      " is beyond the last column XFD");
    if (a.status == tabrix::CellAddress::RowTooLarge)
        bad(text, "row " + part.substr(a.digitsBegin, a.digitsEnd - a.digitsBegin) +
                      " is beyond the last row 1048576");
    if (a.status != tabrix::CellAddress::Ok || a.end != part.size())
        bad(text, "'" + part + "' is not a cell address");
    if (a.hasRow() && a.row == 0) bad(text, "rows count from 1");
    Corner corner;
    if (a.hasColumn()) corner.col = int(a.column - 1);
    if (a.hasRow()) corner.row = int(a.row - 1);
    return corner;
}

} // namespace

CellRange CellRange::clampTo(int usedLastRow, int usedLastCol) const {
    CellRange r = *this;
    if (openRows) r.lastRow = usedLastRow;
    if (openCols) r.lastCol = usedLastCol;
    return r;
}

std::string columnName(int col) { return tabrix::columnLetters<char>(col); }

std::string cellName(int row, int col) { return columnName(col) + std::to_string(row + 1); }

std::string rangeName(int firstRow, int lastRow, int firstCol, int lastCol) {
    std::string first = cellName(firstRow, firstCol);
    if (firstRow == lastRow && firstCol == lastCol) return first;
    return first + ":" + cellName(lastRow, lastCol);
}

CellRange parseRange(const std::string &text) {
    if (text.empty()) bad(text, "it is empty");
    size_t colon = text.find(':');
    if (colon != std::string::npos && text.find(':', colon + 1) != std::string::npos)
        bad(text, "a range has one ':' between its two corners");
    std::string firstText = text.substr(0, colon);
    std::string lastText = colon == std::string::npos ? firstText : text.substr(colon + 1);
    if (firstText.empty() || lastText.empty()) bad(text, "a corner is missing");
    Corner a = parseCorner(text, firstText);
    Corner b = parseCorner(text, lastText);
    bool aCell = a.row >= 0 && a.col >= 0, bCell = b.row >= 0 && b.col >= 0;
    bool aCol = a.row < 0, bCol = b.row < 0;
    bool aRow = a.col < 0, bRow = b.col < 0;
    CellRange r;
    if (aCell && bCell) {
        r.firstRow = a.row, r.lastRow = b.row, r.firstCol = a.col, r.lastCol = b.col;
    } else if (aCol && bCol && colon != std::string::npos) {
        r.firstCol = a.col, r.lastCol = b.col, r.openRows = true;
    } else if (aRow && bRow && colon != std::string::npos) {
        r.firstRow = a.row, r.lastRow = b.row, r.openCols = true;
    } else {
        bad(text, "use corners such as A1:D10, whole columns A:C or whole rows 2:5");
    }
    if (r.firstRow > r.lastRow) std::swap(r.firstRow, r.lastRow);
    if (r.firstCol > r.lastCol) std::swap(r.firstCol, r.lastCol);
    return r;
}

} // namespace cli
