// The writer of text-separated files: every row from 0 to the last, every
// column from 0 to the row's last, texts quoted when they hold a quote or the
// field separator, numbers in the host's real format with the decimal
// separator.  Output is gathered in a block and handed to the host's print
// in large pieces.
#include "text_sheet.h"

#include <charconv>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const size_t kOutBlock = 1 << 16;

struct Out {
    qd_context *ctx;
    char *data;
    size_t used;
};

void flush(Out *o) {
    if (o->used == 0) return;
    o->data[o->used] = '\0';
    g_host->print(o->ctx, "%s", o->data);
    o->used = 0;
}

inline void putChar(Out *o, char c) {
    if (o->used + 1 >= kOutBlock) flush(o);
    o->data[o->used++] = c;
}

void putText(Out *o, const char *text, size_t len) {
    while (len > 0) {
        if (o->used + 1 >= kOutBlock) flush(o);
        size_t room = kOutBlock - 1 - o->used;
        size_t n = len < room ? len : room;
        memcpy(o->data + o->used, text, n);
        o->used += n;
        text += n;
        len -= n;
    }
}

// A quoted field: every quote doubled.
void putQuoted(Out *o, const char *text) {
    putChar(o, '"');
    for (const char *q; (q = strchr(text, '"')) != nullptr; text = q + 1) {
        putText(o, text, (size_t)(q - text) + 1);
        putChar(o, '"');
    }
    putText(o, text, strlen(text));
    putChar(o, '"');
}

// A field of `len` bytes, quoted when it holds a quote or the field
// separator (a zero separator quotes every field, as a search for it would).
void putCellText(Out *o, const char *text, size_t len, char fsep) {
    bool quote = fsep == '\0';
    for (size_t i = 0; i < len && !quote; ++i) quote = text[i] == '"' || text[i] == fsep;
    if (quote)
        putQuoted(o, text);
    else
        putText(o, text, len);
}

// Formats a number into the store's buffer; its length, or 0 when it does
// not fit.
int formatNumber(TextSheet *s, double value) {
    const char *format = s->realFormat ? s->realFormat : "%.15g";
    int n = formatReal(format, value, s->buffer, s->bufferSize);
    if (n < 1 || n >= s->bufferSize) return 0;
    if (s->decimalSeparator != '.') {
        char *dot = static_cast<char *>(memchr(s->buffer, '.', (size_t)n));
        if (dot) *dot = (char)s->decimalSeparator;
    }
    return n;
}

// The precision of a format of the form "%.<n>g", or 0 for any other form.
int generalPrecision(const char *format) {
    if (format[0] != '%' || format[1] != '.') return 0;
    int precision = 0;
    const char *p = format + 2;
    for (; *p >= '0' && *p <= '9' && precision < 100; ++p) precision = precision * 10 + (*p - '0');
    return p[0] == 'g' && p[1] == '\0' && p > format + 2 && precision >= 1 && precision <= 17
               ? precision
               : 0;
}

