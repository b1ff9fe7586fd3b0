// Range labels: "[Sheet$B3:F10](#1,name)", "[2$A:C]", "[]", or a range name,
// resolved through SheetOps into a sheet, a rectangle and a column map.
#include "sheetfile.h"
#include "tabrix/cell_address.h"

#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

namespace {

const int kMaxColumn = 16383;
// Row numbers above this are refused so that no bound reaches the open marker.
const long kMaxRowNumber = 0x7FFFFFF0L;
// Sheet numbers above this are never found nor made.
const long kMaxSheetNumber = 65535;

bool sameName(const char *given, size_t length, const char *name) {
    return name && strlen(name) == length && strncasecmp(given, name, length) == 0;
}

// Reads decimal digits at *p; answers false when there are none or the value
// passes `limit`.
bool readNumber(const char **p, long limit, long *value) {
    const char *s = *p;
    if (!isdigit((unsigned char)*s)) return false;
    long v = 0;
    while (isdigit((unsigned char)*s)) {
        v = v * 10 + (*s - '0');
        if (v > limit) return false;
        s++;
    }
    *p = s;
    *value = v;
    return true;
}

// Finds the sheet of the label's sheet part [name, name + length).  A file
// open for writing gets the sheets it asks for.
void *findSheet(qd_context *ctx, RangeSpec *spec, const char *name, size_t length) {
    const SheetOps &ops = spec->ops;
    bool writing = (spec->flags & OPT_WRITING) != 0;
    int count = ops.sheetCount(spec->book);
    if (length == 0) {
        if (count > 0) return ops.getSheet(spec->book, 0);
        if (!writing) {
            sheetMessage(ctx, "SHEET: Sheet not found.\n");
            return nullptr;
        }
        void *sheet = ops.addSheet(spec->book, "Sheet1");
        if (!sheet) sheetMessage(ctx, "SHEET: A new sheet cannot be added.\n");
        return sheet;
    }
    size_t digits = 0;
    while (digits < length && isdigit((unsigned char)name[digits])) digits++;
    if (digits == length) {
        long number = 0;
        for (size_t i = 0; i < length && number <= kMaxSheetNumber; i++)
            number = number * 10 + (name[i] - '0');
        if (number >= 1 && number <= count) return ops.getSheet(spec->book, (int)(number - 1));
        if (number < 1 || !writing || number > kMaxSheetNumber) {
            sheetMessage(ctx, "SHEET: Sheet not found.\n");
            return nullptr;
        }
        void *sheet = nullptr;
        for (int n = count + 1; n <= number; n++) {
            char title[32];
            snprintf(title, sizeof title, "Sheet%d", n);
            sheet = ops.addSheet(spec->book, title);
            if (!sheet) {
                sheetMessage(ctx, "SHEET: A new sheet cannot be added.\n");
                return nullptr;
            }
        }
        return sheet;
    }
    for (int i = 0; i < count; i++) {
        void *sheet = ops.getSheet(spec->book, i);
        if (sheet && sameName(name, length, ops.sheetName(sheet))) return sheet;
    }
    if (!writing) {
        sheetMessage(ctx, "SHEET: Sheet not found.\n");
        return nullptr;
    }
    char *title = strndup(name, length);
    if (!title) {
        sheetMessage(ctx, "SHEET: Out of memory error.\n");
        return nullptr;
    }
    void *sheet = ops.addSheet(spec->book, title);
    free(title);
    if (!sheet) sheetMessage(ctx, "SHEET: A new sheet cannot be added.\n");
    return sheet;
}

// The rectangle part behind "[" or "$": answers a pointer behind the closing
// "]", or NULL after printing the failure.
const char *parseRectangle(qd_context *ctx, RangeSpec *spec, const char *p) {
    const SheetOps &ops = spec->ops;
    if (*p == ']' || *p == '\0') {
        spec->firstRow = ops.firstRow(spec->sheet);
        spec->lastRow = ops.lastRow(spec->sheet);
        spec->firstCol = ops.firstCol(spec->sheet);
        spec->lastCol = ops.lastCol(spec->sheet);
        return *p ? p + 1 : p;
    }
    int row1, col1, row2, col2;
    if (parseCell(&p, &row1, &col1) != 0) {
        sheetMessage(ctx, "SHEET: Invalid range.\n");
        return nullptr;
    }
    if (*p == ']') {
        if (row1 == CELL_OPEN || col1 == CELL_OPEN) {
            sheetMessage(ctx, "SHEET: Invalid range.\n");
            return nullptr;
        }
        row2 = row1;
        col2 = col1;
    } else if (*p == ':') {
        p++;
        if (parseCell(&p, &row2, &col2) != 0 || *p != ']') {
            sheetMessage(ctx, "SHEET: Invalid range.\n");
            return nullptr;
        }
        if (row2 == CELL_OPEN) {
            if (row1 != CELL_OPEN) {
                sheetMessage(ctx, "SHEET: Invalid range.\n");
                return nullptr;
            }
            row1 = 0;
            row2 = ops.lastRow(spec->sheet);
        }
        if (col2 == CELL_OPEN) {
            if (col1 != CELL_OPEN) {
                sheetMessage(ctx, "SHEET: Invalid range.\n");
                return nullptr;
            }
            col1 = 0;
            col2 = ops.lastCol(spec->sheet);
        }
    } else {
        sheetMessage(ctx, "SHEET: Invalid range.\n");
        return nullptr;
    }
    spec->firstRow = row1;
    spec->firstCol = col1;
    spec->lastRow = row2;
    spec->lastCol = col2;
    return p + 1;
}

// The header rule: the rectangle's first row holds the column names.
int applyHeader(qd_context *ctx, RangeSpec *spec) {
    int rows = spec->lastRow - spec->firstRow;
    if (rows < 0) {
        sheetMessage(ctx, "SHEET: Missing header row.\n");
        return 1;
    }
    if (rows == 0) {
        if ((spec->flags & (OPT_GROW | OPT_WRITING)) != (OPT_GROW | OPT_WRITING)) {
            sheetMessage(ctx, "SHEET: Missing header row.\n");
            return 1;
        }
        spec->lastRow++;
    }
    spec->firstRow++;
    return 0;
}

void badIdentifier(qd_context *ctx, const char *item, size_t length) {
    char text[64];
    if (length >= sizeof text) length = sizeof text - 1;
    memcpy(text, item, length);
    text[length] = '\0';
    g_host->dispatchError(ctx, tr("SHEET: Invalid column identifier in selection (%s).\n"), text);
}

void badNumber(qd_context *ctx, long number) {
    g_host->dispatchError(ctx, tr("SHEET: Invalid column number in selection (%ld).\n"), number);
}

// "#n" or "n" at [item, item + length): the number, or a negative answer when
// the text is no number at all.
long itemNumber(const char *item, size_t length, bool hashRequired) {
    size_t i = 0;
    if (i < length && item[i] == '#')
        i++;
    else if (hashRequired)
        return -1;
    if (i == length) return -1;
    long v = 0;
    for (; i < length; i++) {
        if (!isdigit((unsigned char)item[i])) return -1;
        if (v < 100000000L) v = v * 10 + (item[i] - '0');
    }
    return v;
}

bool headerIsEmpty(const RangeSpec *spec, int headerRow, int width) {
    for (int c = 0; c < width; c++) {
        int kind = spec->ops.cellType(spec->sheet, headerRow, spec->firstCol + c);
        if (kind != CELL_EMPTY && kind != 4) return false;
    }
    return true;
}

int findHeader(const RangeSpec *spec, int headerRow, int width, const char *name, size_t length) {
    for (int c = 0; c < width; c++) {
        if (spec->ops.cellType(spec->sheet, headerRow, spec->firstCol + c) != CELL_STRING) continue;
        const char *text = spec->ops.readStr(spec->sheet, headerRow, spec->firstCol + c);
        if (text && strlen(text) == length && strncmp(text, name, length) == 0) return c;
    }
    return -1;
}

// Column selection "(a, #2, 3)" at p (behind the "(").
int selectColumns(qd_context *ctx, RangeSpec *spec, const char *p) {
    const char *end = strchr(p, ')');
    if (!end) end = p + strlen(p);
    const char *q = p;
    while (q < end && isspace((unsigned char)*q)) q++;
    if (q == end || *q == ',') {
        badIdentifier(ctx, q, 0);
        return 1;
    }
    int count = 1;
    for (const char *s = p; s < end; s++)
        if (*s == ',') count++;
    int width = spec->lastCol + 1 - spec->firstCol;
    bool header = (spec->flags & OPT_SKIPH) != 0;
    int headerRow = spec->firstRow;
    bool create = false;
    if (header) {
        if (applyHeader(ctx, spec) != 0) return 1;
        create = (spec->flags & (OPT_SKIPH_NEW | OPT_WRITING)) == (OPT_SKIPH_NEW | OPT_WRITING) &&
                 headerIsEmpty(spec, headerRow, width);
    }
    int *map = (int *)malloc(sizeof(int) * (size_t)count);
    if (!map) {
        sheetMessage(ctx, "SHEET: Out of memory error.\n");
        return 1;
    }
    const char *item = p;
    for (int k = 0; k < count; k++) {
        const char *stop = item;
        while (stop < end && *stop != ',') stop++;
        const char *a = item, *b = stop;
        while (a < b && isspace((unsigned char)*a)) a++;
        while (b > a && isspace((unsigned char)b[-1])) b--;
        size_t length = (size_t)(b - a);
        int column = -1;
        if (!header) {
            long number = itemNumber(a, length, false);
            if (number < 0) {
                badIdentifier(ctx, a, length);
                free(map);
                return 1;
            }
            if (number < 1 || number > width) {
                badNumber(ctx, number);
                free(map);
                return 1;
            }
            column = (int)number - 1;
        } else {
            long number = itemNumber(a, length, true);
            if (number >= 0) {
                if (create || number < 1 || number > width) {
                    badNumber(ctx, number);
                    free(map);
                    return 1;
                }
                column = (int)number - 1;
            } else if (create) {
                if (length == 0 || k >= width) {
                    badIdentifier(ctx, a, length);
                    free(map);
                    return 1;
                }
                char *name = strndup(a, length);
                if (!name) {
                    sheetMessage(ctx, "SHEET: Out of memory error.\n");
                    free(map);
                    return 1;
                }
                spec->ops.writeStr(spec->sheet, headerRow, spec->firstCol + k, name);
                free(name);
                column = k;
            } else {
                column = length ? findHeader(spec, headerRow, width, a, length) : -1;
                if (column < 0) {
                    badIdentifier(ctx, a, length);
                    free(map);
                    return 1;
                }
            }
        }
        map[k] = column;
        item = stop + 1;
    }
    int smallest = map[0], largest = map[0];
    for (int k = 1; k < count; k++) {
        if (map[k] < smallest) smallest = map[k];
        if (map[k] > largest) largest = map[k];
    }
    if (smallest == 0 && largest < width - 1) {
        spec->lastCol = spec->firstCol + largest;
    } else if (smallest > 0) {
        spec->lastCol = spec->firstCol + largest;
        spec->firstCol += smallest;
        for (int k = 0; k < count; k++) map[k] -= smallest;
    }
    spec->columnCount = count;
    spec->columnMap = map;
    return 0;
}

// The rectangle is known: check it, then select columns or take them all.
int finishRange(qd_context *ctx, RangeSpec *spec, const char *rest) {
    if (spec->firstRow < 0 || spec->firstRow > spec->lastRow || spec->firstCol < 0 ||
        spec->firstCol > spec->lastCol) {
        sheetMessage(ctx, "SHEET: Invalid range.\n");
        return 1;
    }
    if (*rest == '(') return selectColumns(ctx, spec, rest + 1);
    if ((spec->flags & OPT_SKIPH) && applyHeader(ctx, spec) != 0) return 1;
    int count = spec->lastCol + 1 - spec->firstCol;
    int *map = (int *)malloc(sizeof(int) * (size_t)count);
    if (!map) {
        sheetMessage(ctx, "SHEET: Out of memory error.\n");
        return 1;
    }
    for (int k = 0; k < count; k++) map[k] = k;
    spec->columnCount = count;
    spec->columnMap = map;
    return 0;
}

int resolveName(qd_context *ctx, RangeSpec *spec, const char *text) {
    const char *open = strchr(text, '(');
    size_t length = open ? (size_t)(open - text) : strlen(text);
    const SheetOps &ops = spec->ops;
    int sheets = ops.sheetCount(spec->book);
    for (int s = 0; s < sheets; s++) {
        void *sheet = ops.getSheet(spec->book, s);
        if (!sheet) continue;
        for (int n = ops.namedRangeCount(sheet) - 1; n >= 0; n--) {
            int r1 = 0, r2 = 0, c1 = 0, c2 = 0;
            const char *name = ops.namedRange(sheet, n, &r1, &r2, &c1, &c2);
            if (!sameName(text, length, name)) continue;
            spec->sheet = sheet;
            spec->firstRow = r1;
            spec->lastRow = r2;
            spec->firstCol = c1;
            spec->lastCol = c2;
            return finishRange(ctx, spec, text + length);
        }
    }
    sheetMessage(ctx, "SHEET: Range name not found.\n");
    return 1;
}

} // namespace

