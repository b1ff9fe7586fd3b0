// Shared declarations of the qdsheet module: the sheet access table that lets
// one transfer code serve every driver, the open-file state, resolved ranges,
// and the entry points that the driver table binds together.
#ifndef QDSHEET_SHEETFILE_H
#define QDSHEET_SHEETFILE_H

#include "qdhost.h"

#include <pthread.h>

// Option bits of a file name or a range label.
enum : unsigned {
    OPT_NOINDEX = 1,   // "noindex;"
    OPT_GROW = 2,      // "grow;"
    OPT_SKIPH = 4,     // "skiph;"
    OPT_SKIPH_NEW = 8, // "skiph+;" (always together with OPT_SKIPH)
    OPT_PARTNDX = 16,  // "partndx;" / "partindex;"
    OPT_WRITING = 256, // internal: the file is open for writing
};

// Cell kinds as the transfer code sees them.  Workbook cell types use the same
// numbers; a workbook blank (4) is answered as empty.
enum : int { CELL_EMPTY = 0, CELL_NUMBER = 1, CELL_STRING = 2, CELL_BOOL = 3 };

// The 19 sheet operations.  `book` is the file's handle (a TextSheet or a
// library book), `sheet` what getSheet/addSheet answered.
struct SheetOps {
    int (*sheetCount)(void *book);
    void *(*getSheet)(void *book, int index);
    void *(*addSheet)(void *book, const char *name);
    const char *(*sheetName)(void *sheet);
    int (*namedRangeCount)(void *sheet);
    // The name of range `index`, its bounds (inclusive) in the four outputs;
    // NULL when there is none.
    const char *(*namedRange)(void *sheet, int index, int *rowFirst, int *rowLast, int *colFirst,
                              int *colLast);
    int (*firstRow)(void *sheet);
    int (*lastRow)(void *sheet);
    int (*firstCol)(void *sheet);
    int (*lastCol)(void *sheet);
    int (*cellType)(void *sheet, int row, int col);
    int (*isDate)(void *sheet, int row, int col);
    int (*readBool)(void *sheet, int row, int col);
    const char *(*readBoolText)(void *sheet, int row, int col);
    double (*readNum)(void *sheet, int row, int col);
    const char *(*readStr)(void *sheet, int row, int col);
    int (*writeBool)(void *sheet, int row, int col, int value);
    int (*writeNum)(void *sheet, int row, int col, double value);
    int (*writeStr)(void *sheet, int row, int col, const char *value);
};

// One open file of one context, shared by reference count.  One malloc block
// holds the header, then the scratch buffer, then the path.
struct SheetFile {
    SheetFile *next;
    SheetFile *previous;
    qd_context *context;
    const SheetOps *ops;
    int references;
    void *handle;   // TextSheet * or the library's book
    unsigned flags; // OPT_* bits
    // The last row and column the file's format holds, 0 for no limit: a
    // range resolved in a workbook stops there.
    int lastRowLimit, lastColLimit;
    int bufferSize;
    char *buffer;
    char *path;
};

// A resolved range of one transfer item.
struct RangeSpec {
    unsigned flags;
    int bufferSize;
    char *buffer;
    void *book;
    void *sheet;
    int firstRow, firstCol, lastRow, lastCol;
    int columnCount;
    int *columnMap; // heap, freed by the caller after the item
    const char *realFormat;
    SheetOps ops;
};

// ---- module globals (set at qdsheet_init) ---------------------------------
extern const qd_host *g_host;
extern void *g_msgdom;
extern pthread_mutex_t g_fileListMutex;
extern SheetFile *g_fileList;
extern unsigned g_moduleFlags;

// Translates a message text through the module's message domain.
const char *tr(const char *text);

// ---- options and the shared file list --------------------------------------
unsigned parseOptions(unsigned flags, const char **text, int *bufferSize, int *fieldSeparator,
                      int *decimalSeparator, char *trueText, char *falseText);
// Under the mutex: finds the file of (ctx, path, ops) or NULL.
SheetFile *findOpenFile(qd_context *ctx, const char *path, const SheetOps *ops);
// Allocates a SheetFile with its buffer and path in one block.
SheetFile *allocSheetFile(const char *path, int bufferSize);
// Under the mutex: links the file at the front of the list.
void linkOpenFile(SheetFile *file);
// Under the mutex: lowers the references; answers true when this was the last
// close, the file then being unlinked.
bool releaseOpenFile(SheetFile *file);
// The common open rule for an existing entry.  Under the mutex: finds the
// file of (ctx, path, ops); answers 0 when there is none.  When there is one,
// answers 1 and clears QD_MODE_PENDING in *mode: *out receives the file with
// one more reference, or NULL after reporting "file already open for reading
// only" (code 2) when writing is asked of a file open for reading only.
int shareOpenFile(qd_context *ctx, const char *path, const SheetOps *ops, int *mode,
                  SheetFile **out);
// Size of the path buffer given to findFilePath.
#define QD_PATH_MAX 1024
// Turns the file name left after the options into a path (QD_PATH_MAX bytes)
// with the host's findFile and the flags (mode & QD_MODE_WRITE) | 4.  A null
// or refused name reports "access denied" (code 1); answers 0 on success.
int findFilePath(qd_context *ctx, const char *name, int mode, char *path);

