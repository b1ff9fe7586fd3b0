#include "ooxml/sheet/sheet_ranges.h"

#include <cstdint>

#include "ooxml/binding/parts/cell.h"

namespace tabrix {

namespace {

bool parseCorner(std::string_view text, int &row, int &col) {
    std::string plain;
    for (char c : text)
        if (c != '$') plain += c;
    uint32_t r = 0, c = 0;
    if (!binding::parse_cell_ref(plain, r, c)) return false;
    row = int(r);
    col = int(c);
    return true;
}

} // namespace

bool parseRect(std::string_view ref, CellRect &rect) {
    const size_t colon = ref.find(':');
    const std::string_view a = ref.substr(0, colon);
    const std::string_view b = colon == std::string_view::npos ? a : ref.substr(colon + 1);
    return parseCorner(a, rect.rows.first, rect.cols.first) &&
           parseCorner(b, rect.rows.last, rect.cols.last) && rect.rows.first <= rect.rows.last &&
           rect.cols.first <= rect.cols.last;
}

std::string makeRef(int rowFirst, int colFirst, int rowLast, int colLast) {
    std::string ref;
    binding::append_cell_ref(ref, uint32_t(rowFirst), uint32_t(colFirst));
    ref += ':';
    binding::append_cell_ref(ref, uint32_t(rowLast), uint32_t(colLast));
    return ref;
}

std::vector<Span> spanAfterInsert(Span span, int at, int count) {
    if (at <= span.first) return {{span.first + count, span.last + count}};
    if (at <= span.last) return {{span.first, at - 1}, {at + count, span.last + count}};
    return {span};
}

std::vector<Span> spanAfterRemove(Span span, Span removed) {
    const int count = removed.last - removed.first + 1;
    if (span.last < removed.first) return {span};
    if (span.first > removed.last) return {{span.first - count, span.last - count}};
    if (span.first >= removed.first && span.last <= removed.last) return {};
    const int first = span.first < removed.first ? span.first : removed.first;
    const int last = span.last > removed.last ? span.last - count : removed.first - 1;
    return {{first, last}};
}

} // namespace tabrix
