// Helpers for the tests that check our files against independent readers:
// scratch paths, python scripts that make books, and corpus files.
#ifndef TABRIX_TESTS_BIFF_INTEROP_TOOLS_H
#define TABRIX_TESTS_BIFF_INTEROP_TOOLS_H

#include <string>
#include <vector>

namespace bifftest {

// A path in the test scratch directory.
std::string tmpPath(const std::string &name);
// The scratch folder `name`, made new and empty; its path.
std::string freshDir(const std::string &name);

// The bytes of the file at `path` ("" when it can't be read), and a file
// written with `bytes`.
std::string readFile(const std::string &path);
void writeFile(const std::string &path, const std::string &bytes);

// `path` converted by LibreOffice (headless, its profile in `dir`) with the
// --convert-to argument `to` into `dir`; the new file, named for `path` with
// the extension `ext`, or "" when the conversion failed.
std::string convertWithLibreOffice(const std::string &path, const std::string &dir,
                                   const std::string &to, const std::string &ext);

// Binary books made from the Open XML book `xlsx` in `dir` by LibreOffice
// and, when `gnumeric`, by gnumeric's ssconvert; only those made.
std::vector<std::string> xlsFromXlsx(const std::string &xlsx, const std::string &dir,
                                     bool gnumeric);

// Runs `script` (saved once as `scriptName` in the scratch directory) with
// `args` and gives its output lines; {"ERROR popen"} when it cannot start.
std::vector<std::string> runPython(const std::string &scriptName, const char *script,
                                   const std::string &args);

// The .xls files of the public corpus, sorted; empty when it is absent.
std::vector<std::string> corpusXlsFiles();

// Workbooks written just now by the producers installed here (LibreOffice,
// from a small table and from an Open XML book of openpyxl's; gnumeric's
// ssconvert; python's xlwt) into the scratch folder `scratchName`.  A producer
// that is missing or fails adds no file.
std::vector<std::string> freshProducersFiles(const std::string &scratchName);

} // namespace bifftest

#endif
