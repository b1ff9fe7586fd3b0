// Cell rectangles of a worksheet and how they move when rows or columns are
// inserted or removed: merges and column ranges follow these rules.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tabrix {

// An inclusive run of rows or columns.
struct Span {
    int first;
    int last;
    bool operator==(const Span &o) const { return first == o.first && last == o.last; }
};

// Zero-based inclusive bounds of a rectangle of cells.
struct CellRect {
    Span rows;
    Span cols;
};

// "B2:D5" (or a lone "B2"), with or without "$"; false on anything else.
bool parseRect(std::string_view ref, CellRect &rect);
// The two corners joined by ":", without "$".
std::string makeRef(int rowFirst, int colFirst, int rowLast, int colLast);

// Where `span` goes when `count` lines are inserted before line `at`: moved
// when the insertion is at or before its first line, split in two around
// the new lines when the insertion falls inside it, otherwise unchanged.
std::vector<Span> spanAfterInsert(Span span, int at, int count);
// What is left of `span` once the lines of `removed` are cut out and the
// lines below move up: nothing, a shrunk span or a moved one.
std::vector<Span> spanAfterRemove(Span span, Span removed);

} // namespace tabrix
