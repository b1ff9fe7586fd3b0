// The "csv" driver's reading of text-separated files and the classification
// of its fields.  The host stream is read in large blocks that CsvFields
// (csv_fields.h) splits into fields; each field not empty becomes a cell.
#include "text_sheet.h"

#include "csv_fields.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

const long kReadBlock = 1 << 16;
// Integers without fraction or exponent from 2^53 up stay texts, so that
// long identifiers keep every digit.
const double kExactIntegerLimit = 9007199254740992.0;

inline bool isDigit(unsigned char c) { return c >= '0' && c <= '9'; }
inline bool isBlank(unsigned char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

// The number in text, or false when the text has any other form.
bool parseNumber(const unsigned char *p, int dsep, double *out) {
    bool negative = false;
    if (*p == '+' || *p == '-') {
        negative = *p == '-';
        ++p;
    }
    bool atSep = dsep != 0 && *p == (unsigned char)dsep;
    if (!isDigit(*p) && !atSep) return false;
    if (p[0] == '0' && isDigit(p[1])) return false; // leading zeros: a code, not a number
    double value = 0.0;
    int digits = 0;
    for (; isDigit(*p); ++p, ++digits) value = value * 10.0 + (*p - '0');
    bool fraction = false, exponent = false;
    if (dsep != 0 && *p == (unsigned char)dsep) {
        fraction = true;
        ++p;
        if (!isDigit(*p)) {
            // "12." is a number only at the end of the text.
            if (digits == 0) return false;
            while (isBlank(*p)) ++p;
            if (*p) return false;
            *out = negative ? -value : value;
            return true;
        }
        double divisor = 10.0;
        for (; isDigit(*p); ++p, divisor *= 10.0) value += (*p - '0') / divisor;
    }
    if (*p == 'e' || *p == 'E') {
        ++p;
        bool negExp = false;
        if (*p == '+' || *p == '-') {
            negExp = *p == '-';
            ++p;
        }
        if (!isDigit(*p)) return false;
        int e = 0;
        for (; isDigit(*p); ++p)
            if (e < 100000) e = e * 10 + (*p - '0');
        value *= pow(10.0, negExp ? -e : e);
        exponent = true;
    }
    if (!fraction && !exponent && value >= kExactIntegerLimit) return false;
    while (isBlank(*p)) ++p;
    if (*p) return false;
    *out = negative ? -value : value;
    return true;
}

void storeField(TextSheet *s, int row, int col, const char *text) {
    double number = 0.0;
    switch (classifyField(s, text, &number)) {
    case CELL_NUMBER: setNumber(s, row, col, number); break;
    case CELL_BOOL: setBool(s, row, col, number != 0.0); break;
    default: setText(s, row, col, text); break;
    }
}

} // namespace

int classifyField(const TextSheet *s, const char *text, double *number) {
    if (parseNumber(reinterpret_cast<const unsigned char *>(text), s->decimalSeparator, number))
        return CELL_NUMBER;
    if (strcmp(text, s->trueText) == 0) {
        *number = 1.0;
        return CELL_BOOL;
    }
    if (strcmp(text, s->falseText) == 0) {
        *number = 0.0;
        return CELL_BOOL;
    }
    return CELL_STRING;
}

namespace {

// Stores the fields of the reader in the sheet: empty ones leave their cell
// empty; rows and columns stop counting at the largest int.
struct StoreSink {
    TextSheet *s;
    int row, col;

    void field(const char *text, size_t length) {
        if (length > 0) storeField(s, row, col, text);
        if (col < INT_MAX) ++col;
    }
    void record(long) {
        if (row < INT_MAX - 1) ++row;
        col = 0;
    }
};

} // namespace

int readTextStream(TextSheet *s) {
    unsigned char *block = static_cast<unsigned char *>(malloc(kReadBlock));
    if (!block) {
        g_host->dispatchError(s->context, "%s", tr("SHEET: Out of memory error"));
        return 1;
    }
    CsvRules rules;
    rules.separator = s->fieldSeparator;
    CsvFields reader(rules, s->buffer, s->bufferSize > 0 ? (size_t)s->bufferSize : 0);
    StoreSink sink{s, 0, 0};
    int result = 1;
    CsvFields::Status status = CsvFields::Ok;
    for (;;) {
        long n = g_host->read(s->context, block, kReadBlock);
        if (n < 0) break;
        if (n == 0) {
            status = reader.finish(sink);
            if (status == CsvFields::Ok) result = 0;
            break;
        }
        if (n > kReadBlock) n = kReadBlock;
        status = reader.feed(block, (size_t)n, sink);
        if (status != CsvFields::Ok) break;
    }
    free(block);
    if (status != CsvFields::Ok) {
        g_host->dispatchError(s->context, "SHEET: Buffer overflow at line %d\n", sink.row + 1);
        return 1;
    }
    return result;
}
