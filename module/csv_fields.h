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
        : _rules(rules), _field(buffer), _limit(limit) {}

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
    const int fsep = _rules.separator;
    const bool quotes = _rules.quotes, escapes = _rules.escapes, crEnds = _rules.crEndsRecord;
    for (size_t k = 0; k < n; ++k) {
        if (_afterCr) {
            // The LF of a CR LF that already ended its record.
            _afterCr = false;
            if (data[k] == '\n') {
                ++_line;
                continue;
            }
        }
        if (!_open) {
            _open = true;
            _recordLine = _line;
        }
        if (!_quoted && !_pendingEscape) {
            // Plain characters of an unquoted field go straight through.
            while (k < n && _length < _limit) {
                unsigned char c = data[k];
                if (c == '\n' || (int)c == fsep || (c == '"' && quotes && _length == 0) ||
                    (c == '\r' && crEnds) || (c == '\\' && escapes))
                    break;
                _field[_length++] = (char)c;
                ++k;
            }
            if (k >= n)
                break;
        }
        if (_length >= _limit)
            return TooLong;
        unsigned char c = data[k];
        if (_pendingEscape) {
            _pendingEscape = false;
            const char *mapped = c == 't' ? "\t" : c == 'n' ? "\n" : c == 'r' ? "\r"
                               : c == '\\' ? "\\" : nullptr;
            if (mapped) {
                _field[_length++] = *mapped;
                continue;
            }
            // Not an escape: the backslash stands, and c is read as usual.
            _field[_length++] = '\\';
            if (_length >= _limit)
                return TooLong;
        }
        if (_quoted) {
            if (c == '"') {
                if (_pendingQuote)
                    _field[_length++] = '"'; // a doubled quote is one quote
                _pendingQuote = !_pendingQuote;
                continue;
            }
            if (!_pendingQuote) {
                if (c == '\n')
                    ++_line;
                _field[_length++] = (char)c;
                continue;
            }
        }
        _pendingQuote = false;
        if (c == '\n' || (int)c == fsep || (c == '\r' && crEnds)) {
            bool endsRecord = (int)c != fsep;
            if (c == '\n') {
                ++_line;
                if (!crEnds && _length > 0 && _field[_length - 1] == '\r')
                    --_length;
            }
            _afterCr = c == '\r' && endsRecord;
            endField(sink, endsRecord);
            continue;
        }
        if (_length == 0 && c == '"' && quotes) {
            _quoted = true;
            continue;
        }
        if (c == '\\' && escapes) {
            _pendingEscape = true;
            continue;
        }
        _field[_length++] = (char)c;
        _quoted = false;
    }
    return Ok;
}

template <class Sink> CsvFields::Status CsvFields::finish(Sink &sink) {
    if (_pendingEscape) {
        _pendingEscape = false;
        if (_length >= _limit)
            return TooLong;
        _field[_length++] = '\\';
    }
    if (_length >= _limit)
        return TooLong;
    if (_quoted && !_pendingQuote && _rules.openQuoteFails)
        return OpenQuote;
    if (_open)
        endField(sink, true);
    return Ok;
}

#endif
