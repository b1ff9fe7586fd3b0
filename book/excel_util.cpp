#include "book/excel_util.h"

#include "book/tberror.h"
#include "tabrix/cell_address.h"

#include <cwchar>

namespace tabrix {

std::wstring ExcelUtil::makeCol(int col) { return columnLetters<wchar_t>(col); }

std::wstring ExcelUtil::rowColToAddr(int row, int col, bool rowRelative, bool colRelative) {
    // Unsigned on purpose: row -1 becomes 0 and passes, for whole columns.
    if (unsigned(row) + 1u > 0x100000u) throw tberror("row must be in range 0-1048575");
    if (col < 0 || col >= 16384) throw tberror("col must be in range 0-16383");
    std::wstring out;
    if (!colRelative) out += L'$';
    out += makeCol(col);
    if (row != -1) {
        if (!rowRelative) out += L'$';
        out += std::to_wstring(row + 1);
    }
    return out;
}

void ExcelUtil::addrToRowCol(const wchar_t *addr, int *row, int *col, bool *rowRelative,
                             bool *colRelative) {
    if (!addr) addr = L"";
    AddressRules rules;
    rules.columnText = ColumnText::BeforeRowDigit;
    CellAddress a = scanCellAddress(addr, std::wcslen(addr), rules);
    // Columns beyond an int, however written, answer -1.
    int c = int(a.column - 1);
    if (a.column > 0x7FFFFFFFLL || a.column < -0x7FFFFFFFLL) c = -1;
    int r = a.hasRow() ? int(a.row - 1) : -1;
    bool rowRel = !a.rowAbsolute, colRel = !a.columnAbsolute;
    if (row) *row = r;
    if (col) *col = c;
    if (rowRelative) *rowRelative = rowRel;
    if (colRelative) *colRelative = colRel;
}

} // namespace tabrix
