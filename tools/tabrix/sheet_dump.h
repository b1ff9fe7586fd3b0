// Walking a rectangle of a sheet into a writer: what `dump` does, and a
// conversion of a workbook to text.
#ifndef TABRIX_CLI_SHEET_DUMP_H
#define TABRIX_CLI_SHEET_DUMP_H

#include "cell_range.h"
#include "workbook.h"
#include "writers.h"

#include <string>

namespace cli {

// The rectangle to dump: `rangeText` parsed (empty means from A1 to the
// last used cell), open ends closed at the last used row and column.
// `empty` is set when there is nothing in it.  Throws UsageError for a
// malformed range, Failure for one beyond what the book's format holds.
CellRange resolveDumpRange(Workbook &wb, Sheet *sheet, const std::string &rangeText, bool &empty);

// Writes the rectangle (inclusive) to `writer`, with a progress line for
// large sheets.  Cells the library fails to read show as empty.
void dumpRange(Workbook &wb, Sheet *sheet, const CellRange &range, bool empty,
               const DumpHeader &header, TableWriter &writer);

} // namespace cli

#endif
