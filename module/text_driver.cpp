// The "csv" driver: open reads the whole file into a TextSheet shared by
// every open of the same context and path; the last close writes it back
// when it was opened for writing.  g_textSheetOps serves the store to the
// transfer code.
#include "text_sheet.h"

#include <cstdlib>
#include <cstring>

namespace {

const int kDefaultBufferSize = 2048;
const char kDefaultTrue[] = "TRUE";
const char kDefaultFalse[] = "FALSE";

TextSheet *store(void *p) { return static_cast<TextSheet *>(p); }

int opSheetCount(void *book) { return store(book)->rowCapacity > 0 ? 1 : 0; }
void *opGetSheet(void *book, int index) {
    return index == 0 && store(book)->rowCapacity > 0 ? book : nullptr;
}
void *opAddSheet(void *book, const char *) {
    TextSheet *s = store(book);
    if (s->rowCapacity > 0) return nullptr;
    // The new sheet holds the empty cell A1, so that the whole sheet is
    // A1:A1 until something larger is written.
    int index;
    return cellSlot(s, 0, 0, &index) ? book : nullptr;
}
const char *opSheetName(void *sheet) { return store(sheet)->rowCapacity > 0 ? "Sheet1" : nullptr; }
int opNamedRangeCount(void *) { return 0; }
const char *opNamedRange(void *, int, int *, int *, int *, int *) { return nullptr; }
int opFirstRow(void *sheet) { return store(sheet)->firstRow; }
int opLastRow(void *sheet) { return store(sheet)->lastRow; }
int opFirstCol(void *sheet) { return store(sheet)->firstCol; }
int opLastCol(void *sheet) { return store(sheet)->lastCol; }
int opCellType(void *sheet, int row, int col) { return cellKind(store(sheet), row, col); }
int opIsDate(void *, int, int) { return 0; }
int opReadBool(void *sheet, int row, int col) { return cellBool(store(sheet), row, col); }
const char *opReadBoolText(void *sheet, int row, int col) {
    return cellBoolText(store(sheet), row, col);
}
double opReadNum(void *sheet, int row, int col) { return cellNumber(store(sheet), row, col); }
const char *opReadStr(void *sheet, int row, int col) { return cellText(store(sheet), row, col); }
// The writers answer true on success, as the library's writers do.
int opWriteBool(void *sheet, int row, int col, int value) {
    return setBool(store(sheet), row, col, value) == 0;
}
int opWriteNum(void *sheet, int row, int col, double value) {
    return setNumber(store(sheet), row, col, value) == 0;
}
int opWriteStr(void *sheet, int row, int col, const char *value) {
    return setText(store(sheet), row, col, value) == 0;
}

const char *realFormat(qd_context *ctx) {
    const char *format = nullptr;
    if (g_host->getParameter(ctx, QD_PARAM_REALFMT, &format) != 0 || !format) format = "%.15g";
    return format;
}

void freeText(SheetFile *file) {
    TextSheet *s = store(file->handle);
    if (s) {
        clearStore(s);
        free(s);
    }
    free(file);
}

} // namespace

const SheetOps g_textSheetOps = {
    opSheetCount, opGetSheet,  opAddSheet, opSheetName,    opNamedRangeCount,
    opNamedRange, opFirstRow,  opLastRow,  opFirstCol,     opLastCol,
    opCellType,   opIsDate,    opReadBool, opReadBoolText, opReadNum,
    opReadStr,    opWriteBool, opWriteNum, opWriteStr,
};

void *openText(qd_context *ctx, int *mode, const char *name) {
    *mode |= QD_MODE_OPENED;
    const bool writing = (*mode & QD_MODE_WRITE) != 0;
    int bufferSize = kDefaultBufferSize;
    int fieldSeparator = 0, decimalSeparator = 0;
    char trueText[TEXT_BOOL_TEXT] = "", falseText[TEXT_BOOL_TEXT] = "";
    const char *rest = name;
    unsigned flags = parseOptions(0, &rest, &bufferSize, &fieldSeparator, &decimalSeparator,
                                  trueText, falseText);

    char path[QD_PATH_MAX];
    if (findFilePath(ctx, rest, *mode, path) != 0) return nullptr;

    SheetFile *shared = nullptr;
    if (shareOpenFile(ctx, path, &g_textSheetOps, mode, &shared)) return shared;

    SheetFile *file = allocSheetFile(path, bufferSize);
    if (!file) {
        g_host->reportError(ctx, tr("out of memory"), 3);
        return nullptr;
    }
    TextSheet *s = static_cast<TextSheet *>(calloc(1, sizeof(TextSheet)));
    if (!s) {
        free(file);
        g_host->reportError(ctx, tr("cannot create book"), 4);
        return nullptr;
    }
    resetStore(s);
    file->context = ctx;
    file->ops = &g_textSheetOps;
    file->handle = s;
    file->flags = flags;
    s->context = ctx;
    s->buffer = file->buffer;
    s->bufferSize = file->bufferSize;
    s->fieldSeparator = fieldSeparator ? fieldSeparator : ',';
    s->decimalSeparator = decimalSeparator ? decimalSeparator : '.';
    strcpy(s->trueText, trueText[0] ? trueText : kDefaultTrue);
    strcpy(s->falseText, falseText[0] ? falseText : kDefaultFalse);
    s->realFormat = realFormat(ctx);

    if (g_host->openStream(ctx, writing ? QD_STREAM_EXISTING : 0, path) != 0) {
        // A file to be written need not exist: create it, and start empty.
        if (!writing || g_host->openStream(ctx, QD_STREAM_WRITE, path) != 0) {
            *mode |= QD_MODE_NOSTREAM;
            freeText(file);
            return nullptr;
        }
        g_host->closeStream(ctx, 2);
    } else {
        int failed = readTextStream(s);
        if (g_host->closeStream(ctx, 0) != 0 || failed) {
            g_host->reportError(ctx, tr("failed to load data"), 5);
            freeText(file);
            return nullptr;
        }
    }
    if (writing) file->flags |= OPT_WRITING;
    *mode &= ~QD_MODE_PENDING;
    linkOpenFile(file);
    return file;
}

int closeText(qd_context *ctx, void *handle) {
    SheetFile *file = static_cast<SheetFile *>(handle);
    if (!file) return 1;
    if (!releaseOpenFile(file)) return 0;
    if (!(file->flags & OPT_WRITING)) {
        freeText(file);
        return 0;
    }
    TextSheet *s = store(file->handle);
    if (g_host->openStream(ctx, QD_STREAM_WRITE, file->path) != 0) {
        freeText(file);
        return 1;
    }
    s->context = ctx;
    s->realFormat = realFormat(ctx);
    int failed = writeTextStream(s);
    if (g_host->closeStream(ctx, 2) != 0) failed = 1;
    freeText(file);
    return failed;
}
