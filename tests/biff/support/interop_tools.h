// Helpers for the tests that check our files against independent readers:
// scratch paths, python scripts run for their output, corpus files, and
// text shown the way the scripts print it.
#ifndef TABRIX_TESTS_BIFF_INTEROP_TOOLS_H
#define TABRIX_TESTS_BIFF_INTEROP_TOOLS_H

#include <string>
#include <vector>

namespace bifftest {

// A path in the test scratch directory.
std::string tmpPath(const std::string &name);

// Whether /usr/bin/python3 can import `module`.
bool pythonHas(const std::string &module);

// Runs `script` (saved once as `scriptName` in the scratch directory) with
// `args` and gives its output lines; {"ERROR popen"} when it cannot start.
std::vector<std::string> runPython(const std::string &scriptName, const char *script, const std::string &args);

// The .xls files of the public corpus, sorted; empty when it is absent.
std::vector<std::string> corpusXlsFiles();

// UTF-16LE bytes of `t` in lower-case hex; "-" for the empty text.
std::string hexUtf16(const wchar_t *t);

} // namespace bifftest

#endif
