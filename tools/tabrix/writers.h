// The output forms of `dump` and of a conversion to text: csv, tsv and json.
// A writer is fed row by row; csv and tsv write every cell of the rectangle
// (an empty cell as an empty field), json only the cells that exist.
#ifndef TABRIX_CLI_WRITERS_H
#define TABRIX_CLI_WRITERS_H

#include "cell_value.h"

#include <memory>
#include <ostream>
#include <string>

namespace cli {

// A csv field: quoted, with quotes doubled, when it holds the separator, a
// quote, a line break, or blanks at either end.
std::string csvField(const std::string &text, char separator = ',');
// A tsv field: tab, line feed, carriage return and backslash as \t \n \r \\.
std::string tsvField(const std::string &text);
// A json string literal with its quotes; control characters as \uXXXX, a
// broken UTF-8 sequence as U+FFFD.
std::string jsonString(const std::string &text);

// What the json form says about the dump as a whole.
struct DumpHeader {
    std::string file;
    std::string sheet;
    std::string range; // "A1:D10", empty for an empty sheet
    // Formula cells show "=" and their formula instead of their cached value.
    bool formulas = false;
};

class TableWriter {
public:
    virtual ~TableWriter() {}
    virtual void begin(const DumpHeader &header) = 0;
    virtual void beginRow(int row) = 0;
    virtual void cell(int row, int col, const CellValue &value) = 0;
    virtual void endRow() = 0;
    virtual void end() = 0;
};

enum class TextForm { Csv, Tsv, Json };

// Parses "csv", "tsv", "json"; throws UsageError for anything else.
TextForm parseTextForm(const std::string &name);

std::unique_ptr<TableWriter> makeWriter(TextForm form, std::ostream &out);

} // namespace cli

#endif
