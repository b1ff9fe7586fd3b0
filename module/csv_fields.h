// CsvFields: the one reader of separated text, for the "csv" driver and the
// command-line tool.  It is fed blocks of bytes of any size and hands each
// field and each end of record to a sink; it knows no host and no stream, so
// each caller reads its own input and says what its fields become.
//
// The rules differ per caller.  The driver's text: LF ends a record and a CR
// just before it is dropped, the separator is an option, a quote left open
// at the end keeps what it holds.  The tool's csv: CR LF, LF or a CR alone
// end a record, an open quote at the end is an error; its tsv: no quotes,
// and \t \n \r \\ stand for those characters.
#ifndef QDSHEET_CSV_FIELDS_H
#define QDSHEET_CSV_FIELDS_H

#include <cstddef>

struct CsvRules {
    int separator = ',';
    // A field that starts with '"' runs to the next lone '"'; "" inside it is
    // one quote, text behind the closing quote belongs to the field.
    bool quotes = true;
    // A backslash before t, n, r or itself stands for tab, LF, CR, backslash.
    bool escapes = false;
    // A CR outside quotes ends the record, with the LF that follows it.  Off,
    // only LF does, and one CR that ends the field's text before it is dropped.
    bool crEndsRecord = false;
    // A quote still open at the end is an error; off, the field keeps its text.
    bool openQuoteFails = false;
};

class CsvFields {
public:
    enum Status { Ok, TooLong, OpenQuote };

    // Fields are gathered in buffer[0, limit); a field that reaches `limit`
    // bytes is TooLong (found at the next byte or at the end), so a field
    // handed on holds at most limit - 1 bytes and a terminating zero.
    CsvFields(const CsvRules &rules, char *buffer, size_t limit)
        : _rules(rules), _field(buffer), _limit(limit) {
        // Bytes that stop the plain run: 1 always, 2 only at a field's start.
        for (unsigned char &stop : _stops) stop = 0;
        _stops[(unsigned char)'\n'] = 1;
        if (rules.quotes) _stops[(unsigned char)'"'] = 2;
        if (rules.crEndsRecord) _stops[(unsigned char)'\r'] = 1;
        if (rules.escapes) _stops[(unsigned char)'\\'] = 1;
        if (rules.separator >= 0 && rules.separator < 256) _stops[rules.separator] = 1;
    }

    // Sink: void field(const char *text, size_t length) at the end of each
    // field (text zero-terminated), then void record(long line) at the end of
    // each record, with the line (from 1, counting LF) where it began.
    template <class Sink> Status feed(const unsigned char *data, size_t n, Sink &sink);
    // The end of the input: the last record, if one has begun.
    template <class Sink> Status finish(Sink &sink);

    // The line where the current (or last) record began.
    long recordLine() const { return _recordLine; }

private:
    template <class Sink> void endField(Sink &sink, bool endsRecord);

    const CsvRules _rules;
    unsigned char _stops[256];
    char *_field;
    const size_t _limit;
    size_t _length = 0;
    bool _quoted = false, _pendingQuote = false;
    bool _pendingEscape = false, _afterCr = false;
    bool _open = false; // a record has begun
    long _line = 1, _recordLine = 1;
};

template <class Sink> void CsvFields::endField(Sink &sink, bool endsRecord) {
    _field[_length] = '\0';
    sink.field(_field, _length);
    if (endsRecord) {
        sink.record(_recordLine);
        _open = false;
    }
    _length = 0;
    _quoted = false;
}

template <class Sink>
CsvFields::Status CsvFields::feed(const unsigned char *data, size_t n, Sink &sink) {
    // The state lives in locals while the loop runs: stores into the field
    // may alias any member, which would make every member a memory access.
    const int fsep = _rules.separator;
    const bool quotes = _rules.quotes, escapes = _rules.escapes, crEnds = _rules.crEndsRecord;
    char *const field = _field;
    const size_t limit = _limit;
    size_t length = _length;
    bool quoted = _quoted, pendingQuote = _pendingQuote, pendingEscape = _pendingEscape;
    bool afterCr = _afterCr, open = _open;
    long line = _line, recordLine = _recordLine;
    Status status = Ok;
    for (size_t k = 0; k < n; ++k) {
        if (afterCr) {
            // The LF of a CR LF that already ended its record.
            afterCr = false;
            if (data[k] == '\n') {
                ++line;
                continue;
            }
        }
        if (!open) {
            open = true;
            recordLine = line;
        }
        if (!quoted && !pendingEscape) {
            // Plain characters of an unquoted field go straight through.
            while (k < n && length < limit) {
                unsigned char c = data[k];
                unsigned char stop = _stops[c];
                if (stop == 1 || (stop == 2 && length == 0)) break;
                field[length++] = (char)c;
                ++k;
            }
            if (k >= n) break;
        }
        if (length >= limit) {
            status = TooLong;
            break;
        }
        unsigned char c = data[k];
        if (pendingEscape) {
            pendingEscape = false;
            char mapped = c == 't'    ? '\t'
                          : c == 'n'  ? '\n'
                          : c == 'r'  ? '\r'
                          : c == '\\' ? '\\'
                                      : 0;
            if (mapped) {
                field[length++] = mapped;
                continue;
            }
            // Not an escape: the backslash stands, and c is read as usual.
            field[length++] = '\\';
            if (length >= limit) {
                status = TooLong;
                break;
            }
        }
        if (quoted) {
            if (c == '"') {
                if (pendingQuote) field[length++] = '"'; // a doubled quote is one quote
                pendingQuote = !pendingQuote;
                continue;
            }
            if (!pendingQuote) {
                if (c == '\n') ++line;
                field[length++] = (char)c;
                continue;
            }
        }
        pendingQuote = false;
        if (c == '\n' || (int)c == fsep || (c == '\r' && crEnds)) {
            bool endsRecord = (int)c != fsep;
            if (c == '\n') {
                ++line;
                if (!crEnds && length > 0 && field[length - 1] == '\r') --length;
            }
            afterCr = c == '\r' && endsRecord;
            field[length] = '\0';
            sink.field(field, length);
            if (endsRecord) {
                sink.record(recordLine);
                open = false;
            }
            length = 0;
            quoted = false;
            continue;
        }
        if (length == 0 && c == '"' && quotes) {
            quoted = true;
            continue;
        }
        if (c == '\\' && escapes) {
            pendingEscape = true;
            continue;
        }
        field[length++] = (char)c;
        quoted = false;
    }
    _length = length;
    _quoted = quoted;
    _pendingQuote = pendingQuote;
    _pendingEscape = pendingEscape;
    _afterCr = afterCr;
    _open = open;
    _line = line;
    _recordLine = recordLine;
    return status;
}

template <class Sink> CsvFields::Status CsvFields::finish(Sink &sink) {
    if (_pendingEscape) {
        _pendingEscape = false;
        if (_length >= _limit) return TooLong;
        _field[_length++] = '\\';
    }
    if (_length >= _limit) return TooLong;
    if (_quoted && !_pendingQuote && _rules.openQuoteFails) return OpenQuote;
    if (_open) endField(sink, true);
    return Ok;
}

#endif
