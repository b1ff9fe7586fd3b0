// Helpers for the tests that check our files against independent readers:
// scratch paths, python scripts that make books, and corpus files.
#ifndef TABRIX_TESTS_BIFF_INTEROP_TOOLS_H
#define TABRIX_TESTS_BIFF_INTEROP_TOOLS_H

#include <string>
#include <vector>

namespace bifftest {

// A path in the test scratch directory.
std::string tmpPath(const std::string &name);

// Runs `script` (saved once as `scriptName` in the scratch directory) with
// `args` and gives its output lines; {"ERROR popen"} when it cannot start.
std::vector<std::string> runPython(const std::string &scriptName, const char *script,
                                   const std::string &args);

// The .xls files of the public corpus, sorted; empty when it is absent.
std::vector<std::string> corpusXlsFiles();

} // namespace bifftest

#endif
