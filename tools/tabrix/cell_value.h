// One cell as the tool shows it: its kind, its value as a number, text or
// flag, the text a user sees (numbers in their shortest exact form, dates as
// ISO 8601), its format and its formula.
#ifndef TABRIX_CLI_CELL_VALUE_H
#define TABRIX_CLI_CELL_VALUE_H

#include "workbook.h"

#include <string>

namespace cli {

struct CellValue {
    tabrix::CellType kind = tabrix::CELLTYPE_EMPTY;
    double number = 0.0;
    bool flag = false;
    std::string text;          // the value as shown: "3.5", "abc", "TRUE", "#N/A", "2024-01-31"
    bool isDate = false;       // a number under a date or time format
    int error = 0xFF;          // the error code of an error cell
    int format = -1;           // the index of the cell's format in the book, -1 if none
    int numFormat = -1;        // the number format identifier of that format
    std::string numFormatText; // the text of a custom number format
    bool hasFormula = false;
    std::string formula; // the formula text, without "="
};

// Reads the cell at (row, col) of `sheet`.
CellValue readCell(Workbook &book, Sheet *sheet, int row, int col);

// The name of a kind: "empty", "number", "string", "boolean", "blank",
// "error".
const char *kindName(tabrix::CellType kind);

// The shortest decimal text that reads back as the same double; integers
// below 1e15 without exponent.  "nan", "inf" and "-inf" for the others.
std::string numberText(double value);

// "#DIV/0!" for 0x07 and the other error texts; "#ERR" for a code the
// format doesn't define.
const char *errorText(int code);

// A date serial as ISO 8601 through the book's calendar: "2024-01-31",
// "2024-01-31 12:30:00", "12:30:00" for a time of day alone.  Empty when
// the book cannot unpack it.
std::string dateText(Book *book, double serial);

} // namespace cli

#endif
