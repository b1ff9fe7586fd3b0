// Packages for the Open XML tests: parts zipped and unzipped, a small
// workbook package made from its worksheets, scratch files, and a package
// through an Open XML book and back, compared part by part with its source.
#ifndef TABRIX_TESTS_OOXML_PACKAGES_H
#define TABRIX_TESTS_OOXML_PACKAGES_H

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "book/str_util.h"
#include "tabrix/IBookT.h"

namespace tabrix {
class ZipReader;
}

namespace packages {

// Parts by name, names compared as a package compares them.
using Parts = std::map<std::wstring, std::string, tabrix::CaseInsensitiveLess>;

extern const char *const kMain; // the Transitional main namespace
extern const char *const kRel;  // and its relationships namespace

Parts unzip(tabrix::ZipReader &zip);
Parts unzip(const char *bytes, size_t size);
std::string zip(const Parts &parts);
// The saved package of `book`.
Parts saved(tabrix::IBookT<char> &book);

// A Transitional package with empty worksheets at the given targets
// (relative to /xl); `workbookBody` goes after the sheets list.
Parts workbook(const std::vector<std::string> &sheetTargets, const std::string &workbookBody = "");

// `name` in the test folder `folder`, made if need be.
std::filesystem::path scratch(const std::string &folder, const std::string &name);

// Loads `file`, hands the book to `edit` (which answers what went wrong, or
// ""), saves it (to `savedPath` too when given), and checks that every part
// of the source with a content type is in the saved package, the
// calculation chain alone left out, parts the book keeps opaque byte for
// byte, and that the saved package loads with as many sheets; the saved
// parts go to `savedParts` when given.  Answers what went wrong, "load: ..."
// for a file that does not load; empty when nothing did.
std::string packageRoundTrip(const std::filesystem::path &file,
                             const std::filesystem::path &savedPath = {},
                             const std::function<std::string(tabrix::IBookT<char> &)> &edit = {},
                             Parts *savedParts = nullptr);

} // namespace packages

#endif
