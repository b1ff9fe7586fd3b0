// XMLSheetCellsT: formula texts and shared formulas.
#include "ooxml/sheet/xml_sheet_cells.h"

#include <type_traits>

#include "book/text_result.h"
#include "formula/xml_formula.h"
#include "ooxml/sheet/cell_nodes.h"
#include "ooxml/sheet/formula_text.h"
#include "ooxml/sheet/xml_text.h"

namespace tabrix {

using binding::c_cell;
using binding::c_node;

template <class C>
bool XMLSheetCellsT<C>::writeFormula(int row, int col, const C *expr, IFormatT<C> *format) {
    if (c_cell *old = find(row, col))
        if (const c_node *f = formulaOf(*old))
            if (isSharedMaster(*f)) moveMasterFormula(row, col, *old);
    if constexpr (std::is_same_v<C, char>) {
        // UTF-8 that needs no escape goes in as it is, else through wide text.
        std::string_view utf8(expr ? expr : "");
        if (!utf8.empty() && utf8[0] == '=') utf8.remove_prefix(1);
        if (_book->utf8Mode() && !_book->r1c1Mode()) {
            c_cell &cell = write(row, col, format, true);
            char *stored = cell.set_formula_text(utf8, _store.memory());
            if (exchangePlainSeparators(stored, utf8.size(), stored, ';', ',')) return true;
        }
    }
    std::wstring text = callerText(expr);
    c_cell &cell = write(row, col, format, true);
    if (!text.empty() && text[0] == '=') text.erase(0, 1);
    exchangeSeparators(text, ';', ',');
    if (_book->r1c1Mode()) XMLFormula::toRefA1(text, row, col, false);
    std::string stored;
    escapeXmlText(text, stored);
    cell.set_formula_text(stored, _store.memory());
    return true;
}

template <class C> const C *XMLSheetCellsT<C>::readFormula(int row, int col, IFormatT<C> **format) {
    const c_cell &cell = lookup(row, col, format);
    const c_node *f = cell.has_formula_text() ? nullptr : formulaOf(cell);
    if (!f && !cell.has_formula_text()) throw tberror("this cell doesn't contain a formula");
    const std::string_view stored = f ? std::string_view(f->_text) : cell.formula_text();
    const bool r1c1 = _book->r1c1Mode();
    if constexpr (std::is_same_v<C, char>) {
        // A plain UTF-8 formula is the caller's text already.
        if (_book->utf8Mode() && !r1c1 && !stored.empty()) {
            // The buffer only grows: its size is its room, the text ends at its NUL.
            if (_scratch.size() <= stored.size()) _scratch.resize(stored.size() + 1);
            char *out = _scratch.data();
            if (exchangePlainSeparators(stored.data(), stored.size(), out, ',', ';')) {
                out[stored.size()] = 0;
                return out;
            }
        }
    }
    std::wstring text;
    if (f && f->_text.empty() && isSharedFormula(*f))
        text = sharedFormula(row, col, *f->attribute("si"));
    else
        unescapeXmlText(stored, text);
    if (r1c1) XMLFormula::toRefR1C1(text, row, col);
    exchangeSeparators(text, ',', ';');
    return tc(text);
}

template <class C>
std::wstring XMLSheetCellsT<C>::sharedFormula(int row, int col, const std::string &si) {
    if (!_mastersValid) {
        // One scan in row and column order: the first master of each index.
        // Every edit of a formula or of the rows drops what is found here.
        _masters.clear();
        for (const XMLCellStore::Row &r : _store.rows())
            for (const c_cell &cell : r.data->cells()) {
                const c_node *f = formulaOf(cell);
                if (f && isSharedFormula(*f) && !f->_text.empty())
                    _masters.emplace(*f->attribute("si"),
                                     SharedMaster{int(r.row), int(cell.col()), f});
            }
        _mastersValid = true;
    }
    auto at = _masters.find(si);
    if (at == _masters.end()) return std::wstring();
    std::wstring text;
    unescapeXmlText(at->second.f->_text, text);
    return shiftFormula(text, row - at->second.row, col - at->second.col);
}

// The first other cell of the same shared index takes a copy of the
// master's formula element.
template <class C> void XMLSheetCellsT<C>::moveMasterFormula(int row, int col, c_cell &cell) {
    const c_node master = *formulaOf(cell);
    const std::string si = *master.attribute("si");
    for (const XMLCellStore::Row &r : _store.rows())
        for (c_cell &other : r.data->cells()) {
            if (int(r.row) == row && int(other.col()) == col) continue;
            const c_node *f = formulaOf(other);
            if (f && isSharedFormula(*f) && *f->attribute("si") == si) {
                setFormulaNode(other, master);
                _mastersValid = false;
                return;
            }
        }
}

// Within the master's range, the first other cell of the same shared index
// becomes master, with the text moved by its distance from the old one.
template <class C> void XMLSheetCellsT<C>::delSharedFormula(c_cell &cell, int row, int col) {
    const c_node master = *formulaOf(cell);
    const std::string si = *master.attribute("si");
    int r1 = 0, c1 = 0, r2 = 0, c2 = 0;
    if (!parseRef(*master.attribute("ref"), r1, c1, r2, c2)) return;
    _mastersValid = false;
    for (const XMLCellStore::Row &r : _store.rows()) {
        if (int(r.row) < r1 || int(r.row) > r2) continue;
        for (c_cell &other : r.data->cells()) {
            const int oc = int(other.col());
            if (oc < c1 || oc > c2 || (int(r.row) == row && oc == col)) continue;
            c_node *f = formulaOf(other);
            if (!f || !isSharedFormula(*f) || *f->attribute("si") != si) continue;
            std::wstring text;
            unescapeXmlText(master._text, text);
            f->set_attribute("ref", *master.attribute("ref"));
            f->_text.clear();
            escapeXmlText(shiftFormula(text, int(r.row) - row, oc - col), f->_text);
            return;
        }
    }
}

template class XMLSheetCellsT<char>;
template class XMLSheetCellsT<wchar_t>;

} // namespace tabrix
