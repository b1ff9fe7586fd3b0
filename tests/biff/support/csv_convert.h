// LibreOffice as an independent calculator: a book converted headless to
// one csv per sheet, values raw rather than as shown.
#ifndef TABRIX_TESTS_BIFF_CSV_CONVERT_H
#define TABRIX_TESTS_BIFF_CSV_CONVERT_H

#include <map>
#include <string>
#include <vector>

namespace bifftest {

using CsvRows = std::vector<std::vector<std::string>>;

// The csv of each sheet of `path` by sheet name (UTF-8), made in the
// scratch folder `dir`; empty when the conversion failed.
std::map<std::string, CsvRows> convertToCsv(const std::string &path, const std::string &dir);
// The field at (row, col), "" when the csv has none there.
std::string field(const CsvRows &rows, size_t row, size_t col);

} // namespace bifftest

#endif
