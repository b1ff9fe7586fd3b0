// Conversion of one cell to a host value, and the text form of dates.
#include "sheetfile.h"
#include "tabrix.h"

#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

namespace {

qd_int truncateToInt(double value) {
    if (isnan(value)) return 0;
    if (value >= 9223372036854775807.0) return INT64_MAX;
    if (value <= -9223372036854775808.0) return INT64_MIN;
    return (qd_int)value; // the conversion truncates toward zero
}

// A number as text in the file's buffer: a date through formatDate, other
// numbers with the host's format for reals.
const char *numberText(RangeSpec *spec, int row, int col, double value) {
    if (!spec->buffer || spec->bufferSize <= 0) return "";
    if (spec->ops.isDate(spec->sheet, row, col)) {
        formatDate(spec->book, value, spec->buffer, spec->bufferSize);
    } else {
        if (spec->bufferSize > 1) {
            spec->buffer[0] = '0';
            spec->buffer[1] = '\0';
        }
        snprintf(spec->buffer, (size_t)spec->bufferSize, spec->realFormat, value);
    }
    spec->buffer[spec->bufferSize - 1] = '\0';
    return spec->buffer;
}

} // namespace

void formatDateParts(int year, int month, int day, int hour, int minute, int second, int msec,
                     char *buffer, int size) {
    if (!buffer || size <= 0) return;
    if (year == 0 && month == 0 && day == 0) {
        if (msec != 0)
            snprintf(buffer, (size_t)size, "%02d:%02d:%02d,%03d", hour, minute, second, msec);
        else
            snprintf(buffer, (size_t)size, "%02d:%02d:%02d", hour, minute, second);
    } else if (hour == 0 && minute == 0 && second == 0 && msec == 0) {
        snprintf(buffer, (size_t)size, "%4d-%02d-%02d", year, month, day);
    } else if (msec != 0) {
        snprintf(buffer, (size_t)size, "%4d-%02d-%02dT%02d:%02d:%02d,%03d", year, month, day, hour,
                 minute, second, msec);
    } else {
        snprintf(buffer, (size_t)size, "%4d-%02d-%02dT%02d:%02d:%02d", year, month, day, hour,
                 minute, second);
    }
}

void formatDate(void *book, double value, char *buffer, int size) {
    if (!buffer || size <= 0) return;
    buffer[0] = '\0';
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, msec = 0;
    if (!tbBookDateUnpackA(book, value, &year, &month, &day, &hour, &minute, &second, &msec))
        return;
    formatDateParts(year, month, day, hour, minute, second, msec, buffer, size);
}

int readCell(qd_context *ctx, RangeSpec *spec, qd_type target, qd_value *out, int rowOffset,
             int colOffset) {
    int row = spec->firstRow + rowOffset;
    int col = spec->firstCol + colOffset;
    const SheetOps &ops = spec->ops;
    int kind = ops.cellType(spec->sheet, row, col);
    if (kind == 4) kind = CELL_EMPTY;
    qd_type base = target & QD_BASE_MASK;
    out->i = 0;
    switch (kind) {
    case CELL_EMPTY:
        if (base == QD_REAL)
            out->r = 0.0;
        else if (base == QD_STRING || base > QD_BOOL)
            out->s = nullptr;
        return CELL_EMPTY;
    case CELL_NUMBER: {
        double value = ops.readNum(spec->sheet, row, col);
        switch (base) {
        case QD_INT: out->i = truncateToInt(value); break;
        case QD_REAL: out->r = value; break;
        case QD_STRING: out->s = g_host->textHandle(ctx, numberText(spec, row, col, value)); break;
        case QD_BOOL: out->b = value != 0.0; break; // a NaN is not 0: true
        default: out->s = numberText(spec, row, col, value); break;
        }
        return kind;
    }
    case CELL_STRING: {
        const char *text = ops.readStr(spec->sheet, row, col);
        if (!text) text = "";
        switch (base) {
        case QD_INT: out->i = truncateToInt(strtod(text, nullptr)); break;
        case QD_REAL: out->r = strtod(text, nullptr); break;
        case QD_STRING: out->s = g_host->textHandle(ctx, text); break;
        case QD_BOOL: out->b = strcasecmp(text, "true") == 0; break;
        default: out->s = text; break;
        }
        return kind;
    }
    case CELL_BOOL: {
        int value = ops.readBool(spec->sheet, row, col);
        switch (base) {
        case QD_INT: out->i = value; break;
        case QD_REAL: out->r = value ? 1.0 : 0.0; break;
        case QD_STRING: {
            const char *text = ops.readBoolText(spec->sheet, row, col);
            out->s = g_host->textHandle(ctx, text ? text : (value ? "true" : "false"));
            break;
        }
        case QD_BOOL: out->b = value; break;
        // An external type takes the opposite word: the established behaviour
        // that models rely on.
        default: out->s = value ? "false" : "true"; break;
        }
        return kind;
    }
    default: return -1;
    }
}
