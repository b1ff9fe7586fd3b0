// Writing cells into a sheet of a book: the values of another book's sheet,
// or the fields of a text file.
#ifndef TABRIX_CLI_SHEET_FILL_H
#define TABRIX_CLI_SHEET_FILL_H

#include "workbook.h"

#include <istream>
#include <map>
#include <string>

namespace cli {

// The formats a filling makes in the target book, one for each number
// format, made on first use.
class NumFormats {
public:
    explicit NumFormats(Workbook &target) : _target(target) {}
    // A format of the target with number format `id` of the target;
    // null for the general format or when the book refuses.
    Format *builtIn(int id);
    // A format of the target with the number format the source book calls
    // `id` (a built-in identifier or one of its custom formats).
    Format *from(Workbook &source, int id);

private:
    Workbook &_target;
    std::map<int, Format *> _builtIn;
    std::map<std::string, Format *> _custom;
};

// Copies every cell of `from` into `to` at the same place: values, number
// formats (made through `formats`, shared by the sheets of one copy), and
// formulas where the target takes their text (else their value).  Error
// cells become their text when the target refuses them as a formula.
// Returns the number of cells that could not keep their kind.
long copySheet(Workbook &source, Sheet *from, Workbook &target, Sheet *to, NumFormats &formats);

// Copies the merged blocks of `from` within its used cells, and the named
// ranges citing it, into `to`.  A name scoped to the sheet keeps to its
// copy; one scoped to another sheet keeps that index only when every sheet
// is copied (`allSheets`).  The print area and titles go through their own
// setters, whatever the source book calls them.
void copyMergesAndNames(Sheet *from, int fromIndex, Sheet *to, bool allSheets);

// Reads comma- or tab-separated text into `to` from A1 on: numbers,
// booleans and ISO dates become those (unless `allText`), other fields
// text.  Throws Failure naming the line for what the sheet cannot hold.
void importText(std::istream &in, bool tabs, bool allText, const std::string &name,
                Workbook &target, Sheet *to);

// A sheet name made of a file name: its base name without extension,
// characters a sheet name cannot have replaced by "_", at most 31
// characters.
std::string sheetNameFor(const std::string &path);

} // namespace cli

#endif
