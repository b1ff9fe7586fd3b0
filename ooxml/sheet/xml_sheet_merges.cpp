// Merged ranges of an Open XML sheet: the mergeCells list, one `ref` each.
#include "book/tberror.h"
#include "ooxml/binding/parts/worksheet_facades.h"
#include "ooxml/sheet/sheet_limits.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

namespace {

// The index of the first merge holding the cell, -1 when none; `rect` gets it.
int findMerge(binding::c_worksheet sheet, int row, int col, CellRect &rect) {
    if (!sheet.isset_mergeCells()) return -1;
    binding::c_merge_cells merges = sheet.get_mergeCells();
    for (size_t i = 0; i < merges.size_mergeCell(); ++i) {
        if (!parseRect(merges.get_mergeCell(i).get_ref(), rect)) continue;
        if (rect.rows.first <= row && row <= rect.rows.last && rect.cols.first <= col &&
            col <= rect.cols.last)
            return int(i);
    }
    return -1;
}

void setOut(int *out, int value) {
    if (out) *out = value;
}

} // namespace

template <class C>
bool XMLSheetImplT<C>::getMerge(int row, int col, int *rowFirst, int *rowLast, int *colFirst,
                                int *colLast) {
    CellRect rect{};
    if (findMerge(binding::c_worksheet(&this->document().root()), row, col, rect) < 0)
        throw tberror("this cell isn't in merging block");
    setOut(rowFirst, rect.rows.first);
    setOut(rowLast, rect.rows.last);
    setOut(colFirst, rect.cols.first);
    setOut(colLast, rect.cols.last);
    return true;
}

template <class C>
bool XMLSheetImplT<C>::setMerge(int rowFirst, int rowLast, int colFirst, int colLast) {
    if (colFirst >= kXmlCols || colLast >= kXmlCols) throw tberror("col must be less than 16384");
    if (rowLast < rowFirst) throw tberror("rowLast must be greater than or equal to rowFirst");
    if (colLast < colFirst) throw tberror("colLast must be greater than or equal to colFirst");
    checkXmlRow(rowFirst);
    checkXmlRow(rowLast);
    checkXmlCol(colFirst);
    binding::c_merge_cells merges = binding::c_worksheet(&this->document().root()).get_mergeCells();
    merges.append_mergeCell().set_ref(makeRef(rowFirst, colFirst, rowLast, colLast));
    merges.set_count(uint32_t(merges.size_mergeCell()));

    // The first cell's format covers the whole block.
    binding::c_row first = findRow(rowFirst);
    bool styled = false;
    for (size_t i = 0; first && i < first.size_c(); ++i)
        if (int(first.get_c(i).col()) == colFirst) styled = first.get_c(i).isset_s();
    if (styled) {
        IFormatT<C> *format = XMLSheetCellsT<C>::cellFormat(rowFirst, colFirst);
        for (int r = rowFirst; r <= rowLast; ++r)
            for (int c = colFirst; c <= colLast; ++c)
                if (r != rowFirst || c != colFirst) XMLSheetCellsT<C>::setCellFormat(r, c, format);
    }
    this->markDimensionsStale();
    return true;
}

template <class C> bool XMLSheetImplT<C>::delMerge(int row, int col) {
    binding::c_worksheet sheet(&this->document().root());
    CellRect rect{};
    const int at = findMerge(sheet, row, col, rect);
    if (at < 0) throw tberror("this cell isn't in merging block");
    binding::c_merge_cells merges = sheet.get_mergeCells();
    merges.delete_mergeCell(size_t(at));
    if (merges.size_mergeCell() == 0)
        sheet.unset_mergeCells();
    else
        merges.set_count(uint32_t(merges.size_mergeCell()));
    return true;
}

template <class C>
void XMLSheetImplT<C>::moveMerges(
    const std::function<std::vector<CellRect>(const CellRect &)> &move) {
    binding::c_worksheet sheet(&this->document().root());
    if (!sheet.isset_mergeCells()) return;
    binding::c_merge_cells merges = sheet.get_mergeCells();
    std::vector<std::string> refs;
    for (size_t i = 0; i < merges.size_mergeCell(); ++i) {
        const std::string_view ref = merges.get_mergeCell(i).get_ref();
        CellRect rect{};
        if (!parseRect(ref, rect)) {
            refs.emplace_back(ref); // kept as it was
            continue;
        }
        for (const CellRect &r : move(rect))
            if (r.rows.last < kXmlRows && r.cols.last < kXmlCols)
                refs.push_back(makeRef(r.rows.first, r.cols.first, r.rows.last, r.cols.last));
    }
    while (merges.size_mergeCell() > 0) merges.delete_mergeCell(merges.size_mergeCell() - 1);
    if (refs.empty()) {
        sheet.unset_mergeCells();
        return;
    }
    for (std::string &ref : refs) merges.append_mergeCell().set_ref(std::move(ref));
    merges.set_count(uint32_t(refs.size()));
}

#define TABRIX_XML_SHEET_MERGES(C)                                                                 \
    template bool XMLSheetImplT<C>::getMerge(int, int, int *, int *, int *, int *);                \
    template bool XMLSheetImplT<C>::setMerge(int, int, int, int);                                  \
    template bool XMLSheetImplT<C>::delMerge(int, int);                                            \
    template void XMLSheetImplT<C>::moveMerges(                                                    \
        const std::function<std::vector<CellRect>(const CellRect &)> &);
TABRIX_XML_SHEET_MERGES(char)
TABRIX_XML_SHEET_MERGES(wchar_t)
#undef TABRIX_XML_SHEET_MERGES

} // namespace tabrix