int parseCell(const char **text, int *row, int *col) {
    const char *p = *text;
    // R1C1: R, digits, C, digits.
    if ((*p == 'R' || *p == 'r') && isdigit((unsigned char)p[1])) {
        const char *s = p + 1;
        long r = 0, c = 0;
        if (readNumber(&s, kMaxRowNumber, &r) && (*s == 'C' || *s == 'c')) {
            s++;
            if (!readNumber(&s, kMaxColumn + 1, &c) || c - 1 > kMaxColumn) return 1;
            if (isalpha((unsigned char)*s)) return 1;
            *row = (int)(r - 1);
            *col = (int)(c - 1);
            *text = s;
            return 0;
        }
    }
    // A1: letters in any case, digits, or either alone for a whole column or row.
    tabrix::AddressRules rules;
    rules.columnText = tabrix::ColumnText::AnyCase;
    rules.dollars = false; // "$" ends the sheet part of a label
    rules.maxColumn = kMaxColumn + 1;
    rules.maxRow = kMaxRowNumber;
    tabrix::CellAddress a = tabrix::scanCellAddress(p, strlen(p), rules);
    if (a.status != tabrix::CellAddress::Ok) return 1;
    if (a.hasRow() && isalpha((unsigned char)p[a.end])) return 1;
    *row = a.hasRow() ? (int)(a.row - 1) : CELL_OPEN;
    *col = a.hasColumn() ? (int)(a.column - 1) : CELL_OPEN;
    *text = p + a.end;
    return 0;
}

