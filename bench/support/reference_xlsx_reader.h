// A plain reference reader of an Open XML workbook's first sheet, the
// measure our own load and read are held against: it finds the parts in
// the zip directory, inflates them whole with zlib, parses them into a
// pugixml document and walks the cells, summing the numbers, the lengths
// of the texts (shared, inline and formula results) and of formula texts.
#pragma once

#include <string>

namespace tabrix::bench {

struct ReferenceSums {
    double numbers = 0;   // the sum of every numeric cell value
    size_t textChars = 0; // the bytes of every text cell
    size_t formulaChars = 0;
    size_t cells = 0;
};

// Reads xl/sharedStrings.xml and xl/worksheets/sheet1.xml of the package at
// `path`; false with `error` set when a part is missing or malformed.
bool referenceRead(const std::string &path, ReferenceSums &sums, std::string &error);

} // namespace tabrix::bench
