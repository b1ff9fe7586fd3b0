// The workbook drivers "xls" and "xlsx".
//
// Placeholder until the spreadsheet library's flat entry points exist: every
// open reports "cannot create book" (code 2) and answers null, so no workbook
// file is ever linked in and closeBook has nothing to do.  The sheet
// operations answer as an empty book would.  The real driver replaces this
// file once the library can create, load and save books.
#include "sheetfile.h"

namespace {

int noSheets(void *) { return 0; }
void *noSheet(void *, int) { return nullptr; }
void *noNewSheet(void *, const char *) { return nullptr; }
const char *noName(void *) { return nullptr; }
int noCount(void *) { return 0; }
const char *noRange(void *, int, int *, int *, int *, int *) { return nullptr; }
int zeroExtent(void *) { return 0; }
int zeroCell(void *, int, int) { return 0; }
const char *nullText(void *, int, int) { return nullptr; }
double zeroNumber(void *, int, int) { return 0.0; }
const char *emptyText(void *, int, int) { return ""; }
int refuseBool(void *, int, int, int) { return 0; }
int refuseNumber(void *, int, int, double) { return 0; }
int refuseText(void *, int, int, const char *) { return 0; }

} // namespace

const SheetOps g_bookSheetOps = {
    noSheets,  noSheet,   noNewSheet, noName,   noCount,    noRange,    zeroExtent,
    zeroExtent, zeroExtent, zeroExtent, zeroCell, zeroCell,  zeroCell,   nullText,
    zeroNumber, emptyText, refuseBool, refuseNumber, refuseText,
};

void *openBook(qd_context *ctx, int *mode, const char *) {
    if (mode)
        *mode |= QD_MODE_OPENED;
    g_host->reportError(ctx, tr("cannot create book"), 2);
    return nullptr;
}

void *openXmlBook(qd_context *ctx, int *mode, const char *name) {
    if (mode)
        *mode |= QD_MODE_XML;
    return openBook(ctx, mode, name);
}

int closeBook(qd_context *, void *) { return 0; }
