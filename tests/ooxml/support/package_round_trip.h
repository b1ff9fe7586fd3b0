// A workbook package through an Open XML book and back: loaded, saved, and
// compared part by part with its source.
#ifndef TABRIX_TESTS_OOXML_PACKAGE_ROUND_TRIP_H
#define TABRIX_TESTS_OOXML_PACKAGE_ROUND_TRIP_H

#include <filesystem>
#include <string>

// Loads `file`, saves it (to `savedPath` too when given), and checks that
// every part of the source with a content type is in the saved package,
// the calculation chain alone left out, parts the book keeps opaque byte
// for byte, and that the saved package loads with as many sheets.  Answers
// what went wrong, "load: ..." for a file that does not load; empty when
// nothing did.
std::string packageRoundTrip(const std::filesystem::path &file,
                             const std::filesystem::path &savedPath = {});

#endif
