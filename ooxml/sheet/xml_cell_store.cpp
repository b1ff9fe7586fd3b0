// Finding, making and deleting rows and cells of sheetData.
#include "ooxml/sheet/xml_cell_store.h"

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>

#include "ooxml/binding/parts/worksheet_facades.h"
#include "ooxml/sheet/sheet_limits.h"

namespace tabrix {

using binding::c_cell;
using binding::c_child;
using binding::c_row_data;
using binding::K_HAND;

namespace {

const uint32_t kRowsPast = 1048576; // zero-based number of the row after the last

bool isRow(const c_child &c, int32_t decl) { return c.kind == K_HAND && c.decl == decl; }
c_row_data &rowOf(c_child &c) { return static_cast<c_row_data &>(*c.hand); }
const c_row_data &rowOf(const c_child &c) { return static_cast<const c_row_data &>(*c.hand); }

} // namespace

void XMLCellStore::rebuild() {
    _stale = false;
    _rows.clear();
    _sheetData = binding::c_worksheet(&_doc->root()).get_sheetData().node();
    _rowDecl = _sheetData->decl_of("row");
    long previous = -1;
    bool rowsSorted = true;
    std::vector<size_t> rowPositions;
    std::vector<c_child> &children = _sheetData->_children;
    for (size_t i = 0; i < children.size(); ++i) {
        if (!isRow(children[i], _rowDecl)) continue;
        c_row_data &data = rowOf(children[i]);
        binding::c_row row(&data);
        long number = previous + 1;
        if (row.isset_r() && row.get_r() >= 1)
            number = long(std::min(row.get_r(), kRowsPast)) - 1;
        else
            data.set_r(uint32_t(number + 1));
        // Rows past the sheet's end (only a broken file has them) all count as one row
        // past it, which no address reaches.
        number = std::min(number, long(kRowsPast));
        rowsSorted = rowsSorted && number > previous;
        previous = number;
        // Cells without an address follow the cell before them.  Past the
        // last column (only a broken file gets there) they all count as one
        // column past it, which no address reaches, and keep no address.
        _rows.push_back({uint32_t(number), &data});
        rowPositions.push_back(i);
        if (data.cells_in_order()) continue;
        long col = -1;
        bool cellsSorted = true;
        for (c_cell &cell : data.cells()) {
            if (!cell.isset_r())
                cell.place(uint32_t(number), uint32_t(std::min(col + 1, long(kXmlCols))),
                           col + 1 < kXmlCols);
            cellsSorted = cellsSorted && long(cell.col()) > col;
            col = long(cell.col());
        }
        // The lookups need ascending cells; a file out of order is put in order.
        if (!cellsSorted)
            std::stable_sort(data.cells().begin(), data.cells().end(),
                             [](const c_cell &a, const c_cell &b) { return a.col() < b.col(); });
    }
    if (!rowsSorted) {
        std::unordered_map<const c_row_data *, uint32_t> numberOf;
        for (const Row &r : _rows) numberOf[r.data] = r.row;
        std::vector<c_child> taken;
        for (size_t p : rowPositions) taken.push_back(std::move(children[p]));
        std::stable_sort(taken.begin(), taken.end(), [&](const c_child &a, const c_child &b) {
            return numberOf[&rowOf(a)] < numberOf[&rowOf(b)];
        });
        for (size_t i = 0; i < rowPositions.size(); ++i)
            children[rowPositions[i]] = std::move(taken[i]);
        std::stable_sort(_rows.begin(), _rows.end(),
                         [](const Row &a, const Row &b) { return a.row < b.row; });
    }
}

long XMLCellStore::rowPosition(uint32_t row) {
    ensure();
    // Reads go along a row and on to the next: the row found last and the
    // one after it are tried first (the rightmost of its number, as the
    // search would find).
    const size_t n = _rows.size();
    for (size_t h = _hint; h < n && h <= _hint + 1; ++h)
        if (_rows[h].row == row && (h + 1 == n || _rows[h + 1].row != row)) {
            _hint = h;
            return long(h);
        }
    const long lo = long(upperRow(row)) - 1;
    if (lo < 0 || _rows[size_t(lo)].row != row) return -1;
    _hint = size_t(lo);
    return lo;
}

size_t XMLCellStore::upperRow(uint32_t row) const {
    return size_t(std::upper_bound(_rows.begin(), _rows.end(), row,
                                   [](uint32_t r, const Row &x) { return r < x.row; }) -
                  _rows.begin());
}

c_row_data *XMLCellStore::findRow(uint32_t row) {
    const long p = rowPosition(row);
    return p < 0 ? nullptr : _rows[size_t(p)].data;
}

size_t XMLCellStore::lowerCell(const binding::cell_vector &cells, uint32_t col) {
    return size_t(std::upper_bound(cells.begin(), cells.end(), col,
                                   [](uint32_t c, const c_cell &cell) { return c < cell.col(); }) -
                  cells.begin());
}

long XMLCellStore::cellPosition(const c_row_data &row, uint32_t col) {
    const binding::cell_vector &cells = row.cells();
    // A row without gaps holds the cell at its distance from the first.
    if (!cells.empty() && col >= cells[0].col()) {
        const size_t guess = col - cells[0].col();
        if (guess < cells.size() && cells[guess].col() == col) return long(guess);
    }
    const size_t at = lowerCell(cells, col);
    return at > 0 && cells[at - 1].col() == col ? long(at - 1) : -1;
}

c_cell *XMLCellStore::findCell(uint32_t row, uint32_t col) {
    c_row_data *r = findRow(row);
    if (!r) return nullptr;
    const long p = cellPosition(*r, col);
    return p < 0 ? nullptr : &r->cells()[size_t(p)];
}

size_t XMLCellStore::rowChildPosition(size_t position) const {
    const std::vector<c_child> &ch = _sheetData->_children;
    if (ch.size() == _rows.size()) return position;
    if (position < _rows.size()) {
        for (size_t i = 0; i < ch.size(); ++i)
            if (ch[i].hand.get() == _rows[position].data) return i;
    }
    // After the last row.
    size_t at = ch.size();
    while (at > 0 && !isRow(ch[at - 1], _rowDecl)) --at;
    return _rows.empty() ? 0 : at;
}

c_row_data &XMLCellStore::overwriteRow(uint32_t row) {
    ensure();
    // The last row on an ascending write, else a search.
    if (!_rows.empty() && _rows.back().row == row) return *_rows.back().data;
    const size_t p = upperRow(row);
    if (p > 0 && _rows[p - 1].row == row) return *_rows[p - 1].data;
    const binding::s_schema_set &set = *_doc->set();
    c_child c;
    c.kind = K_HAND;
    c.decl = _rowDecl;
    auto data = std::make_unique<c_row_data>(set, set.elems[_rowDecl].complex, _doc->cell_memory());
    data->set_r(row + 1);
    // A sheet written row by row has rows of like widths: room for as many
    // cells as the row before spares the array its regrowths.
    if (p > 0) data->cells().reserve(std::min<size_t>(_rows[p - 1].data->cells().size(), 1024));
    c_row_data *made = data.get();
    c.hand = std::move(data);
    const size_t at = rowChildPosition(p);
    _sheetData->_children.insert(_sheetData->_children.begin() + long(at), std::move(c));
    _rows.insert(_rows.begin() + long(p), Row{row, made});
    return *made;
}

c_cell &XMLCellStore::overwrite(uint32_t row, uint32_t col) {
    c_row_data &r = overwriteRow(row);
    binding::cell_vector &cells = r.cells();
    size_t at;
    if (!cells.empty() && cells.back().col() < col) {
        at = cells.size();
    } else {
        at = lowerCell(cells, col);
        if (at > 0 && cells[at - 1].col() == col) {
            cells[at - 1].set_r(row, col);
            return cells[at - 1];
        }
    }
    c_cell &cell = r.insert_cell(at);
    cell.set_r(row, col);
    return cell;
}

bool XMLCellStore::erase(uint32_t row, uint32_t col) {
    const long p = rowPosition(row);
    if (p < 0) return false;
    c_row_data &r = *_rows[size_t(p)].data;
    const long k = cellPosition(r, col);
    if (k < 0) return false;
    r.erase_cell(size_t(k));
    if (!r.cells().empty()) return true;
    std::vector<c_child> &ch = _sheetData->_children;
    ch.erase(ch.begin() + long(rowChildPosition(size_t(p))));
    _rows.erase(_rows.begin() + p);
    return true;
}

void XMLCellStore::eraseAll() {
    ensure();
    std::vector<c_child> &ch = _sheetData->_children;
    ch.erase(
        std::remove_if(ch.begin(), ch.end(), [&](const c_child &c) { return isRow(c, _rowDecl); }),
        ch.end());
    _rows.clear();
    _hint = 0;
}

} // namespace tabrix
