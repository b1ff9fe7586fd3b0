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
    void *handle; // TextSheet * or the library's book
    unsigned flags; // OPT_* bits
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
int transferOut(qd_context *ctx, void *file, int count, const char **labels,
                const qd_type *types, void **values);

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

#endif
