// Column ranges and row properties of an Open XML sheet, and outline groups.
#include "book/units.h"
#include "ooxml/binding/parts/worksheet_setup_facades.h"
#include "ooxml/sheet/col_ranges.h"
#include "ooxml/sheet/sheet_limits.h"
#include "ooxml/sheet/xml_sheet_impl.h"
#include "ooxml/styles/styles.h"

#include <cmath>

namespace tabrix {

namespace {

binding::c_node &firstCols(binding::c_node &root) {
    binding::c_node *cols = root.child("cols");
    return cols ? *cols : *root.append("cols");
}

// The width of a column no `col` covers, in pixels.
int defaultWidthPx(binding::c_node &root, int w) {
    binding::c_node *pr = root.child("sheetFormatPr");
    binding::c_sheet_format_pr format(pr);
    if (pr && format.isset_defaultColWidth())
        return ExcelUnitsConverter::xmlWidthToPx(format.get_defaultColWidth(), w);
    const int base = pr && format.isset_baseColWidth() ? int(format.get_baseColWidth()) : 8;
    return ExcelUnitsConverter::defaultColWidthPx(base, w);
}

} // namespace

// Rows go through the cell store: a binary search, and its index stays true.
template <class C> binding::c_row XMLSheetImplT<C>::findRow(int row) {
    if (row < 0 || row >= kXmlRows) return binding::c_row();
    return binding::c_row(this->cellStore().findRow(uint32_t(row)));
}

template <class C> binding::c_row XMLSheetImplT<C>::overwriteRow(int row) {
    checkXmlRow(row);
    return binding::c_row(&this->cellStore().overwriteRow(uint32_t(row)));
}

template <class C>
std::vector<binding::c_node *> XMLSheetImplT<C>::overwriteCols(int first, int last) {
    const int w = this->book().styles().maxDigWidth();
    const double width =
        std::floor(defaultWidthPx(this->document().root(), w) * 256.0 / (w > 0 ? w : 1)) / 256.0;
    return tabrix::overwriteCols(firstCols(this->document().root()), first + 1, last + 1, width);
}

template <class C> double XMLSheetImplT<C>::colWidth(int col) {
    checkXmlCol(col);
    const int w = this->book().styles().maxDigWidth();
    binding::c_node &root = this->document().root();
    int px = defaultWidthPx(root, w);
    for (size_t i = 0, n = root.count("cols"); i < n; ++i) {
        binding::c_col c(colCovering(*root.child("cols", i), col + 1));
        if (c && c.isset_width()) {
            px = ExcelUnitsConverter::xmlWidthToPx(c.get_width(), w);
            break;
        }
    }
    return ExcelUnitsConverter::pxToNumChars(px, w);
}

template <class C> bool XMLSheetImplT<C>::colHidden(int col) {
    checkXmlCol(col);
    binding::c_node &root = this->document().root();
    for (size_t i = 0, n = root.count("cols"); i < n; ++i)
        if (binding::c_col c{colCovering(*root.child("cols", i), col + 1)}) return c.get_hidden();
    return false;
}

template <class C>
bool XMLSheetImplT<C>::setCol(int colFirst, int colLast, double width, IFormatT<C> *format,
                              bool hidden) {
    if (colFirst >= kXmlCols || colLast >= kXmlCols) throw tberror("col must be less than 16384");
    if (colLast < colFirst) throw tberror("colLast must be greater than or equal to colFirst");
    checkXmlCol(colFirst);
    const int w = this->book().styles().maxDigWidth();
    const uint32_t style = format ? this->book().styles().getStyleID(format) : 0;
    for (binding::c_node *node : overwriteCols(colFirst, colLast)) {
        binding::c_col c(node);
        c.set_width(ExcelUnitsConverter::numCharsToXmlWidth(width, w));
        c.set_customWidth(true);
        if (format) c.set_style(style);
        if (hidden)
            c.set_hidden(true);
        else
            c.unset_hidden();
    }
    return true;
}

template <class C> bool XMLSheetImplT<C>::setColHidden(int col, bool hidden) {
    checkXmlCol(col);
    binding::c_col c(overwriteCols(col, col).front());
    if (hidden)
        c.set_hidden(true);
    else
        c.unset_hidden();
    return true;
}

template <class C> double XMLSheetImplT<C>::rowHeight(int row) {
    checkXmlRow(row);
    binding::c_row r = findRow(row);
    if (r && r.isset_ht()) return r.get_ht();
    binding::c_sheet_format_pr format(this->document().root().child("sheetFormatPr"));
    if (format && format.isset_defaultRowHeight()) return format.get_defaultRowHeight();
    return 15.0;
}

template <class C>
bool XMLSheetImplT<C>::setRow(int row, double height, IFormatT<C> *format, bool hidden) {
    binding::c_row r = overwriteRow(row);
    r.set_ht(height);
    r.set_customHeight(true);
    if (format) {
        r.set_s(this->book().styles().getStyleID(format));
        r.set_customFormat(true);
    }
    if (hidden)
        r.set_hidden(true);
    else
        r.unset_hidden();
    return true;
}

template <class C> bool XMLSheetImplT<C>::rowHidden(int row) {
    checkXmlRow(row);
    binding::c_row r = findRow(row);
    return r && r.get_hidden();
}

template <class C> bool XMLSheetImplT<C>::setRowHidden(int row, bool hidden) {
    binding::c_row r = overwriteRow(row);
    if (hidden)
        r.set_hidden(true);
    else
        r.unset_hidden();
    return true;
}

// Every line of a group goes one outline level deeper; the lines of one
// call must end at the same level, or the group overlaps another partly.
template <class C> bool XMLSheetImplT<C>::groupRows(int rowFirst, int rowLast, bool collapsed) {
    if (rowFirst > rowLast) throw tberror("must be rowFirst <= rowLast");
    checkXmlRow(rowFirst);
    checkXmlRow(rowLast);
    uint32_t level = 0;
    for (int row = rowFirst; row <= rowLast; ++row) {
        binding::c_row r = overwriteRow(row);
        const uint32_t next = r.get_outlineLevel() + 1;
        if (row > rowFirst && next != level) throw tberror("detect overlap");
        level = next;
        r.set_outlineLevel(next);
        if (collapsed) r.set_hidden(true);
    }
    if (collapsed && rowLast + 1 < kXmlRows) overwriteRow(rowLast + 1).set_collapsed(true);
    return true;
}

template <class C> bool XMLSheetImplT<C>::groupCols(int colFirst, int colLast, bool collapsed) {
    if (colFirst > colLast) throw tberror("must be colFirst <= colLast");
    checkXmlCol(colFirst);
    checkXmlCol(colLast);
    uint32_t level = 0;
    for (int col = colFirst; col <= colLast; ++col) {
        binding::c_col c(overwriteCols(col, col).front());
        const uint32_t next = c.get_outlineLevel() + 1;
        if (col > colFirst && next != level) throw tberror("detect overlap");
        level = next;
        c.set_outlineLevel(next);
        if (collapsed) c.set_hidden(true);
    }
    if (collapsed && colLast + 1 < kXmlCols)
        binding::c_col(overwriteCols(colLast + 1, colLast + 1).front()).set_collapsed(true);
    return true;
}

namespace {

binding::c_outline_pr outlinePr(binding::c_node &root) {
    return binding::c_worksheet_setup(&root).get_sheetPr().get_outlinePr();
}

bool outlineFlag(binding::c_node &root, bool below) {
    const binding::c_node *pr = root.child("sheetPr");
    const binding::c_node *outline = pr ? pr->child("outlinePr") : nullptr;
    if (!outline) return true;
    binding::c_outline_pr o(const_cast<binding::c_node *>(outline));
    if (below) return !o.isset_summaryBelow() || o.get_summaryBelow();
    return !o.isset_summaryRight() || o.get_summaryRight();
}

} // namespace

template <class C> bool XMLSheetImplT<C>::groupSummaryBelow() {
    return outlineFlag(this->document().root(), true);
}
template <class C> void XMLSheetImplT<C>::setGroupSummaryBelow(bool below) {
    outlinePr(this->document().root()).set_summaryBelow(below);
}
template <class C> bool XMLSheetImplT<C>::groupSummaryRight() {
    return outlineFlag(this->document().root(), false);
}
template <class C> void XMLSheetImplT<C>::setGroupSummaryRight(bool right) {
    outlinePr(this->document().root()).set_summaryRight(right);
}

#define TABRIX_XML_SHEET_ROWS_COLS(C)                                                              \
    template binding::c_row XMLSheetImplT<C>::findRow(int);                                        \
    template binding::c_row XMLSheetImplT<C>::overwriteRow(int);                                   \
    template std::vector<binding::c_node *> XMLSheetImplT<C>::overwriteCols(int, int);             \
    template double XMLSheetImplT<C>::colWidth(int);                                               \
    template bool XMLSheetImplT<C>::colHidden(int);                                                \
    template bool XMLSheetImplT<C>::setCol(int, int, double, IFormatT<C> *, bool);                 \
    template bool XMLSheetImplT<C>::setColHidden(int, bool);                                       \
    template double XMLSheetImplT<C>::rowHeight(int);                                              \
    template bool XMLSheetImplT<C>::setRow(int, double, IFormatT<C> *, bool);                      \
    template bool XMLSheetImplT<C>::rowHidden(int);                                                \
    template bool XMLSheetImplT<C>::setRowHidden(int, bool);                                       \
    template bool XMLSheetImplT<C>::groupRows(int, int, bool);                                     \
    template bool XMLSheetImplT<C>::groupCols(int, int, bool);                                     \
    template bool XMLSheetImplT<C>::groupSummaryBelow();                                           \
    template void XMLSheetImplT<C>::setGroupSummaryBelow(bool);                                    \
    template bool XMLSheetImplT<C>::groupSummaryRight();                                           \
    template void XMLSheetImplT<C>::setGroupSummaryRight(bool);
TABRIX_XML_SHEET_ROWS_COLS(char)
TABRIX_XML_SHEET_ROWS_COLS(wchar_t)
#undef TABRIX_XML_SHEET_ROWS_COLS

} // namespace tabrix