int resolveRange(qd_context *ctx, unsigned flags, SheetFile *file, RangeSpec *spec,
                 const char *text) {
    memset(spec, 0, sizeof *spec);
    spec->flags = flags;
    spec->ops = *file->ops;
    spec->book = file->handle;
    spec->buffer = file->buffer;
    spec->bufferSize = file->bufferSize;
    const char *format = nullptr;
    if (g_host->getParameter(ctx, QD_PARAM_REALFMT, &format) != 0 || !format) format = "%g";
    spec->realFormat = format;
    if (!text) text = "";
    if (*text != '[') return resolveName(ctx, spec, text);
    const char *p = text + 1;
    const char *dollar = strchr(p, '$');
    const char *close = strchr(p, ']');
    // A "$" behind the closing bracket belongs to no sheet part.
    if (dollar && close && dollar > close) dollar = nullptr;
    const char *range = p;
    size_t nameLength = 0;
    if (dollar && dollar != p) {
        nameLength = (size_t)(dollar - p);
        range = dollar + 1;
    }
    spec->sheet = findSheet(ctx, spec, p, nameLength);
    if (!spec->sheet) return 1;
    const char *rest = parseRectangle(ctx, spec, range);
    if (!rest) return 1;
    // A workbook's extents answer one past the last used row and column,
    // which at the format's last row is a row the sheet cannot hold.
    if (file->lastRowLimit > 0 && spec->lastRow > file->lastRowLimit)
        spec->lastRow = file->lastRowLimit;
    if (file->lastColLimit > 0 && spec->lastCol > file->lastColLimit)
        spec->lastCol = file->lastColLimit;
    return finishRange(ctx, spec, rest);
}
