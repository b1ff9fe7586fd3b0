// TextSheet: the in-memory store of the "csv" driver, one sparse worksheet.
// Each row keeps a doubly linked list of 64-column pages in page order and a
// cursor at the page used last, so that neighbouring accesses are direct.
#ifndef QDSHEET_TEXT_SHEET_H
#define QDSHEET_TEXT_SHEET_H

#include "sheetfile.h"

enum { TEXT_PAGE_COLUMNS = 64, TEXT_PAGE_SHIFT = 6, TEXT_BOOL_TEXT = 32 };
#define TEXT_NO_COLUMN 0x7FFFFFFF

union TextValue {
    double number;
    char *text; // heap copy, owned by the cell
    int boolean;
};

struct TextPage {
    int pageNumber;                         // column >> 6
    unsigned char kinds[TEXT_PAGE_COLUMNS]; // CELL_* for each column
    TextValue values[TEXT_PAGE_COLUMNS];
    TextPage *lower;  // neighbour with the next smaller page number
    TextPage *higher; // neighbour with the next larger page number
};

struct TextRow {
    int firstCol; // TEXT_NO_COLUMN while the row is empty
    int lastCol;
    TextPage *cursor; // page used last, NULL while the row has no page
};

struct TextSheet {
    qd_context *context;
    char *buffer; // the SheetFile's buffer: field text, formatted numbers
    int bufferSize;
    int fieldSeparator;
    int decimalSeparator;
    char trueText[TEXT_BOOL_TEXT];
    char falseText[TEXT_BOOL_TEXT];
    const char *realFormat;
    int firstRow, lastRow; // TEXT_NO_COLUMN and 0 while empty
    int firstCol, lastCol;
    int rowCapacity; // 0 means no rows
    TextRow *rows;
};

// Sets the extents of an empty store (the rest zeroed by the caller).
void resetStore(TextSheet *s);
// Frees every page and text and the row table; the store is empty again.
void clearStore(TextSheet *s);

// The page of (row, col), made when missing, with *index = col % 64; NULL
// after printing "SHEET: Out of memory error" when memory runs out.
TextPage *cellSlot(TextSheet *s, int row, int col, int *index);
// Writers answer 0 on success, 1 when memory ran out.  A null or empty text
// clears the cell.
int setText(TextSheet *s, int row, int col, const char *text);
int setNumber(TextSheet *s, int row, int col, double value);
int setBool(TextSheet *s, int row, int col, int value);

// Readers; they never create anything but move the row's cursor.
int cellKind(TextSheet *s, int row, int col);
int cellBool(TextSheet *s, int row, int col);
const char *cellBoolText(TextSheet *s, int row, int col); // NULL outside
double cellNumber(TextSheet *s, int row, int col);
const char *cellText(TextSheet *s, int row, int col); // "" when none

// Classes one field: CELL_NUMBER with *number, CELL_BOOL with *number 1 or
// 0 (the store's true or false text), else CELL_STRING.
int classifyField(const TextSheet *s, const char *text, double *number);

// Reads the current host stream of s->context into the empty store.
// Answers 0 when the whole stream was read, 1 after a buffer overflow or a
// read error.
int readTextStream(TextSheet *s);
// snprintf(buffer, size, format, value), faster for "%.<n>g".
int formatReal(const char *format, double value, char *buffer, int size);
// Writes the store to the current host stream.  Answers 0, or 1 when a
// number could not be formatted.
int writeTextStream(TextSheet *s);

#endif
