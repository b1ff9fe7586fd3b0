// Facades of the worksheet part: rows of hand-made cells, columns, merged
// ranges, sheet views and page setup.
#pragma once

#include "ooxml/binding/parts/facade.h"
#include "ooxml/binding/parts/row.h"

namespace binding {

class c_row : public c_facade_of<c_row_data> {
public:
    using c_facade_of::c_facade_of;
    uint32_t get_r() const { return _n->isset_r() ? _n->get_r() : u32_of("r"); }
    void set_r(uint32_t r) { _n->set_r(r); }
    bool isset_r() const { return _n->isset_r() || _n->attribute("r"); }
    void unset_r() { _n->unset_r(); }
    BINDING_ATTR_TEXT(spans)
    BINDING_ATTR_U32(s)
    BINDING_ATTR_DOUBLE(ht)
    BINDING_ATTR_BOOL(hidden)
    BINDING_ATTR_BOOL(customHeight)
    BINDING_ATTR_BOOL(customFormat)
    BINDING_ATTR_U32(outlineLevel)
    BINDING_ATTR_BOOL(collapsed)
    // Cells, in order.  get_c past the end appends default cells up to the index.
    size_t size_c() const { return _n->cells().size(); }
    c_cell &get_c(size_t i) {
        while (i >= _n->cells().size()) append_c();
        return _n->cells()[i];
    }
    c_cell &append_c() { return _n->insert_cell(_n->cells().size()); }
    void delete_c(size_t i) { _n->erase_cell(i); }
};

// The rows are hand-made children of the sheet data.
class c_sheet_data : public c_facade {
public:
    using c_facade::c_facade;
    size_t size_row() const;
    c_row get_row(size_t i) const;
    c_row append_row();
    // A new row placed before the row at index i (at the end past the last).
    c_row insert_row(size_t i);
    void delete_row(size_t i);
};

class c_col : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(min)
    BINDING_ATTR_U32(max)
    BINDING_ATTR_DOUBLE(width)
    BINDING_ATTR_U32(style)
    BINDING_ATTR_BOOL(hidden)
    BINDING_ATTR_BOOL(customWidth)
    BINDING_ATTR_U32(outlineLevel)
    BINDING_ATTR_BOOL(collapsed)
};

class c_cols : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_MULTI(c_col, col)
};

class c_merge_cell : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(ref)
};

class c_merge_cells : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_MULTI(c_merge_cell, mergeCell)
};

class c_sheet_view : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(tabSelected)
    BINDING_ATTR_BOOL(showGridLines)
    BINDING_ATTR_U32(zoomScale)
    BINDING_ATTR_U32(workbookViewId)
};

class c_sheet_views : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_MULTI(c_sheet_view, sheetView)
};

class c_page_setup : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(paperSize)
    BINDING_ATTR_U32(scale)
    BINDING_ATTR_ENUM(e_orientation, orientation)
    BINDING_ATTR_U32(fitToWidth)
    BINDING_ATTR_U32(fitToHeight)
};

class c_worksheet : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_sheet_views, sheetViews)
    BINDING_OPTIONAL(c_cols, cols)
    BINDING_OPTIONAL(c_sheet_data, sheetData)
    BINDING_OPTIONAL(c_merge_cells, mergeCells)
    BINDING_OPTIONAL(c_page_setup, pageSetup)
};

} // namespace binding
