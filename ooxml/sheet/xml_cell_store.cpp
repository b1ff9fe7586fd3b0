// Finding, making and deleting rows and cells of sheetData.
#include "ooxml/sheet/xml_cell_store.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <unordered_map>

#include "ooxml/binding/parts/worksheet_facades.h"

namespace tabrix {

using binding::c_cell;
using binding::c_child;
using binding::c_node;
using binding::K_HAND;
using binding::K_NODE;

namespace {

const unsigned long kRowsPast = 1048576; // zero-based number of the row after the last

// Column of the cell at `i`, or of the nearest cell before a child that is
// no cell (-1 when none): a non-decreasing key over the children.
long keyAt(const std::vector<c_child> &children, size_t i) {
    for (;;) {
        if (children[i].kind == K_HAND)
            return long(static_cast<const c_cell &>(*children[i].hand).col());
        if (i == 0) return -1;
        --i;
    }
}

} // namespace

// Puts the children at `positions` in ascending order of `key`, keeping
// equal keys and every other child where they are.
template <class Key>
void sortAt(std::vector<c_child> &children, const std::vector<size_t> &positions, Key key) {
    std::vector<c_child> taken;
    taken.reserve(positions.size());
    for (size_t p : positions) taken.push_back(std::move(children[p]));
    std::stable_sort(taken.begin(), taken.end(),
                     [&](const c_child &a, const c_child &b) { return key(a) < key(b); });
    for (size_t i = 0; i < positions.size(); ++i) children[positions[i]] = std::move(taken[i]);
}

void XMLCellStore::rebuild() {
    _stale = false;
    _rows.clear();
    _sheetData = binding::c_worksheet(&_doc->root()).get_sheetData().node();
    const binding::s_schema_set &set = *_doc->set();
    _rowDecl = _sheetData->decl_of("row");
    c_node probe(&set, set.elems[_rowDecl].complex, -1);
    _cellDecl = probe.decl_of("c");
    _cellType = set.elems[_cellDecl].complex;
    long previous = -1;
    bool rowsSorted = true;
    std::vector<size_t> rowPositions;
    std::vector<c_child> &children = _sheetData->_children;
    for (size_t i = 0; i < children.size(); ++i) {
        c_child &c = children[i];
        if (c.kind != K_NODE || c.decl != _rowDecl) continue;
        c_node &row = *c.node;
        const std::string *r = row.attribute("r");
        long number = previous + 1;
        if (r) {
            char *end = nullptr;
            const unsigned long v = std::strtoul(r->c_str(), &end, 10);
            if (v >= 1 && end && *end == 0) number = long(std::min(v, kRowsPast)) - 1;
        } else {
            row.set_attribute("r", std::to_string(number + 1));
        }
        // Rows past the sheet's end (only a broken file has them) all count as one row
        // past it, which no address reaches.
        number = std::min(number, long(kRowsPast));
        rowsSorted = rowsSorted && number > previous;
        previous = number;
        // Cells without an address follow the cell before them.
        long col = -1;
        bool cellsSorted = true;
        std::vector<size_t> cellPositions;
        for (size_t k = 0; k < row._children.size(); ++k) {
            if (row._children[k].kind != K_HAND) continue;
            c_cell &cell = cellOf(row._children[k]);
            if (!cell.isset_r()) cell.set_r(uint32_t(number), uint32_t(col + 1));
            cellsSorted = cellsSorted && long(cell.col()) > col;
            col = long(cell.col());
            cellPositions.push_back(k);
        }
        // The lookups need ascending cells; a file out of order is put in order.
        if (!cellsSorted)
            sortAt(row._children, cellPositions,
                   [](const c_child &k) { return static_cast<const c_cell &>(*k.hand).col(); });
        _rows.push_back({uint32_t(number), &row});
        rowPositions.push_back(i);
    }
    if (!rowsSorted) {
        std::unordered_map<const c_node *, uint32_t> numberOf;
        for (const Row &r : _rows) numberOf[r.node] = r.row;
        sortAt(children, rowPositions, [&](const c_child &k) { return numberOf[k.node.get()]; });
        std::stable_sort(_rows.begin(), _rows.end(),
                         [](const Row &a, const Row &b) { return a.row < b.row; });
    }
}

long XMLCellStore::rowPosition(uint32_t row) {
    ensure();
    // Reads go along a row: the row found last is tried first (the rightmost
    // of its number, as the search would find).
    const size_t n = _rows.size();
    if (_hint < n && _rows[_hint].row == row && (_hint + 1 == n || _rows[_hint + 1].row != row))
        return long(_hint);
    long lo = -1, hi = long(n);
    while (lo < hi - 1) {
        const long mid = (lo + hi) / 2;
        if (_rows[size_t(mid)].row > row)
            hi = mid;
        else
            lo = mid;
    }
    if (lo < 0 || _rows[size_t(lo)].row != row) return -1;
    _hint = size_t(lo);
    return lo;
}

c_node *XMLCellStore::findRow(uint32_t row) {
    const long p = rowPosition(row);
    return p < 0 ? nullptr : _rows[size_t(p)].node;
}

size_t XMLCellStore::lowerCell(const std::vector<c_child> &children, uint32_t col) {
    long lo = -1, hi = long(children.size());
    while (lo < hi - 1) {
        const long mid = (lo + hi) / 2;
        if (keyAt(children, size_t(mid)) > long(col))
            hi = mid;
        else
            lo = mid;
    }
    // lo is the last child keyed at or below col; step back over non-cells.
    while (lo >= 0 && children[size_t(lo)].kind != K_HAND) --lo;
    return size_t(lo + 1);
}

long XMLCellStore::cellPosition(const c_node &row, uint32_t col) {
    const std::vector<c_child> &ch = row._children;
    const size_t at = lowerCell(ch, col);
    if (at == 0) return -1;
    const c_cell &cell = static_cast<const c_cell &>(*ch[at - 1].hand);
    return cell.col() == col ? long(at - 1) : -1;
}

c_cell *XMLCellStore::findCell(uint32_t row, uint32_t col) {
    c_node *r = findRow(row);
    if (!r) return nullptr;
    const long p = cellPosition(*r, col);
    return p < 0 ? nullptr : &cellOf(r->_children[size_t(p)]);
}

size_t XMLCellStore::rowChildPosition(size_t position) const {
    const std::vector<c_child> &ch = _sheetData->_children;
    if (ch.size() == _rows.size()) return position;
    if (position < _rows.size()) {
        for (size_t i = 0; i < ch.size(); ++i)
            if (ch[i].node.get() == _rows[position].node) return i;
    }
    // After the last row.
    size_t at = ch.size();
    while (at > 0 && !(ch[at - 1].kind == K_NODE && ch[at - 1].decl == _rowDecl)) --at;
    return _rows.empty() ? 0 : at;
}

c_cell &XMLCellStore::overwrite(uint32_t row, uint32_t col) {
    ensure();
    // The row: the last one on an ascending write, else a search.
    size_t p;
    if (!_rows.empty() && _rows.back().row == row) {
        p = _rows.size() - 1;
    } else {
        long lo = -1, hi = long(_rows.size());
        while (lo < hi - 1) {
            const long mid = (lo + hi) / 2;
            if (_rows[size_t(mid)].row > row)
                hi = mid;
            else
                lo = mid;
        }
        if (lo >= 0 && _rows[size_t(lo)].row == row) {
            p = size_t(lo);
        } else {
            p = size_t(hi);
            const binding::s_schema_set &set = *_doc->set();
            c_child c;
            c.kind = K_NODE;
            c.decl = _rowDecl;
            c.node = std::make_unique<c_node>(&set, set.elems[_rowDecl].complex,
                                              set.elems[_rowDecl].simple);
            c.node->set_attribute("r", std::to_string(uint64_t(row) + 1));
            c_node *made = c.node.get();
            const size_t at = rowChildPosition(p);
            _sheetData->_children.insert(_sheetData->_children.begin() + long(at), std::move(c));
            _rows.insert(_rows.begin() + long(p), Row{row, made});
        }
    }
    std::vector<c_child> &ch = _rows[p].node->_children;
    size_t at;
    if (!ch.empty() && ch.back().kind == K_HAND && cellOf(ch.back()).col() < col) {
        at = ch.size();
    } else {
        at = lowerCell(ch, col);
        if (at > 0) {
            c_cell &before = cellOf(ch[at - 1]);
            if (before.col() == col) {
                before.set_r(row, col);
                return before;
            }
        }
    }
    c_child c;
    c.kind = K_HAND;
    c.decl = _cellDecl;
    c.hand = std::make_unique<c_cell>(*_doc->set(), _cellType);
    c_cell &cell = static_cast<c_cell &>(*c.hand);
    cell.set_r(row, col);
    if (at == ch.size())
        ch.push_back(std::move(c));
    else
        ch.insert(ch.begin() + long(at), std::move(c));
    return cell;
}

bool XMLCellStore::erase(uint32_t row, uint32_t col) {
    const long p = rowPosition(row);
    if (p < 0) return false;
    c_node &r = *_rows[size_t(p)].node;
    const long k = cellPosition(r, col);
    if (k < 0) return false;
    r._children.erase(r._children.begin() + k);
    for (const c_child &c : r._children)
        if (c.kind == K_HAND) return true;
    std::vector<c_child> &ch = _sheetData->_children;
    ch.erase(ch.begin() + long(rowChildPosition(size_t(p))));
    _rows.erase(_rows.begin() + p);
    return true;
}

void XMLCellStore::eraseAll() {
    ensure();
    std::vector<c_child> &ch = _sheetData->_children;
    std::vector<c_child> kept;
    for (c_child &c : ch)
        if (!(c.kind == K_NODE && c.decl == _rowDecl)) kept.push_back(std::move(c));
    ch = std::move(kept);
    _rows.clear();
}

} // namespace tabrix