const double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                               1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// "%.<precision>g" for precision <= 15 built from the shortest digits that
// read back as `value`.  When those are at most `precision` digits, they are
// exactly what rounding to `precision` digits gives, since every decimal of
// 15 or fewer digits survives the trip through a double.  Answers the length,
// or -1 when this way does not apply or the text does not fit.
int shortestGeneral(double value, int precision, char *buffer, int size) {
    // Subnormal numbers carry fewer digits than that.
    if (precision > 15 || !std::isfinite(value) || (value != 0 && std::fabs(value) < DBL_MIN))
        return -1;
    // Whole numbers of at most `precision` digits print as integers.
    if (value == std::trunc(value) && std::fabs(value) < kPowersOfTen[precision] &&
        !(value == 0 && std::signbit(value))) {
        auto r = std::to_chars(buffer, buffer + size - 1, (long long)value);
        if (r.ec != std::errc()) return -1;
        *r.ptr = '\0';
        return (int)(r.ptr - buffer);
    }
    char sci[40];
    auto r = std::to_chars(sci, sci + sizeof sci, value, std::chars_format::scientific);
    if (r.ec != std::errc()) return -1;
    // sci holds [-]d[.ddd]e(+|-)xx
    const char *p = sci;
    char digits[20];
    int count = 0;
    bool negative = *p == '-';
    if (negative) ++p;
    for (; *p != 'e'; ++p)
        if (*p != '.') {
            if (count == (int)sizeof digits) return -1;
            digits[count++] = *p;
        }
    int exponent = 0;
    if (std::from_chars(p + (p[1] == '+' ? 2 : 1), r.ptr, exponent).ec != std::errc() ||
        count > precision)
        return -1;

    char text[64];
    int n = 0;
    if (negative) text[n++] = '-';
    if (exponent >= -4 && exponent < precision) {
        if (exponent >= 0) {
            for (int i = 0; i <= exponent; ++i) text[n++] = i < count ? digits[i] : '0';
            if (count > exponent + 1) {
                text[n++] = '.';
                for (int i = exponent + 1; i < count; ++i) text[n++] = digits[i];
            }
        } else {
            text[n++] = '0';
            text[n++] = '.';
            for (int i = -1; i > exponent; --i) text[n++] = '0';
            for (int i = 0; i < count; ++i) text[n++] = digits[i];
        }
    } else {
        text[n++] = digits[0];
        if (count > 1) {
            text[n++] = '.';
            for (int i = 1; i < count; ++i) text[n++] = digits[i];
        }
        text[n++] = 'e';
        text[n++] = exponent < 0 ? '-' : '+';
        int e = exponent < 0 ? -exponent : exponent;
        if (e >= 100) text[n++] = (char)('0' + e / 100);
        text[n++] = (char)('0' + e / 10 % 10);
        text[n++] = (char)('0' + e % 10);
    }
    if (n >= size) return -1;
    memcpy(buffer, text, (size_t)n);
    buffer[n] = '\0';
    return n;
}

} // namespace

int formatReal(const char *format, double value, char *buffer, int size) {
    if (size < 1) return -1;
    // The usual "%.<n>g" is formatted by to_chars, which gives printf's text
    // several times faster; the shortest form, where it applies, faster still.
    if (int precision = generalPrecision(format)) {
        int n = shortestGeneral(value, precision, buffer, size);
        if (n >= 0) return n;
        auto r =
            std::to_chars(buffer, buffer + size - 1, value, std::chars_format::general, precision);
        if (r.ec == std::errc()) {
            *r.ptr = '\0';
            return (int)(r.ptr - buffer);
        }
    }
    return snprintf(buffer, (size_t)size, format, value);
}

int writeTextStream(TextSheet *s) {
    if (s->rowCapacity == 0) return 0;
    Out o{s->context, static_cast<char *>(malloc(kOutBlock)), 0};
    if (!o.data) {
        g_host->dispatchError(s->context, "%s", tr("SHEET: Out of memory error"));
        return 1;
    }
    const char fsep = (char)s->fieldSeparator;
    bool failed = false;
    for (int row = 0; row <= s->lastRow && row < s->rowCapacity; ++row) {
        TextRow *r = &s->rows[row];
        if (!r->cursor) {
            putChar(&o, '\n');
            continue;
        }
        TextPage *page = r->cursor;
        while (page->lower) page = page->lower;
        const int last = r->lastCol;
        bool stop = false;
        for (int blockNo = 0; blockNo <= (last >> TEXT_PAGE_SHIFT) && !stop; ++blockNo) {
            int first = blockNo << TEXT_PAGE_SHIFT;
            int end = last - first < TEXT_PAGE_COLUMNS ? last : first + TEXT_PAGE_COLUMNS - 1;
            if (!page || page->pageNumber != blockNo) {
                for (int col = first; col <= end; ++col) putChar(&o, col < last ? fsep : '\n');
                continue;
            }
            for (int col = first; col <= end; ++col) {
                char sep = col < last ? fsep : '\n';
                int i = col - first;
                switch (page->kinds[i]) {
                case CELL_STRING:
                    if (page->values[i].text)
                        putCellText(&o, page->values[i].text, strlen(page->values[i].text), fsep);
                    failed = false;
                    break;
                case CELL_BOOL: {
                    const char *t = page->values[i].boolean ? s->trueText : s->falseText;
                    putText(&o, t, strlen(t));
                    break;
                }
                case CELL_NUMBER: {
                    int n = formatNumber(s, page->values[i].number);
                    if (n == 0) {
                        failed = true;
                        stop = true;
                        break;
                    }
                    failed = false;
                    putCellText(&o, s->buffer, (size_t)n, fsep);
                    break;
                }
                default: break;
                }
                if (stop) break;
                putChar(&o, sep);
            }
            page = page->higher;
        }
    }
    flush(&o);
    free(o.data);
    return failed ? 1 : 0;
}
