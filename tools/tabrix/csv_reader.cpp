#include "csv_reader.h"

#include "cli.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace cli {

namespace {

// Longer fields are no spreadsheet text (cells hold at most 32767
// characters); the limit keeps a quote that never closes from reading a
// whole large file into memory.
const size_t kMaxField = 1 << 20;

bool isDigits(const std::string &s, size_t at, size_t count) {
    if (at + count > s.size())
        return false;
    for (size_t i = at; i < at + count; ++i)
        if (!std::isdigit(static_cast<unsigned char>(s[i])))
            return false;
    return true;
}

int number(const std::string &s, size_t at, size_t count) {
    return std::atoi(s.substr(at, count).c_str());
}

// [+-]digits[.digits][(e|E)[+-]digits], or [+-].digits
bool isDecimal(const std::string &s) {
    size_t i = 0, n = s.size();
    if (i < n && (s[i] == '+' || s[i] == '-'))
        ++i;
    size_t digits = 0;
    while (i < n && std::isdigit(static_cast<unsigned char>(s[i])))
        ++i, ++digits;
    if (i < n && s[i] == '.') {
        ++i;
        while (i < n && std::isdigit(static_cast<unsigned char>(s[i])))
            ++i, ++digits;
    }
    if (digits == 0)
        return false;
    if (i < n && (s[i] == 'e' || s[i] == 'E')) {
        ++i;
        if (i < n && (s[i] == '+' || s[i] == '-'))
            ++i;
        size_t exp = 0;
        while (i < n && std::isdigit(static_cast<unsigned char>(s[i])))
            ++i, ++exp;
        if (exp == 0)
            return false;
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
        if (s[end] != '.' || !isDigits(s, end + 1, 3) || s.size() != end + 4)
            return false;
        v.msec = number(s, end + 1, 3);
    }
    v.hasTime = true;
    return v.hour < 24 && v.minute < 60 && v.second < 60;
}

bool parseDate(const std::string &s, FieldValue &v) {
    if (s.size() >= 10 && isDigits(s, 0, 4) && s[4] == '-' && isDigits(s, 5, 2) && s[7] == '-' &&
        isDigits(s, 8, 2)) {
        v.year = number(s, 0, 4), v.month = number(s, 5, 2), v.day = number(s, 8, 2);
        if (v.month < 1 || v.month > 12 || v.day < 1 || v.day > 31)
            return false;
        v.hasDate = true;
        if (s.size() == 10)
            return true;
        return (s[10] == ' ' || s[10] == 'T') && parseTime(s, 11, v);
    }
    return parseTime(s, 0, v);
}

bool sameNoCase(const std::string &a, const char *b) {
    if (a.size() != std::strlen(b))
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(a[i])) != b[i])
            return false;
    return true;
}

} // namespace

CsvReader::CsvReader(std::istream &in, bool tabs, std::string name)
    : _in(in.rdbuf()), _name(std::move(name)), _tabs(tabs) {
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

void CsvReader::fail(long line, const std::string &why) const {
    throw Failure(_name + " line " + std::to_string(line) + ": " + why);
}

int CsvReader::get() {
    int c = _in->sbumpc();
    if (c == '\n')
        ++_line;
    return c;
}

void CsvReader::append(std::string &field, int c) {
    if (field.size() >= kMaxField)
        fail(_recordLine, "a field is longer than " + std::to_string(kMaxField) + " bytes");
    field += char(c);
}

bool CsvReader::next(std::vector<std::string> &fields) {
    fields.clear();
    if (_in->sgetc() == std::char_traits<char>::eof())
        return false;
    _recordLine = _line;
    return _tabs ? nextTsv(fields) : nextCsv(fields);
}

bool CsvReader::nextCsv(std::vector<std::string> &fields) {
    const int eof = std::char_traits<char>::eof();
    std::string field;
    for (;;) {
        int c = get();
        if (c == '"' && field.empty()) {
            // A quoted field, up to the quote that is not doubled.
            for (;;) {
                c = get();
                if (c == eof)
                    fail(_recordLine, "a quoted field is not closed");
                if (c == '"') {
                    if (_in->sgetc() != '"')
                        break;
                    c = get();
                }
                append(field, c);
            }
            c = get();
            // Text after the closing quote belongs to the field as it stands.
            while (c != ',' && c != '\n' && c != '\r' && c != eof) {
                append(field, c);
                c = get();
            }
        }
        if (c == ',') {
            fields.push_back(field);
            field.clear();
            continue;
        }
        if (c == '\r' && _in->sgetc() == '\n')
            c = get();
        if (c == '\n' || c == '\r' || c == eof) {
            fields.push_back(field);
            return true;
        }
        append(field, c);
    }
}

bool CsvReader::nextTsv(std::vector<std::string> &fields) {
    const int eof = std::char_traits<char>::eof();
    std::string field;
    for (;;) {
        int c = get();
        if (c == '\t') {
            fields.push_back(field);
            field.clear();
            continue;
        }
        if (c == '\r' && _in->sgetc() == '\n')
            c = get();
        if (c == '\n' || c == '\r' || c == eof) {
            fields.push_back(field);
            return true;
        }
        if (c == '\\') {
            int e = _in->sgetc();
            const char *from = "tnr\\", *to = "\t\n\r\\";
            const char *hit = e == eof ? nullptr : std::strchr(from, e);
            if (hit && *hit) {
                get();
                c = to[hit - from];
            }
        }
        append(field, c);
    }
}

FieldValue classifyField(const std::string &text) {
    FieldValue v;
    if (text.empty())
        return v;
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
