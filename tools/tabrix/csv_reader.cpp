#include "csv_reader.h"

#include "cli.h"
#include "module/csv_fields.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <utility>

namespace cli {

namespace {

// Longer fields are no spreadsheet text (cells hold at most 32767
// characters); the limit keeps a quote that never closes from reading a
// whole large file into memory.
const size_t kMaxField = 1 << 20;

bool isDigits(const std::string &s, size_t at, size_t count) {
    if (at + count > s.size()) return false;
    for (size_t i = at; i < at + count; ++i)
        if (!std::isdigit(static_cast<unsigned char>(s[i]))) return false;
    return true;
}

int number(const std::string &s, size_t at, size_t count) {
    return std::atoi(s.substr(at, count).c_str());
}

// [+-]digits[.digits][(e|E)[+-]digits], or [+-].digits
bool isDecimal(const std::string &s) {
    size_t i = 0, n = s.size();
    if (i < n && (s[i] == '+' || s[i] == '-')) ++i;
    size_t digits = 0;
    while (i < n && std::isdigit(static_cast<unsigned char>(s[i]))) ++i, ++digits;
    if (i < n && s[i] == '.') {
        ++i;
        while (i < n && std::isdigit(static_cast<unsigned char>(s[i]))) ++i, ++digits;
    }
    if (digits == 0) return false;
    if (i < n && (s[i] == 'e' || s[i] == 'E')) {
        ++i;
        if (i < n && (s[i] == '+' || s[i] == '-')) ++i;
        size_t exp = 0;
        while (i < n && std::isdigit(static_cast<unsigned char>(s[i]))) ++i, ++exp;
        if (exp == 0) return false;
    }
    return i == n;
}

// "HH:MM:SS" with optional ".mmm" at `at` up to the end.
bool parseTime(const std::string &s, size_t at, FieldValue &v) {
    if (!isDigits(s, at, 2) || s.size() < at + 8 || s[at + 2] != ':' || !isDigits(s, at + 3, 2) ||
        s[at + 5] != ':' || !isDigits(s, at + 6, 2))
        return false;
    v.hour = number(s, at, 2), v.minute = number(s, at + 3, 2), v.second = number(s, at + 6, 2);
    size_t end = at + 8;
    if (end < s.size()) {
        if (s[end] != '.' || !isDigits(s, end + 1, 3) || s.size() != end + 4) return false;
        v.msec = number(s, end + 1, 3);
    }
    v.hasTime = true;
    return v.hour < 24 && v.minute < 60 && v.second < 60;
}

bool parseDate(const std::string &s, FieldValue &v) {
    if (s.size() >= 10 && isDigits(s, 0, 4) && s[4] == '-' && isDigits(s, 5, 2) && s[7] == '-' &&
        isDigits(s, 8, 2)) {
        v.year = number(s, 0, 4), v.month = number(s, 5, 2), v.day = number(s, 8, 2);
        if (v.month < 1 || v.month > 12 || v.day < 1 || v.day > 31) return false;
        v.hasDate = true;
        if (s.size() == 10) return true;
        return (s[10] == ' ' || s[10] == 'T') && parseTime(s, 11, v);
    }
    return parseTime(s, 0, v);
}

bool sameNoCase(const std::string &a, const char *b) {
    if (a.size() != std::strlen(b)) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(a[i])) != b[i]) return false;
    return true;
}

} // namespace

// The records the reader has split and the caller not yet taken; a failure
// waits behind them.
struct CsvReader::Queue {
    explicit Queue(bool tabs)
        : buffer(kMaxField + 1), fields(rules(tabs), buffer.data(), buffer.size()) {}

    static CsvRules rules(bool tabs) {
        CsvRules r;
        r.separator = tabs ? '\t' : ',';
        r.quotes = !tabs;
        r.escapes = tabs;
        r.crEndsRecord = true;
        r.openQuoteFails = true;
        return r;
    }

    // The sink of CsvFields.
    void field(const char *text, size_t length) { current.emplace_back(text, length); }
    void record(long line) {
        records.push_back({line, std::move(current)});
        current.clear();
    }

    std::vector<char> buffer;
    CsvFields fields;
    std::vector<std::string> current;
    std::deque<std::pair<long, std::vector<std::string>>> records;
    CsvFields::Status status = CsvFields::Ok;
    bool ended = false;
};

CsvReader::CsvReader(std::istream &in, bool tabs, std::string name)
    : _in(in.rdbuf()), _name(std::move(name)), _queue(new Queue(tabs)) {
    // A byte order mark is no part of the first field.
    if (_in->sgetc() == 0xEF) {
        _in->sbumpc();
        if (_in->sgetc() == 0xBB) {
            _in->sbumpc();
            if (_in->sgetc() == 0xBF) {
                _in->sbumpc();
                return;
            }
        }
        fail(1, "the text starts with a broken byte order mark");
    }
}

CsvReader::~CsvReader() = default;

void CsvReader::fail(long line, const std::string &why) const {
    throw Failure(_name + " line " + std::to_string(line) + ": " + why);
}

bool CsvReader::next(std::vector<std::string> &fields) {
    Queue &q = *_queue;
    char block[1 << 16];
    while (q.records.empty() && !q.ended && q.status == CsvFields::Ok) {
        std::streamsize n = _in->sgetn(block, sizeof block);
        const unsigned char *bytes = reinterpret_cast<const unsigned char *>(block);
        if (n > 0) {
            q.status = q.fields.feed(bytes, size_t(n), q);
        } else {
            q.ended = true;
            q.status = q.fields.finish(q);
        }
    }
    if (!q.records.empty()) {
        _recordLine = q.records.front().first;
        fields = std::move(q.records.front().second);
        q.records.pop_front();
        return true;
    }
    if (q.status == CsvFields::TooLong)
        fail(q.fields.recordLine(),
             "a field is longer than " + std::to_string(kMaxField) + " bytes");
    if (q.status == CsvFields::OpenQuote)
        fail(q.fields.recordLine(), "a quoted field is not closed");
    fields.clear();
    return false;
}

FieldValue classifyField(const std::string &text) {
    FieldValue v;
    if (text.empty()) return v;
    size_t digitsAt = text[0] == '+' || text[0] == '-' ? 1 : 0;
    // A leading zero before more digits is an identifier ("007"), kept as text.
    bool leadingZero = text.size() > digitsAt + 1 && text[digitsAt] == '0' &&
                       std::isdigit(static_cast<unsigned char>(text[digitsAt + 1]));
    if (isDecimal(text) && !leadingZero && std::isfinite(std::strtod(text.c_str(), nullptr))) {
        v.number = std::strtod(text.c_str(), nullptr);
        v.kind = FieldValue::Number;
    } else if (sameNoCase(text, "TRUE") || sameNoCase(text, "FALSE")) {
        v.flag = sameNoCase(text, "TRUE");
        v.kind = FieldValue::Boolean;
    } else if (parseDate(text, v)) {
        v.kind = FieldValue::Date;
    } else {
        v = FieldValue();
        v.kind = FieldValue::Text;
    }
    return v;
}

} // namespace cli
