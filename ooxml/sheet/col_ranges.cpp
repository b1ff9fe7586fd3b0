#include "ooxml/sheet/col_ranges.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "ooxml/lmx/xml_writer.h"

namespace tabrix {

namespace {

const int kColumns = 16384;

int bound(const binding::c_node &col, const char *which) {
    return std::atoi(std::string(col.attribute_or_default(which)).c_str());
}

struct Piece {
    binding::c_node node;
    bool wanted;
};

Piece pieceOf(const binding::c_node &source, int first, int last, bool wanted) {
    Piece p{source, wanted};
    p.node.set_attribute("min", std::to_string(first));
    p.node.set_attribute("max", std::to_string(last));
    return p;
}

// Replaces the children by `pieces` in ascending order; the wanted ones
// come back.
std::vector<binding::c_node *> store(binding::c_node &cols, std::vector<Piece> &pieces) {
    std::stable_sort(pieces.begin(), pieces.end(), [](const Piece &a, const Piece &b) {
        return bound(a.node, "min") < bound(b.node, "min");
    });
    while (cols.count("col") > 0) cols.remove("col", cols.count("col") - 1);
    std::vector<size_t> wanted;
    for (size_t i = 0; i < pieces.size(); ++i) {
        *cols.append("col") = pieces[i].node;
        if (pieces[i].wanted) wanted.push_back(i);
    }
    std::vector<binding::c_node *> out;
    for (size_t i : wanted) out.push_back(cols.child("col", i));
    return out;
}

std::vector<Piece> piecesOf(binding::c_node &cols) {
    std::vector<Piece> pieces;
    for (size_t i = 0, n = cols.count("col"); i < n; ++i)
        pieces.push_back(Piece{*cols.child("col", i), false});
    return pieces;
}

} // namespace

std::vector<binding::c_node *> overwriteCols(binding::c_node &cols, int first, int last,
                                             double defaultWidth) {
    std::vector<Piece> pieces;
    std::vector<Span> covered;
    for (Piece &p : piecesOf(cols)) {
        const int lo = bound(p.node, "min"), hi = bound(p.node, "max");
        if (hi < first || lo > last) {
            pieces.push_back(std::move(p));
            continue;
        }
        if (lo < first) pieces.push_back(pieceOf(p.node, lo, first - 1, false));
        const Span mid{std::max(lo, first), std::min(hi, last)};
        pieces.push_back(pieceOf(p.node, mid.first, mid.last, true));
        covered.push_back(mid);
        if (hi > last) pieces.push_back(pieceOf(p.node, last + 1, hi, false));
    }
    std::sort(covered.begin(), covered.end(),
              [](const Span &a, const Span &b) { return a.first < b.first; });
    int next = first;
    covered.push_back(Span{last + 1, last + 1});
    for (const Span &s : covered) {
        if (s.first > next) {
            binding::c_node gap = *cols.append("col");
            cols.remove("col", cols.count("col") - 1);
            gap.set_attribute("min", std::to_string(next));
            gap.set_attribute("max", std::to_string(s.first - 1));
            std::string width;
            lmx::output_convert_to_xml(width, defaultWidth);
            gap.set_attribute("width", width);
            pieces.push_back(Piece{std::move(gap), true});
        }
        next = std::max(next, s.last + 1);
    }
    return store(cols, pieces);
}

binding::c_node *colCovering(binding::c_node &cols, int col) {
    for (size_t i = 0, n = cols.count("col"); i < n; ++i) {
        binding::c_node *c = cols.child("col", i);
        if (bound(*c, "min") <= col && col <= bound(*c, "max")) return c;
    }
    return nullptr;
}

namespace {

void keepSpans(binding::c_node &cols, const std::vector<Piece> &old,
               std::vector<Span> (*move)(Span, int, int, Span), int at, int count, Span cut) {
    std::vector<Piece> pieces;
    for (const Piece &p : old)
        for (Span s : move(Span{bound(p.node, "min"), bound(p.node, "max")}, at, count, cut)) {
            if (s.first > kColumns) continue;
            pieces.push_back(pieceOf(p.node, s.first, std::min(s.last, kColumns), false));
        }
    store(cols, pieces);
}

} // namespace

void moveCols(binding::c_node &cols, int insertAt, int count) {
    keepSpans(
        cols, piecesOf(cols), [](Span s, int at, int n, Span) { return spanAfterInsert(s, at, n); },
        insertAt, count, Span{0, 0});
}

void removeCols(binding::c_node &cols, Span removed) {
    keepSpans(
        cols, piecesOf(cols), [](Span s, int, int, Span cut) { return spanAfterRemove(s, cut); }, 0,
        0, removed);
}

} // namespace tabrix
