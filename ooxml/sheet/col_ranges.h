// The worksheet's list of column ranges (`col` elements with one-based min
// and max), kept ascending and without overlaps.
#pragma once

#include <vector>

#include "ooxml/binding/engine/node.h"
#include "ooxml/sheet/sheet_ranges.h"

namespace tabrix {

// The `col` elements that exactly cover the one-based columns first..last:
// a range reaching over either bound is split into pieces keeping its
// properties, and a gap gets a new range of `defaultWidth`.
std::vector<binding::c_node *> overwriteCols(binding::c_node &cols, int first, int last,
                                             double defaultWidth);
// The `col` covering the one-based column, or null.
binding::c_node *colCovering(binding::c_node &cols, int col);
// The ranges after inserting `count` columns before one-based column
// `insertAt` (a range holding the cut is split), or removing the columns of
// `removed`; ranges pushed beyond the last column are cut there or dropped.
void moveCols(binding::c_node &cols, int insertAt, int count);
void removeCols(binding::c_node &cols, Span removed);

} // namespace tabrix
