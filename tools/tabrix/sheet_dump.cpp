#include "sheet_dump.h"

#include "cli.h"
#include "progress.h"

namespace cli {

namespace {
// Rectangles of more cells than this may take a moment: show progress.
const long long kLargeDump = 200000;
} // namespace

CellRange resolveDumpRange(Workbook &wb, Sheet *sheet, const std::string &rangeText, bool &empty) {
    int lastRow = sheet->lastRow() - 1, lastCol = sheet->lastCol() - 1;
    CellRange r;
    if (rangeText.empty()) {
        r.lastRow = lastRow, r.lastCol = lastCol;
    } else {
        r = parseRange(rangeText).clampTo(lastRow, lastCol);
        if (r.lastRow >= wb.maxRows() || r.lastCol >= wb.maxCols())
            throw Failure("range " + rangeText + " reaches beyond " +
                          cellName(wb.maxRows() - 1, wb.maxCols() - 1) +
                          ", the last cell of this workbook format");
    }
    empty = r.lastRow < r.firstRow || r.lastCol < r.firstCol;
    return r;
}

void dumpRange(Workbook &wb, Sheet *sheet, const CellRange &range, bool empty,
               const DumpHeader &header, TableWriter &writer) {
    DumpHeader h = header;
    if (h.range.empty() && !empty)
        h.range = rangeName(range.firstRow, range.lastRow, range.firstCol, range.lastCol);
    writer.begin(h);
    if (!empty) {
        long rows = range.lastRow - range.firstRow + 1;
        long long cells = (long long)rows * (range.lastCol - range.firstCol + 1);
        Progress progress("dumping sheet '" + h.sheet + "': row", rows, cells > kLargeDump);
        for (int row = range.firstRow; row <= range.lastRow; ++row) {
            progress.update(row - range.firstRow);
            writer.beginRow(row);
            for (int col = range.firstCol; col <= range.lastCol; ++col) {
                CellValue v = readCell(wb, sheet, row, col);
                if (h.formulas && v.hasFormula && !v.formula.empty()) v.text = "=" + v.formula;
                writer.cell(row, col, v);
            }
            writer.endRow();
        }
    }
    writer.end();
}

} // namespace cli
