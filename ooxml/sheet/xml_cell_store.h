// XMLCellStore: the rows and cells of a worksheet's sheetData, found by
// binary search.  Rows are the sheetData's row elements, ascending by
// number, indexed here by number and node; cells are the hand-made
// children of a row, ascending by column.  Writes keep both orders, so
// writing in ascending order is a search and an append.  A file's rows
// and cells without an address take the place after the one before them;
// a file's rows or cells out of order are put in order when indexed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ooxml/binding/engine/document.h"
#include "ooxml/binding/parts/cell.h"

namespace tabrix {

class XMLCellStore {
public:
    struct Row {
        uint32_t row; // zero-based
        binding::c_node *node;
    };

    explicit XMLCellStore(binding::c_document &doc) : _doc(&doc) {}
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
    binding::c_node *findRow(uint32_t row);
    binding::c_cell *findCell(uint32_t row, uint32_t col);
    // The cell, made (with its row) when missing.
    binding::c_cell &overwrite(uint32_t row, uint32_t col);
    // Deletes the cell, and its row when no cell is left; false if absent.
    bool erase(uint32_t row, uint32_t col);
    // Deletes every row.
    void eraseAll();
    // The position of the row's child holding the cell at `col`, or -1.
    static long cellPosition(const binding::c_node &row, uint32_t col);
    static binding::c_cell &cellOf(binding::c_child &c) {
        return static_cast<binding::c_cell &>(*c.hand);
    }
    // The element declaration and type of a cell, to make one.
    int32_t cellDecl() {
        ensure();
        return _cellDecl;
    }
    int32_t cellType() {
        ensure();
        return _cellType;
    }

private:
    void ensure() {
        if (_stale) rebuild();
    }
    void rebuild();
    size_t rowChildPosition(size_t position) const;
    static size_t lowerCell(const std::vector<binding::c_child> &children, uint32_t col);

    binding::c_document *_doc;
    binding::c_node *_sheetData = nullptr;
    std::vector<Row> _rows;
    bool _stale = true;
    size_t _hint = 0; // position of the row found last
    int32_t _rowDecl = -1, _cellDecl = -1, _cellType = -1;
};

} // namespace tabrix
