// XMLSheetCellsT: construction, the write gate, value writes and reads.
#include "ooxml/sheet/xml_sheet_cells.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "book/text_result.h"
#include "ooxml/binding/parts/worksheet_facades.h"
#include "ooxml/lmx/lmx_error.h"
#include "ooxml/sheet/cell_nodes.h"
#include "ooxml/sheet/formula_text.h"
#include "ooxml/sheet/xml_text.h"

namespace tabrix {

using binding::c_cell;
using binding::c_node;

namespace {

const char *const kNotFound = "cell is not found";

struct ErrorText {
    const char *text;
    ErrorCode code;
};
const ErrorText kErrors[] = {
    {"#NULL!", ERRORTYPE_NULL}, {"#DIV/0!", ERRORTYPE_DIV_0}, {"#VALUE!", ERRORTYPE_VALUE},
    {"#REF!", ERRORTYPE_REF},   {"#NAME?", ERRORTYPE_NAME},   {"#NUM!", ERRORTYPE_NUM},
    {"#N/A", ERRORTYPE_NA},
};

// Throws unless the address lies on the sheet; negative values fail by
// their unsigned form, the column first.
void gate(int row, int col) {
    if (unsigned(col) > 16383u) throw tberror("col must be in range 0-16383");
    if (unsigned(row) >= 1048576u) throw tberror("row must be in range 0-1048575");
}

bool isType(const c_cell &cell, const char *t) { return cell.isset_t() && cell.get_t() == t; }

double toDouble(std::string_view v) {
    double d = 0.0;
    const char *end = v.data() + v.size();
    auto [p, ec] = std::from_chars(v.data(), end, d);
    if (ec == std::errc() && p == end) return d;
    return std::strtod(std::string(v).c_str(), nullptr);
}

// The text of an inline string: its plain text or its runs' texts.
std::string inlineText(const c_node &is) {
    if (const c_node *t = is.child("t")) return t->_text;
    std::string joined;
    for (const binding::c_child &c : is._children)
        if (c.kind == binding::K_NODE && c.node &&
            std::strcmp(is.set()->elems[c.decl].name, "r") == 0)
            if (const c_node *t = c.node->child("t")) joined += t->_text;
    return joined;
}

} // namespace

// ---- construction ----

template <class C>
XMLSheetCellsT<C>::XMLSheetCellsT(SheetServicesT<C> &book, binding::e_edition edition)
    : _book(&book) {
    _doc.create(edition, binding::PART_WORKSHEET);
    init();
}

template <class C>
XMLSheetCellsT<C>::XMLSheetCellsT(SheetServicesT<C> &book, binding::e_edition edition,
                                  const char *bytes, size_t size)
    : _book(&book) {
    lmx::s_debug_error debug;
    if (lmx::elmx_error e = _doc.unmarshal(bytes, size, edition, binding::PART_WORKSHEET, &debug))
        throw tberror(lmx::get_error_description(e));
    init();
}

template <class C>
XMLSheetCellsT<C>::XMLSheetCellsT(const XMLSheetCellsT &source, SheetServicesT<C> &book)
    : UnsupportedSheetT<C>(), _book(&book), _doc(source._doc) {
    init();
}

template <class C> XMLSheetCellsT<C>::~XMLSheetCellsT() = default;

template <class C> void XMLSheetCellsT<C>::init() {
    _store.rebind(_doc);
    recalcDimensions();
}

template <class C> void XMLSheetCellsT<C>::markDimensionsStale() {
    _dimsStale = true;
    _mastersValid = false;
    _store.invalidate();
}

template <class C> void XMLSheetCellsT<C>::noteWarning(const char *) {}

// ---- helpers ----

template <class C> c_cell *XMLSheetCellsT<C>::find(int row, int col) {
    if (unsigned(row) >= 1048576u || unsigned(col) > 16383u) return nullptr;
    return _store.findCell(uint32_t(row), uint32_t(col));
}

template <class C> c_cell &XMLSheetCellsT<C>::lookup(int row, int col, IFormatT<C> **format) {
    if (format) *format = nullptr;
    c_cell *cell = find(row, col);
    if (!cell) throw tberror(kNotFound);
    if (format) *format = _book->styles().formatByIndex(cell->get_s());
    return *cell;
}

template <class C>
c_cell &XMLSheetCellsT<C>::write(int row, int col, IFormatT<C> *format, bool clearCell) {
    gate(row, col);
    const uint32_t style = format ? _book->styles().getStyleID(format) : 0;
    c_cell &cell = _store.overwrite(uint32_t(row), uint32_t(col));
    if (clearCell) {
        if (const c_node *f = formulaOf(cell)) {
            if (isSharedMaster(*f)) delSharedFormula(cell, row, col);
            _mastersValid = false;
        }
        emptyCell(cell);
    }
    if (format) cell.set_s(style);
    if (!_dimsStale) _dims.update(row, col);
    return cell;
}

template <class C> const C *XMLSheetCellsT<C>::tc(const std::wstring &wide) {
    std::wstring scratch;
    _text.assign(forCaller(wide.c_str(), scratch, static_cast<const C *>(nullptr)));
    const C *out = _text.template c_str<C>(_book->utf8Mode());
    if (_text.conversionFailed()) noteWarning(kConversionWarning);
    return out;
}

template <class C> std::wstring XMLSheetCellsT<C>::callerText(const C *text) {
    std::wstring wide;
    wideText(text, _book->utf8Mode(), wide);
    return wide;
}

// ---- writes ----

template <class C>
bool XMLSheetCellsT<C>::writeNum(int row, int col, double value, IFormatT<C> *format) {
    c_cell &cell = write(row, col, format, true);
    char buf[32];
    const auto res = std::to_chars(buf, buf + sizeof buf, value);
    cell.set_v(std::string_view(buf, size_t(res.ptr - buf)));
    return true;
}

template <class C>
bool XMLSheetCellsT<C>::writeStr(int row, int col, const C *value, IFormatT<C> *format) {
    c_cell &cell = write(row, col, format, true);
    SharedStrings &table = _book->sharedStrings();
    uint32_t index;
    // UTF-8 that needs no escape goes in as it is, else through wide text.
    if constexpr (std::is_same_v<C, char>) {
        const std::string_view text(value ? value : "");
        if (_book->utf8Mode() && isPlainXmlText(text))
            index = table.addStoredText(text);
        else
            index = table.addString(callerText(value));
    } else {
        index = table.addString(callerText(value));
    }
    cell.set_t("s");
    char buf[16];
    const auto res = std::to_chars(buf, buf + sizeof buf, index);
    cell.set_v(std::string_view(buf, size_t(res.ptr - buf)));
    return true;
}

template <class C>
bool XMLSheetCellsT<C>::writeBool(int row, int col, bool value, IFormatT<C> *format) {
    c_cell &cell = write(row, col, format, true);
    cell.set_t("b");
    cell.set_v(value ? "1" : "0");
    return true;
}

template <class C> bool XMLSheetCellsT<C>::writeBlank(int row, int col, IFormatT<C> *format) {
    if (!format) throw tberror("format is null");
    write(row, col, format, true);
    return true;
}

template <class C> void XMLSheetCellsT<C>::setCellFormat(int row, int col, IFormatT<C> *format) {
    if (format) {
        write(row, col, format, false);
    } else if (c_cell *cell = find(row, col)) {
        cell->unset_s();
    }
}

// ---- reads ----

template <class C> CellType XMLSheetCellsT<C>::cellType(int row, int col) {
    const c_cell *cell = find(row, col);
    if (!cell) return CELLTYPE_EMPTY;
    if (!cell->isset_v() && !(cell->rest() && cell->rest()->child("is"))) return CELLTYPE_BLANK;
    const std::string_view t = cell->isset_t() ? std::string_view(cell->get_t()) : "n";
    // An empty number value, as some writers give a formula they did not
    // calculate, holds no number: the cell is blank.
    if (t == "n")
        return cell->isset_v() && cell->get_v().empty() ? CELLTYPE_BLANK : CELLTYPE_NUMBER;
    if (t == "s" || t == "str" || t == "inlineStr") return CELLTYPE_STRING;
    if (t == "b") return CELLTYPE_BOOLEAN;
    if (t == "e") return CELLTYPE_ERROR;
    return CELLTYPE_EMPTY; // an ISO 8601 date cell: kept, not read
}

template <class C> bool XMLSheetCellsT<C>::isFormula(int row, int col) {
    const c_cell *cell = find(row, col);
    return cell && (cell->has_formula_text() || formulaOf(*cell));
}

template <class C> double XMLSheetCellsT<C>::readNum(int row, int col, IFormatT<C> **format) {
    const c_cell &cell = lookup(row, col, format);
    if ((!cell.isset_t() || cell.get_t() == "n") && cell.isset_v() && !cell.get_v().empty())
        return toDouble(cell.get_v());
    throw tberror("this cell doesn't contain a number");
}

template <class C> bool XMLSheetCellsT<C>::readBool(int row, int col, IFormatT<C> **format) {
    const c_cell &cell = lookup(row, col, format);
    if (isType(cell, "b") && cell.isset_v())
        return std::atoi(std::string(cell.get_v()).c_str()) != 0;
    throw tberror("this cell doesn't contain a bool");
}

template <class C> bool XMLSheetCellsT<C>::readBlank(int row, int col, IFormatT<C> **format) {
    const c_cell &cell = lookup(row, col, format);
    if (cell.isset_v()) throw tberror("cell is not blank");
    return true;
}

template <class C> const C *XMLSheetCellsT<C>::readStr(int row, int col, IFormatT<C> **format) {
    const c_cell &cell = lookup(row, col, format);
    std::wstring wide;
    if (isType(cell, "s") && cell.isset_v()) {
        SharedStrings *sst = _book->sharedStringsIfAny();
        if (!sst) throw tberror("sharedStrings not found");
        const std::string_view v = cell.get_v();
        if (v.empty()) return tc(std::wstring()); // an empty value names no item: no text
        uint32_t index = 0;
        const auto res = std::from_chars(v.data(), v.data() + v.size(), index);
        if (res.ec != std::errc() || res.ptr != v.data() + v.size())
            throw tberror("index is out of range or no value");
        if constexpr (std::is_same_v<C, char>) {
            // A plain UTF-8 item without escapes is the caller's text
            // already, and stays in place while the book lives.
            std::string_view stored;
            if (_book->utf8Mode() && sst->plainStoredText(index, stored) &&
                stored.find('_') == std::string_view::npos)
                return stored.data();
        }
        return tc(sst->stringByIndex(index));
    }
    if (isType(cell, "str") && cell.isset_v()) {
        unescapeXmlText(cell.get_v(), wide);
        return tc(wide);
    }
    const c_node *is = cell.rest() ? cell.rest()->child("is") : nullptr;
    if (isType(cell, "inlineStr") && is) {
        unescapeXmlText(inlineText(*is), wide);
        return tc(wide);
    }
    throw tberror("this cell doesn't contain a string");
}

template <class C> ErrorCode XMLSheetCellsT<C>::readError(int row, int col) {
    const c_cell &cell = lookup(row, col, nullptr);
    if (!isType(cell, "e") || !cell.isset_v()) throw tberror("this cell doesn't contain an error");
    for (const ErrorText &e : kErrors)
        if (cell.get_v() == e.text) return e.code;
    throw tberror("unknown error value");
}

template <class C> IFormatT<C> *XMLSheetCellsT<C>::cellFormat(int row, int col) {
    Styles<C> &styles = _book->styles();
    if (const c_cell *cell = find(row, col)) return styles.formatByIndex(cell->get_s());
    if (unsigned(row) < 1048576u)
        if (binding::c_row_data *r = _store.findRow(uint32_t(row)))
            if (binding::c_row(r).isset_s()) return styles.formatByIndex(binding::c_row(r).get_s());
    binding::c_worksheet ws(&_doc.root());
    if (ws.isset_cols()) {
        binding::c_cols cols = ws.get_cols();
        const uint32_t one = uint32_t(col) + 1;
        for (size_t i = 0; i < cols.size_col(); ++i) {
            binding::c_col c = cols.get_col(i);
            if (c.get_min() <= one && one <= c.get_max() && c.isset_style())
                return styles.formatByIndex(c.get_style());
        }
    }
    if (IFormatT<C> *f = styles.formatByIndex(0)) return f;
    throw tberror("formats are not found");
}

template <class C> bool XMLSheetCellsT<C>::isDate(int row, int col) {
    const c_cell *cell = find(row, col);
    if (!cell || cellType(row, col) != CELLTYPE_NUMBER) return false;
    return _book->styles().isDate(cell->get_s());
}

template class XMLSheetCellsT<char>;
template class XMLSheetCellsT<wchar_t>;

} // namespace tabrix
