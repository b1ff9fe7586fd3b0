// Insertion and removal of rows and columns on an Open XML sheet: rows'
// and cells' numbers, merges and column ranges move; formula texts are
// left as they are.
#include <algorithm>
#include <functional>

#include "ooxml/binding/parts/worksheet_facades.h"
#include "ooxml/sheet/col_ranges.h"
#include "ooxml/sheet/sheet_limits.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

namespace {

void renumberRow(binding::c_row row, uint32_t r) {
    row.set_r(r);
    for (size_t i = 0; i < row.size_c(); ++i) row.get_c(i).set_r(r - 1, row.get_c(i).col());
}

// One pass over the rows of the sheet data in order: `edit` renumbers a
// row or moves its cells, and answers true for a row to drop.
void editRows(binding::c_node &root, const std::function<bool(binding::c_row)> &edit) {
    binding::c_node &data = *binding::c_worksheet(&root).get_sheetData().node();
    const int32_t decl = data.decl_of("row");
    auto &ch = data._children;
    ch.erase(std::remove_if(ch.begin(), ch.end(),
                            [&](binding::c_child &c) {
                                return c.kind == binding::K_HAND && c.decl == decl &&
                                       edit(binding::c_row(
                                           static_cast<binding::c_row_data *>(c.hand.get())));
                            }),
             ch.end());
}

// Every rectangle with its rows (or columns) replaced by each of `spans`.
std::vector<CellRect> withSpans(const CellRect &rect, bool rows, const std::vector<Span> &spans) {
    std::vector<CellRect> out;
    for (const Span &s : spans) {
        CellRect r = rect;
        (rows ? r.rows : r.cols) = s;
        out.push_back(r);
    }
    return out;
}

} // namespace

template <class C> bool XMLSheetImplT<C>::insertRow(int rowFirst, int rowLast) {
    checkXmlSpan(rowFirst, rowLast, true);
    const int n = rowLast - rowFirst + 1;
    editRows(this->document().root(), [&](binding::c_row row) {
        if (int(row.get_r()) - 1 < rowFirst) return false;
        if (int(row.get_r()) + n > kXmlRows) return true;
        renumberRow(row, row.get_r() + uint32_t(n));
        return false;
    });
    moveMerges([&](const CellRect &r) {
        return withSpans(r, true, spanAfterInsert(r.rows, rowFirst, n));
    });
    this->markDimensionsStale();
    return true;
}

template <class C> bool XMLSheetImplT<C>::removeRow(int rowFirst, int rowLast) {
    checkXmlSpan(rowFirst, rowLast, true);
    const int n = rowLast - rowFirst + 1;
    editRows(this->document().root(), [&](binding::c_row row) {
        const int r = int(row.get_r()) - 1;
        if (r < rowFirst) return false;
        if (r <= rowLast) return true;
        renumberRow(row, row.get_r() - uint32_t(n));
        return false;
    });
    moveMerges([&](const CellRect &r) {
        return withSpans(r, true, spanAfterRemove(r.rows, Span{rowFirst, rowLast}));
    });
    this->markDimensionsStale();
    return true;
}

template <class C> bool XMLSheetImplT<C>::insertCol(int colFirst, int colLast) {
    checkXmlSpan(colFirst, colLast, false);
    const int n = colLast - colFirst + 1;
    editRows(this->document().root(), [&](binding::c_row row) {
        for (size_t k = row.size_c(); k-- > 0;) {
            binding::c_cell &cell = row.get_c(k);
            if (int(cell.col()) < colFirst) break;
            if (int(cell.col()) + n >= kXmlCols)
                row.delete_c(k);
            else
                cell.set_r(cell.row(), cell.col() + uint32_t(n));
        }
        return false;
    });
    binding::c_node &root = this->document().root();
    for (size_t i = 0, lists = root.count("cols"); i < lists; ++i)
        moveCols(*root.child("cols", i), colFirst + 1, n);
    moveMerges([&](const CellRect &r) {
        return withSpans(r, false, spanAfterInsert(r.cols, colFirst, n));
    });
    this->markDimensionsStale();
    return true;
}

template <class C> bool XMLSheetImplT<C>::removeCol(int colFirst, int colLast) {
    checkXmlSpan(colFirst, colLast, false);
    const int n = colLast - colFirst + 1;
    editRows(this->document().root(), [&](binding::c_row row) {
        for (size_t k = row.size_c(); k-- > 0;) {
            binding::c_cell &cell = row.get_c(k);
            const int c = int(cell.col());
            if (c < colFirst) break;
            if (c <= colLast)
                row.delete_c(k);
            else
                cell.set_r(cell.row(), cell.col() - uint32_t(n));
        }
        return false;
    });
    binding::c_node &root = this->document().root();
    for (size_t i = root.count("cols"); i-- > 0;) {
        binding::c_node &cols = *root.child("cols", i);
        removeCols(cols, Span{colFirst + 1, colLast + 1});
        if (cols.count("col") == 0) root.remove("cols", i);
    }
    moveMerges([&](const CellRect &r) {
        return withSpans(r, false, spanAfterRemove(r.cols, Span{colFirst, colLast}));
    });
    this->markDimensionsStale();
    return true;
}

#define TABRIX_XML_SHEET_SHIFT(C)                                                                  \
    template bool XMLSheetImplT<C>::insertRow(int, int);                                           \
    template bool XMLSheetImplT<C>::removeRow(int, int);                                           \
    template bool XMLSheetImplT<C>::insertCol(int, int);                                           \
    template bool XMLSheetImplT<C>::removeCol(int, int);
TABRIX_XML_SHEET_SHIFT(char)
TABRIX_XML_SHEET_SHIFT(wchar_t)
#undef TABRIX_XML_SHEET_SHIFT

} // namespace tabrix
