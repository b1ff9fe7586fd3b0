// XMLSheetCellsT: deleting, clearing and copying cells, and the extents.
#include "ooxml/sheet/xml_sheet_cells.h"

#include <memory>
#include <utility>
#include <vector>

#include "ooxml/binding/parts/worksheet_facades.h"
#include "ooxml/sheet/cell_nodes.h"
#include "ooxml/sheet/formula_text.h"

namespace tabrix {

using binding::c_cell;
using binding::c_node;

template <class C> void XMLSheetCellsT<C>::delCell(int row, int col) {
    c_cell *cell = find(row, col);
    if (!cell) return;
    if (const c_node *f = formulaOf(*cell)) {
        if (isSharedMaster(*f)) moveMasterFormula(row, col, *cell);
        _mastersValid = false;
    }
    _store.erase(uint32_t(row), uint32_t(col));
}

template <class C>
bool XMLSheetCellsT<C>::clear(int rowFirst, int rowLast, int colFirst, int colLast) {
    if (rowLast < rowFirst) throw tberror("rowLast must be greater than or equal to rowFirst");
    if (colLast < colFirst) throw tberror("colLast must be greater than or equal to colFirst");
    if (rowFirst <= 0 && rowLast >= 1048575 && colFirst <= 0 && colLast >= 16383) {
        _store.eraseAll();
        _mastersValid = false;
    } else {
        // The cells present in the rectangle, then each deleted.
        std::vector<std::pair<int, int>> hits;
        for (const XMLCellStore::Row &r : _store.rows()) {
            if (int64_t(r.row) < rowFirst || int64_t(r.row) > rowLast) continue;
            for (const c_cell &cell : r.data->cells()) {
                const int c = int(cell.col());
                if (c >= colFirst && c <= colLast) hits.emplace_back(int(r.row), c);
            }
        }
        for (const auto &h : hits) delCell(h.first, h.second);
    }
    // Merged ranges lying wholly inside go too.
    binding::c_worksheet ws(&_doc.root());
    if (ws.isset_mergeCells()) {
        binding::c_merge_cells merges = ws.get_mergeCells();
        for (size_t i = 0; i < merges.size_mergeCell(); ++i) {
            int r1 = 0, c1 = 0, r2 = 0, c2 = 0;
            if (!parseRef(std::string(merges.get_mergeCell(i).get_ref()), r1, c1, r2, c2)) continue;
            if (r1 >= rowFirst && r2 <= rowLast && c1 >= colFirst && c2 <= colLast)
                merges.delete_mergeCell(i); // the walk goes on at the next index
        }
        if (merges.size_mergeCell() == 0)
            ws.unset_mergeCells();
        else if (merges.isset_count())
            merges.set_count(uint32_t(merges.size_mergeCell()));
    }
    _dimsStale = true;
    return true;
}

template <class C>
bool XMLSheetCellsT<C>::copyCell(int rowSrc, int colSrc, int rowDst, int colDst) {
    const c_cell *src = find(rowSrc, colSrc);
    if (!src) throw tberror("source cell is not found");
    const c_cell copy(*src);
    write(rowDst, colDst, nullptr, true);
    c_cell *dst = _store.findCell(uint32_t(rowDst), uint32_t(colDst));
    if (!dst) throw tberror("cell is not found");
    *dst = copy;
    dst->set_r(uint32_t(rowDst), uint32_t(colDst));
    _mastersValid = false;
    return true;
}

template <class C> void XMLSheetCellsT<C>::recalcDimensions() {
    _dims = XMLDimensions();
    _dimsStale = false;
    const std::vector<XMLCellStore::Row> &rows = _store.rows();
    if (!rows.empty()) {
        _dims.firstRow = int(rows.front().row);
        _dims.lastRow = int(rows.back().row) + 1;
        bool any = false;
        for (const XMLCellStore::Row &r : rows) {
            const binding::cell_vector &cells = r.data->cells();
            if (cells.empty()) continue;
            const c_cell *first = &cells.front(), *last = &cells.back();
            if (!any || int(first->col()) < _dims.firstCol) _dims.firstCol = int(first->col());
            if (!any || int(last->col()) + 1 > _dims.lastCol) _dims.lastCol = int(last->col()) + 1;
            any = true;
        }
    }
    binding::c_worksheet ws(&_doc.root());
    if (ws.isset_mergeCells()) {
        binding::c_merge_cells merges = ws.get_mergeCells();
        for (size_t i = 0; i < merges.size_mergeCell(); ++i) {
            int r1 = 0, c1 = 0, r2 = 0, c2 = 0;
            if (!parseRef(std::string(merges.get_mergeCell(i).get_ref()), r1, c1, r2, c2)) continue;
            if (_dims.firstRow == _dims.lastRow || r1 < _dims.firstRow) _dims.firstRow = r1;
            if (r2 + 1 > _dims.lastRow) _dims.lastRow = r2 + 1;
            if (_dims.firstCol == _dims.lastCol || c1 < _dims.firstCol) _dims.firstCol = c1;
            if (c2 + 1 > _dims.lastCol) _dims.lastCol = c2 + 1;
        }
    }
}

template <class C> int XMLSheetCellsT<C>::firstRow() {
    if (_dimsStale) recalcDimensions();
    return _dims.firstRow;
}
template <class C> int XMLSheetCellsT<C>::lastRow() {
    if (_dimsStale) recalcDimensions();
    return _dims.lastRow;
}
template <class C> int XMLSheetCellsT<C>::firstCol() {
    if (_dimsStale) recalcDimensions();
    return _dims.firstCol;
}
template <class C> int XMLSheetCellsT<C>::lastCol() {
    if (_dimsStale) recalcDimensions();
    return _dims.lastCol;
}

template class XMLSheetCellsT<char>;
template class XMLSheetCellsT<wchar_t>;

} // namespace tabrix
