// The workbook drivers "xls" and "xlsx".
//
// g_bookSheetOps serves a library book to the transfer code through the flat
// entry points; openBook and closeBook make, load and save the book behind a
// shared SheetFile.  The two drivers are one code: "xlsx" only sets
// QD_MODE_XML, which picks the Open XML book at creation.  All the module's
// text is UTF-8, so every book gets the locale "UTF-8".
#include "qdnls.h"
#include "sheetfile.h"
#include "tabrix.h"

#include <cstdlib>

namespace {

const int kDefaultBufferSize = 2048;
// Stream flags of the host: probe an existing binary file for reading, and
// create (or truncate) a binary file.
const int kProbeExisting = QD_STREAM_EXISTING | QD_STREAM_BINARY;
const int kCreate = QD_STREAM_WRITE | QD_STREAM_BINARY;
// closeStream modes after reading and after writing.
const int kClosedRead = 0;
const int kClosedWritten = 2;
// The last row and column of each format.
const int kBinaryLastRow = 65535, kBinaryLastCol = 255;
const int kXmlLastRow = 1048575, kXmlLastCol = 16383;
// The library's cell type of a cell that holds only a format.
const int kBookBlank = 4;

// ---- the sheet operations, in the order of SheetOps -------------------------

int opSheetCount(void *book) { return tbBookSheetCountA(book); }
void *opGetSheet(void *book, int index) { return tbBookGetSheetA(book, index); }
void *opAddSheet(void *book, const char *name) { return tbBookAddSheetA(book, name, nullptr); }
const char *opSheetName(void *sheet) { return tbSheetNameA(sheet); }
int opNamedRangeCount(void *sheet) { return tbSheetNamedRangeSizeA(sheet); }
// Names of every scope are listed; the transfer only wants the bounds.
const char *opNamedRange(void *sheet, int index, int *rowFirst, int *rowLast, int *colFirst,
                         int *colLast) {
    int scope = -1;
    int hidden = 0;
    return tbSheetNamedRangeA(sheet, index, rowFirst, rowLast, colFirst, colLast, &scope, &hidden);
}
int opFirstRow(void *sheet) { return tbSheetFirstRowA(sheet); }
int opLastRow(void *sheet) { return tbSheetLastRowA(sheet); }
int opFirstCol(void *sheet) { return tbSheetFirstColA(sheet); }
int opLastCol(void *sheet) { return tbSheetLastColA(sheet); }
// A blank cell carries a format and no value: to the transfer it is empty.
int opCellType(void *sheet, int row, int col) {
    int type = tbSheetCellTypeA(sheet, row, col);
    return type == kBookBlank ? CELL_EMPTY : type;
}
int opIsDate(void *sheet, int row, int col) { return tbSheetIsDateA(sheet, row, col); }
int opReadBool(void *sheet, int row, int col) { return tbSheetReadBoolA(sheet, row, col, nullptr); }
const char *opReadBoolText(void *sheet, int row, int col) {
    return tbSheetReadBoolA(sheet, row, col, nullptr) > 0 ? "true" : "false";
}
double opReadNum(void *sheet, int row, int col) {
    return tbSheetReadNumA(sheet, row, col, nullptr);
}
const char *opReadStr(void *sheet, int row, int col) {
    return tbSheetReadStrA(sheet, row, col, nullptr);
}
int opWriteBool(void *sheet, int row, int col, int value) {
    return tbSheetWriteBoolA(sheet, row, col, value, nullptr);
}
int opWriteNum(void *sheet, int row, int col, double value) {
    return tbSheetWriteNumA(sheet, row, col, value, nullptr);
}
int opWriteStr(void *sheet, int row, int col, const char *value) {
    return tbSheetWriteStrA(sheet, row, col, value ? value : "", nullptr);
}

// ---- books -------------------------------------------------------------------

// The creation entry points let an exception (out of memory) through; here it
// becomes a null book like any other failure to create one.
void *createBook(bool xml) {
    try {
        return xml ? tbCreateXMLBookCA() : tbCreateBookCA();
    } catch (...) {
        return nullptr;
    }
}

// Loads the file at `path`, a UTF-8 text, under the name the system uses.
bool loadBook(void *book, const char *path) {
    char name[QD_PATH_MAX];
    QDNLSconvstrto(QDNLS_ENC_SYSTEM, path, name, sizeof name);
    return tbBookLoadA(book, name) != 0;
}

// Reports the book's own message, which is not translated, and ends the book.
void failBook(qd_context *ctx, void *book, int code) {
    g_host->reportError(ctx, tbBookErrorMessageA(book), code);
    tbBookReleaseA(book);
}

// The book of a file opened for writing.  An existing file is loaded so that
// everything it holds survives the save; a missing one is created at once
// (so that a path that cannot be written fails now, not at the close) and the
// book starts empty, without a sheet.  Answers false after reporting and
// releasing the book.
bool prepareWrittenBook(qd_context *ctx, int *mode, void *book, const char *path) {
    if (g_host->openStream(ctx, kProbeExisting, path) == 0) {
        g_host->closeStream(ctx, kClosedRead);
        if (!loadBook(book, path)) {
            failBook(ctx, book, 6);
            return false;
        }
        return true;
    }
    if (g_host->openStream(ctx, kCreate, path) != 0) {
        tbBookReleaseA(book);
        *mode |= QD_MODE_NOSTREAM;
        return false;
    }
    g_host->closeStream(ctx, kClosedWritten);
    return true;
}

} // namespace

