// The XML parts of real workbooks for the XML interop tests: books written
// by the producers installed here, and every part of the corpus's and those
// books' packages unpacked into one folder per workbook.
#ifndef TABRIX_TESTS_SUPPORT_XML_PARTS_H
#define TABRIX_TESTS_SUPPORT_XML_PARTS_H

#include <filesystem>
#include <string>
#include <vector>

namespace xmlparts {

// The whole file.
std::string slurp(const std::filesystem::path &path);

// Writes .xlsx books into `dir` with gnumeric, LibreOffice and openpyxl (and
// xlsxwriter, and the JavaScript writer of the npm package under
// TABRIX_NPM_DIR), each that is installed; texts with markup characters, a
// quote, "]]>", a formula and a merge, and from the last two every kind of
// value and cached formula results (xlsxwriter also a rich text).
void makeProducerBooks(const std::filesystem::path &dir);

// Unpacks the parts ending in one of `suffixes` of every readable .xlsx or
// .xlsm under `roots` into `out`/N/..., with `out`/N/origin.txt naming the
// book.  False when the unpacking script fails.
bool unpack(const std::filesystem::path &out, const std::vector<std::string> &roots,
            const std::vector<std::string> &suffixes);

// Canonical text of an XML document, for comparing a part with what we write
// back: names as {URI}local, attributes sorted, white space between elements
// and the place of namespace declarations left out.  Empty if it does not read.
std::string canonicalXml(const std::string &doc);

} // namespace xmlparts

#endif
