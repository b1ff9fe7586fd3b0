// Small helpers over a hand-made cell's rarer parts: its formula element
// and its inline string.  A plain formula may instead be the cell's formula
// text (see c_cell::formula_text); formulaOf gives only the element.  Only for the sheet's own
// source files.
#pragma once

#include <cstring>
#include <string>

#include "ooxml/binding/parts/cell.h"

namespace tabrix {

inline binding::c_node *formulaOf(binding::c_cell &cell) {
    return cell.rest() ? cell.rest()->child("f") : nullptr;
}
inline const binding::c_node *formulaOf(const binding::c_cell &cell) {
    return cell.rest() ? cell.rest()->child("f") : nullptr;
}

inline bool isSharedFormula(const binding::c_node &f) {
    return f.attribute_or_default("t") == "shared" && f.attribute("si");
}

// A master carries the formula's text and range; its dependents neither.
inline bool isSharedMaster(const binding::c_node &f) {
    return isSharedFormula(f) && f.attribute("ref") && !f._text.empty();
}

// Back to an empty cell: style and address stay.
inline void emptyCell(binding::c_cell &cell) {
    cell.unset_t();
    cell.unset_v();
    cell.unset_formula_text();
    if (binding::c_node *rest = cell.rest()) {
        rest->_attrs.clear();
        rest->_foreign.clear();
        rest->_children.clear();
    }
}

// The formula element of the cell, replaced by a copy of `f`.
inline void setFormulaNode(binding::c_cell &cell, const binding::c_node &f) {
    cell.unset_formula_text();
    binding::c_node *mine = formulaOf(cell);
    if (!mine) mine = cell.make_rest().append("f");
    if (mine != &f) *mine = f;
}

} // namespace tabrix
