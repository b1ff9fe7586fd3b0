// The interop tests' view of a workbook through an independent reader:
// tests/support/oracle.py dumps it as lines, and our own view is printed in
// the same form, so a test compares two listings.
#ifndef TABRIX_TESTS_SUPPORT_ORACLE_H
#define TABRIX_TESTS_SUPPORT_ORACLE_H

#include "tabrix/IBookT.h"

#include <string>
#include <vector>

namespace oracle {

using Lines = std::vector<std::string>;

// Whether /usr/bin/python3 can import `module` ("soffice": whether
// LibreOffice is installed).
bool has(const std::string &module);

// The dump of the book at `path` by `reader` (xlrd, xlrd-format, openpyxl,
// libreoffice and the others oracle.py lists); texts as UTF-16LE hex, or UTF-8 when `utf8`.
Lines dump(const std::string &reader, const std::string &path, bool utf8 = false);

// Whether a dump is the reader's refusal ("ERROR ...").
bool failed(const Lines &lines);

// UTF-16LE bytes of `t` in lower-case hex, "-" when empty; a character
// above U+FFFF (whole in a 32-bit wchar_t) becomes its surrogate pair.
std::string hex(const wchar_t *t);

// "kind value" of one cell as the dump prints it; empty for a blank cell
// or an empty text.
std::string cellText(tabrix::ISheetT<wchar_t> &sheet, int row, int col);

// Our own dump of a book's worksheets (chart and macro sheets are skipped,
// as xlrd skips them), in the dump's form with hex texts.
Lines bookLines(tabrix::IBookT<wchar_t> &book);

// The cells of one sheet in rows [0, rows) and columns [0, cols).
Lines sheetLines(tabrix::ISheetT<wchar_t> &sheet, int rows, int cols);

// The first difference of two listings, for a readable failure.
std::string firstDifference(const Lines &a, const Lines &b);

} // namespace oracle

#endif