const SheetOps g_bookSheetOps = {
    opSheetCount, opGetSheet,  opAddSheet, opSheetName,    opNamedRangeCount,
    opNamedRange, opFirstRow,  opLastRow,  opFirstCol,     opLastCol,
    opCellType,   opIsDate,    opReadBool, opReadBoolText, opReadNum,
    opReadStr,    opWriteBool, opWriteNum, opWriteStr,
};

void *openBook(qd_context *ctx, int *mode, const char *name) {
    *mode |= QD_MODE_OPENED;
    const bool writing = (*mode & QD_MODE_WRITE) != 0;
    int bufferSize = kDefaultBufferSize;
    const char *rest = name;
    unsigned flags = parseOptions(0, &rest, &bufferSize, nullptr, nullptr, nullptr, nullptr);

    char path[QD_PATH_MAX];
    if (findFilePath(ctx, rest, *mode, path) != 0) return nullptr;

    SheetFile *shared = nullptr;
    if (shareOpenFile(ctx, path, &g_bookSheetOps, mode, &shared)) return shared;

    void *book = createBook((*mode & QD_MODE_XML) != 0);
    if (!book) {
        g_host->reportError(ctx, tr("cannot create book"), 2);
        return nullptr;
    }
    tbBookSetLocaleA(book, "UTF-8");
    if (writing) {
        if (!prepareWrittenBook(ctx, mode, book, path)) return nullptr;
    } else if (!loadBook(book, path)) {
        failBook(ctx, book, 7);
        return nullptr;
    }

    SheetFile *file = allocSheetFile(path, bufferSize);
    if (!file) {
        tbBookReleaseA(book);
        g_host->reportError(ctx, tr("out of memory"), 3);
        return nullptr;
    }
    file->context = ctx;
    file->ops = &g_bookSheetOps;
    file->handle = book;
    file->flags = flags | (writing ? OPT_WRITING : 0u);
    const bool xml = (*mode & QD_MODE_XML) != 0;
    file->lastRowLimit = xml ? kXmlLastRow : kBinaryLastRow;
    file->lastColLimit = xml ? kXmlLastCol : kBinaryLastCol;
    *mode &= ~QD_MODE_PENDING;
    linkOpenFile(file);
    return file;
}

void *openXmlBook(qd_context *ctx, int *mode, const char *name) {
    *mode |= QD_MODE_XML;
    return openBook(ctx, mode, name);
}

// The last close saves a file opened for writing: nothing reaches the file
// before.  The save takes the stored path as it is.
int closeBook(qd_context *ctx, void *handle) {
    SheetFile *file = static_cast<SheetFile *>(handle);
    if (!file) return 1;
    if (!releaseOpenFile(file)) return 0;
    int failed = 0;
    if ((file->flags & OPT_WRITING) && !tbBookSaveA(file->handle, file->path)) {
        g_host->reportError(ctx, tbBookErrorMessageA(file->handle), 8);
        failed = 1;
    }
    tbBookReleaseA(file->handle);
    free(file);
    return failed;
}
