// The pictures and comments of a sheet: found, and copied into a sheet of
// another book.
#ifndef TABRIX_CLI_SHEET_DRAWINGS_H
#define TABRIX_CLI_SHEET_DRAWINGS_H

#include "workbook.h"

#include <functional>
#include <map>

namespace cli {

// Calls `seen` for each comment of `s`.  A sheet can't list its comments,
// so they are looked for in the used range, and at least in A1:Z100.
void forEachComment(Sheet *s, const std::function<void(int row, int col, const char *text)> &seen);

// Places every picture of `from` on `to` at the same cell, offsets and size,
// each picture of the source book added to the target once (`added` maps
// source ids to target ids across the sheets of one copy), then writes the
// comments of `from` on `to`.  Returns how many comments `to` refused.
int copyDrawings(Workbook &source, Sheet *from, Workbook &target, Sheet *to,
                 std::map<int, int> &added);

} // namespace cli

#endif