// ---- driver operations ------------------------------------------------------
extern const SheetOps g_textSheetOps;
extern const SheetOps g_bookSheetOps;
void *openText(qd_context *ctx, int *mode, const char *name);
int closeText(qd_context *ctx, void *file);
void *openBook(qd_context *ctx, int *mode, const char *name);
void *openXmlBook(qd_context *ctx, int *mode, const char *name);
int closeBook(qd_context *ctx, void *file);
int notSupported(qd_context *ctx, void *file, ...);
int transferIn(qd_context *ctx, void *file, int count, const char **labels, const qd_type *types,
               void **values, int *counters);
int transferOut(qd_context *ctx, void *file, int count, const char **labels, const qd_type *types,
                void **values);

// ---- range resolution and transfer helpers ----------------------------------
// Answers 0 on success, 1 after printing the failure.
int resolveRange(qd_context *ctx, unsigned flags, SheetFile *file, RangeSpec *spec,
                 const char *text);
int countColumns(qd_context *ctx, qd_type type, const int *description);
int listLeaves(qd_context *ctx, qd_type type, const int *description, qd_type *out);
// Formats date parts as the transfer prints dates: "2024-03-01",
// "12:30:00", "2024-03-01T12:30:00,500".
void formatDateParts(int year, int month, int day, int hour, int minute, int second, int msec,
                     char *buffer, int size);
// Unpacks a date serial of the book and formats it with formatDateParts.
void formatDate(void *book, double value, char *buffer, int size);

// ---- shared by reading and writing (transfer_common.cpp) --------------------
// Walks a list of arrays with listNext and checks that its elements can share
// rows: every element a non-null array, the same dimension count, index sets
// that are the same set or both undeclared, index element types 1 to 4 and
// array element types 1 to 4 or convertible to text.  On success answers 0,
// *count receives the number of arrays and *arrays a malloc'd table of them
// (the caller frees it; NULL with a count of 0 for an empty list).  On failure
// answers non-zero after printing the message (11 for an element that is no
// array), and nothing is left to free.
int checkArrayList(qd_context *ctx, void *list, int *count, void ***arrays);
// True for the base types 1 to 4.
bool isBasicType(qd_type type);
// True when the structure of `type` is a record (typeInfo QD_INFO_STRUCT).
bool isRecordType(qd_context *ctx, qd_type type);
// True when an external type converts to and from text (QD_INFO_PROPS).
bool hasTextConversion(qd_context *ctx, qd_type type);
// The record description of a record type, NULL when the host has none.
const int *recordDescription(qd_context *ctx, qd_type type);
// Rows and columns of a range position as messages print them: 1-based and
// absolute in the sheet.  colOffset is an offset from firstCol (a columnMap
// entry).
inline int messageRow(const RangeSpec *spec, int rowOffset) {
    return spec->firstRow + rowOffset + 1;
}
inline int messageCol(const RangeSpec *spec, int colOffset) {
    return spec->firstCol + colOffset + 1;
}
// True when the cell at (firstRow + rowOffset, firstCol + colOffset) is
// empty (a workbook blank included).
bool cellIsEmpty(const RangeSpec *spec, int rowOffset, int colOffset);
// The last row offset that can hold data: the range's last row, cut at the
// sheet's last row so that no walk reads past the table.  -1 when none.
int lastDataRow(const RangeSpec *spec);

// ---- messages and the per-item frame of a transfer ----------------------------
// Prints a "SHEET: ..." message, translated, through the host.
void sheetMessage(qd_context *ctx, const char *message);
// Prints a message with one "[R%dC%d]" position of the range.
void sheetMessageAt(qd_context *ctx, const char *message, const RangeSpec *spec, int rowOffset,
                    int colOffset);
// Prints "SHEET: Wrong number of columns (req:%d found:%d).\n".
void sheetMessageColumns(qd_context *ctx, int required, int found);
// Moves one item between its host object and its resolved range; answers 0
// on success, non-zero after printing.
typedef int (*TransferItemFn)(qd_context *ctx, RangeSpec *spec, qd_type type, void *value,
                              int *counter);
// The frame both transfer directions share: for each item the label's own
// options, the range, the item, the column map freed.  A failure ends the
// transfer; the answer is the number of items not done.  Done items have
// their value reference cleared.
int runTransfer(qd_context *ctx, void *file, int count, const char **labels, const qd_type *types,
                void **values, int *counters, TransferItemFn item);

// ---- range labels and cell reading -------------------------------------------
// Parses one cell reference (A1 or R1C1, a row or column may be left open as
// 0x7FFFFFFF) at *text and moves *text past it.  Answers 0 on success.
int parseCell(const char **text, int *row, int *col);
#define CELL_OPEN 0x7FFFFFFF
// Converts the cell at (firstRow + rowOffset, firstCol + colOffset) to
// `target` in *out.  Answers the cell kind (CELL_EMPTY with a zero value for
// an empty cell), -1 for a kind that cannot be read.
int readCell(qd_context *ctx, RangeSpec *spec, qd_type target, qd_value *out, int rowOffset,
             int colOffset);

#endif
