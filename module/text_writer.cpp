// The writer of text-separated files: every row from 0 to the last, every
// column from 0 to the row's last, texts quoted when they hold a quote or the
// field separator, numbers in the host's real format with the decimal
// separator.  Output is gathered in a block and handed to the host's print
// in large pieces.
#include "text_sheet.h"

#include <charconv>
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
    if (o->used == 0)
        return;
    o->data[o->used] = '\0';
    g_host->print(o->ctx, "%s", o->data);
    o->used = 0;
}

inline void putChar(Out *o, char c) {
    if (o->used + 1 >= kOutBlock)
        flush(o);
    o->data[o->used++] = c;
}

void putText(Out *o, const char *text, size_t len) {
    while (len > 0) {
        if (o->used + 1 >= kOutBlock)
            flush(o);
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

void putCellText(Out *o, const char *text, int fsep) {
    if (strchr(text, '"') || strchr(text, fsep))
        putQuoted(o, text);
    else
        putText(o, text, strlen(text));
}

// Formats a number into the store's buffer; false when it does not fit.
bool formatNumber(TextSheet *s, double value) {
    const char *format = s->realFormat ? s->realFormat : "%.15g";
    int n = formatReal(format, value, s->buffer, s->bufferSize);
    if (n < 1 || n >= s->bufferSize)
        return false;
    char *dot = strchr(s->buffer, '.');
    if (dot)
        *dot = (char)s->decimalSeparator;
    return true;
}

// The precision of a format of the form "%.<n>g", or 0 for any other form.
int generalPrecision(const char *format) {
    if (format[0] != '%' || format[1] != '.')
        return 0;
    int precision = 0;
    const char *p = format + 2;
    for (; *p >= '0' && *p <= '9' && precision < 100; ++p)
        precision = precision * 10 + (*p - '0');
    return p[0] == 'g' && p[1] == '\0' && p > format + 2 && precision >= 1 && precision <= 17
               ? precision
               : 0;
}

} // namespace

int formatReal(const char *format, double value, char *buffer, int size) {
    if (size < 1)
        return -1;
    // The usual "%.<n>g" is formatted by to_chars, which gives printf's text
    // several times faster.
    if (int precision = generalPrecision(format)) {
        auto r = std::to_chars(buffer, buffer + size - 1, value, std::chars_format::general,
                               precision);
        if (r.ec == std::errc()) {
            *r.ptr = '\0';
            return (int)(r.ptr - buffer);
        }
    }
    return snprintf(buffer, (size_t)size, format, value);
}

int writeTextStream(TextSheet *s) {
    if (s->rowCapacity == 0)
        return 0;
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
        while (page->lower)
            page = page->lower;
        const int last = r->lastCol;
        bool stop = false;
        for (int blockNo = 0; blockNo <= (last >> TEXT_PAGE_SHIFT) && !stop; ++blockNo) {
            int first = blockNo << TEXT_PAGE_SHIFT;
            int end = last - first < TEXT_PAGE_COLUMNS ? last : first + TEXT_PAGE_COLUMNS - 1;
            if (!page || page->pageNumber != blockNo) {
                for (int col = first; col <= end; ++col)
                    putChar(&o, col < last ? fsep : '\n');
                continue;
            }
            for (int col = first; col <= end; ++col) {
                char sep = col < last ? fsep : '\n';
                int i = col - first;
                switch (page->kinds[i]) {
                case CELL_STRING:
                    if (page->values[i].text)
                        putCellText(&o, page->values[i].text, fsep);
                    failed = false;
                    break;
                case CELL_BOOL: {
                    const char *t = page->values[i].boolean ? s->trueText : s->falseText;
                    putText(&o, t, strlen(t));
                    break;
                }
                case CELL_NUMBER:
                    if (!formatNumber(s, page->values[i].number)) {
                        failed = true;
                        stop = true;
                        break;
                    }
                    failed = false;
                    putCellText(&o, s->buffer, fsep);
                    break;
                default:
                    break;
                }
                if (stop)
                    break;
                putChar(&o, sep);
            }
            page = page->higher;
        }
    }
    flush(&o);
    free(o.data);
    return failed ? 1 : 0;
}
