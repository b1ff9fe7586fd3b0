// Facades of the workbook part: sheets, defined names, workbook properties.
#pragma once

#include "ooxml/binding/parts/facade.h"

namespace binding {

class c_sheet : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(name)
    BINDING_ATTR_U32(sheetId)
    BINDING_ATTR_ENUM(e_sheet_state, state)
    BINDING_ATTR_TEXT(id) // r:id
};

class c_sheets : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_MULTI(c_sheet, sheet)
};

// A defined name: its formula is the element's text.
class c_defined_name : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(name)
    BINDING_ATTR_U32(localSheetId)
    BINDING_ATTR_BOOL(hidden)
    const std::string &get_value() const { return _n->_text; }
    void set_value(std::string v) { _n->_text = std::move(v); }
};

class c_defined_names : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_MULTI(c_defined_name, definedName)
};

class c_workbook_pr : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(date1904)
    BINDING_ATTR_TEXT(codeName)
    BINDING_ATTR_U32(defaultThemeVersion)
};

class c_book_view : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(activeTab)
    BINDING_ATTR_U32(firstSheet)
};

class c_book_views : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_MULTI(c_book_view, workbookView)
};

class c_calc_pr : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(fullCalcOnLoad)
    BINDING_ATTR_TEXT(refMode)
};

class c_workbook : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_book_views, bookViews)
    BINDING_OPTIONAL(c_calc_pr, calcPr)
    BINDING_OPTIONAL(c_workbook_pr, workbookPr)
    BINDING_OPTIONAL(c_sheets, sheets)
    BINDING_OPTIONAL(c_defined_names, definedNames)
};

} // namespace binding
