// Facades of the worksheet's setup elements: sheet properties, panes,
// page breaks, margins, print options, header and footer, protection.
#pragma once

#include "ooxml/binding/parts/facade.h"

namespace binding {

class c_outline_pr : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(summaryBelow)
    BINDING_ATTR_BOOL(summaryRight)
};

class c_page_setup_pr : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(fitToPage)
};

class c_sheet_pr : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_outline_pr, outlinePr)
    BINDING_OPTIONAL(c_page_setup_pr, pageSetUpPr)
};

class c_pane : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_DOUBLE(xSplit)
    BINDING_ATTR_DOUBLE(ySplit)
    BINDING_ATTR_TEXT(topLeftCell)
    BINDING_ATTR_TEXT(activePane)
    BINDING_ATTR_TEXT(state)
};

// A sheet view with the members the setup uses beyond c_sheet_view's.
class c_sheet_view_setup : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(rightToLeft)
    BINDING_ATTR_BOOL(showGridLines)
    BINDING_ATTR_TEXT(topLeftCell)
    BINDING_ATTR_U32(zoomScale)
    BINDING_ATTR_U32(zoomScaleNormal)
    BINDING_OPTIONAL(c_pane, pane)
};

class c_sheet_format_pr : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_DOUBLE(defaultColWidth)
    BINDING_ATTR_DOUBLE(defaultRowHeight)
    BINDING_ATTR_U32(baseColWidth)
};

class c_break : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(id)
    BINDING_ATTR_U32(max)
    BINDING_ATTR_BOOL(man)
};

class c_page_breaks : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_ATTR_U32(manualBreakCount)
    BINDING_MULTI(c_break, brk)
};

class c_page_margins : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_DOUBLE(left)
    BINDING_ATTR_DOUBLE(right)
    BINDING_ATTR_DOUBLE(top)
    BINDING_ATTR_DOUBLE(bottom)
    BINDING_ATTR_DOUBLE(header)
    BINDING_ATTR_DOUBLE(footer)
};

class c_print_options : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(gridLines)
    BINDING_ATTR_BOOL(headings)
    BINDING_ATTR_BOOL(horizontalCentered)
    BINDING_ATTR_BOOL(verticalCentered)
};

class c_header_footer : public c_facade {
public:
    using c_facade::c_facade;
    // The texts are the children's simple content; absent gives "".
    std::string get_text(const char *which) const {
        const c_node *c = _n->child(which);
        return c ? c->_text : std::string();
    }
    void set_text(const char *which, std::string v) { lazy(which)->_text = std::move(v); }
};

class c_sheet_protection : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(sheet)
    BINDING_ATTR_BOOL(objects)
    BINDING_ATTR_BOOL(scenarios)
};

// The worksheet's optional setup children, in schema order.
class c_worksheet_setup : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_sheet_pr, sheetPr)
    BINDING_OPTIONAL(c_sheet_format_pr, sheetFormatPr)
    BINDING_OPTIONAL(c_sheet_protection, sheetProtection)
    BINDING_OPTIONAL(c_print_options, printOptions)
    BINDING_OPTIONAL(c_page_margins, pageMargins)
    BINDING_OPTIONAL(c_header_footer, headerFooter)
    BINDING_OPTIONAL(c_page_breaks, rowBreaks)
    BINDING_OPTIONAL(c_page_breaks, colBreaks)
};

} // namespace binding
