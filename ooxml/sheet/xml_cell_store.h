// XMLCellStore: the rows and cells of a worksheet's sheetData, found by
// binary search.  Rows are the sheetData's hand-made rows, ascending by
// number, indexed here by number; cells are a row's array of hand-made
// cells, ascending by column.  Writes keep both orders, so
// writing in ascending order is a search and an append.  A file's rows
// and cells without an address take the place after the one before them;
// a file's rows or cells out of order are put in order when indexed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ooxml/binding/engine/document.h"
#include "ooxml/binding/parts/row.h"

namespace tabrix {

class XMLCellStore {
public:
    struct Row {
        uint32_t row; // zero-based
        binding::c_row_data *data;
    };

    explicit XMLCellStore(binding::c_document &doc) : _doc(&doc) {}
    // Where the sheet's cells keep their arrays and extras.
    std::pmr::memory_resource *memory() { return _doc->cell_memory(); }
    // Makes the index again at the next use (after the tree changed elsewhere).
    void invalidate() { _stale = true; }
    void rebind(binding::c_document &doc) {
        _doc = &doc;
        _stale = true;
    }

    const std::vector<Row> &rows() {
        ensure();
        return _rows;
    }
    // Position in rows() of the row, or -1.
    long rowPosition(uint32_t row);
    binding::c_row_data *findRow(uint32_t row);
    binding::c_cell *findCell(uint32_t row, uint32_t col);
    // The row, made in its place when missing.
    binding::c_row_data &overwriteRow(uint32_t row);
    // The cell, made (with its row) when missing.
    binding::c_cell &overwrite(uint32_t row, uint32_t col);
    // Deletes the cell, and its row when no cell is left; false if absent.
    bool erase(uint32_t row, uint32_t col);
    // Deletes every row.
    void eraseAll();
    // The position in the row's cells of the cell at `col`, or -1.
    static long cellPosition(const binding::c_row_data &row, uint32_t col);

private:
    void ensure() {
        if (_stale) rebuild();
    }
    void rebuild();
    size_t rowChildPosition(size_t position) const;
    // The position of the first row numbered above `row`.
    size_t upperRow(uint32_t row) const;
    static size_t lowerCell(const binding::cell_vector &cells, uint32_t col);

    binding::c_document *_doc;
    binding::c_node *_sheetData = nullptr;
    std::vector<Row> _rows;
    bool _stale = true;
    size_t _hint = 0; // position of the row found last
    int32_t _rowDecl = -1;
};

} // namespace tabrix
