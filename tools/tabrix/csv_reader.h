// Reading comma- or tab-separated text, one record at a time, and telling
// what a field holds.
#ifndef TABRIX_CLI_CSV_READER_H
#define TABRIX_CLI_CSV_READER_H

#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace cli {

class CsvReader {
public:
    // csv: fields in double quotes may hold separators, quotes (doubled) and
    // line breaks.  tsv: no quoting; \t \n \r \\ stand for those characters.
    // A byte order mark at the start is skipped; lines may end in CR LF.
    // `name` starts the messages: "data.csv line 3: ...".  The fields are
    // split by the module's reader of separated text (csv_fields.h).
    CsvReader(std::istream &in, bool tabs, std::string name);
    ~CsvReader();

    // The next record; false at the end.  Throws Failure for a quoted field
    // that never closes or a field beyond the size limit, once the records
    // before it have been read.
    bool next(std::vector<std::string> &fields);
    // The line where the last record began, from 1.
    long line() const { return _recordLine; }

private:
    struct Queue;

    [[noreturn]] void fail(long line, const std::string &why) const;

    std::streambuf *_in;
    std::string _name;
    std::unique_ptr<Queue> _queue;
    long _recordLine = 0;
};

// What a text field becomes in a sheet.
struct FieldValue {
    enum Kind { Empty, Number, Boolean, Date, Text } kind = Empty;
    double number = 0.0;
    bool flag = false;
    // A date and time, for Date.
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, msec = 0;
    bool hasDate = false, hasTime = false;
};

// "" is Empty; a decimal number ("12", "-3.5", "1e6") is Number; "TRUE" and
// "FALSE" in any case are Boolean; "2024-01-31", "2024-01-31 12:30:00" (or
// with "T"), "12:30:00" with optional ".mmm" are Date; anything else Text.
FieldValue classifyField(const std::string &text);

} // namespace cli

#endif
