// The first sheet view of an Open XML sheet: frozen panes, top-left cell,
// zoom, gridlines and direction.
#include "book/excel_util.h"
#include "book/encoding.h"
#include "ooxml/binding/parts/worksheet_setup_facades.h"
#include "ooxml/sheet/sheet_limits.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

namespace {

std::string address(int row, int col) {
    std::string text;
    binding::append_cell_ref(text, uint32_t(row), uint32_t(col));
    return text;
}

} // namespace

template <class C> binding::c_node &XMLSheetImplT<C>::firstView() {
    binding::c_sheet_views views = binding::c_worksheet(&this->document().root()).get_sheetViews();
    if (views.size_sheetView() == 0) views.append_sheetView().set_workbookViewId(0);
    return *views.get_sheetView(0).node();
}

template <class C> const binding::c_node *XMLSheetImplT<C>::firstViewIfAny() {
    const binding::c_node *views = this->document().root().child("sheetViews");
    return views ? views->child("sheetView") : nullptr;
}

// Only frozen panes are made: the rows above and the columns left of the
// cell stay in place.
template <class C> void XMLSheetImplT<C>::split(int row, int col) {
    checkXmlRow(row);
    checkXmlCol(col);
    binding::c_pane pane = binding::c_sheet_view_setup(&firstView()).get_pane();
    pane.set_topLeftCell(address(row, col));
    if (col > 0)
        pane.set_xSplit(col);
    else
        pane.unset_xSplit();
    if (row > 0)
        pane.set_ySplit(row);
    else
        pane.unset_ySplit();
    pane.set_activePane("bottomRight");
    pane.set_state("frozenSplit");
}

template <class C> void XMLSheetImplT<C>::getTopLeftView(int *row, int *col) {
    int r = 0, c = 0;
    if (const binding::c_node *view = firstViewIfAny()) {
        uint32_t pr = 0, pc = 0;
        if (binding::parse_cell_ref(view->attribute_or_default("topLeftCell"), pr, pc)) {
            r = int(pr);
            c = int(pc);
        }
    }
    if (row) *row = r;
    if (col) *col = c;
}

template <class C> void XMLSheetImplT<C>::setTopLeftView(int row, int col) {
    checkXmlCol(col);
    checkXmlRow(row);
    binding::c_sheet_view_setup(&firstView()).set_topLeftCell(address(row, col));
}

template <class C> bool XMLSheetImplT<C>::rightToLeft() {
    const binding::c_node *view = firstViewIfAny();
    return view &&
           binding::c_sheet_view_setup(const_cast<binding::c_node *>(view)).get_rightToLeft();
}

template <class C> void XMLSheetImplT<C>::setRightToLeft(bool rightToLeft) {
    binding::c_sheet_view_setup view(&firstView());
    if (rightToLeft)
        view.set_rightToLeft(true);
    else
        view.unset_rightToLeft();
}

template <class C> bool XMLSheetImplT<C>::displayGridlines() {
    const binding::c_node *view = firstViewIfAny();
    binding::c_sheet_view_setup v(const_cast<binding::c_node *>(view));
    return !view || !v.isset_showGridLines() || v.get_showGridLines();
}

template <class C> void XMLSheetImplT<C>::setDisplayGridlines(bool show) {
    binding::c_sheet_view_setup view(&firstView());
    if (show)
        view.unset_showGridLines();
    else
        view.set_showGridLines(false);
}

template <class C> int XMLSheetImplT<C>::zoom() {
    const binding::c_node *view = firstViewIfAny();
    binding::c_sheet_view_setup v(const_cast<binding::c_node *>(view));
    return view && v.isset_zoomScale() ? int(v.get_zoomScale()) : 100;
}

template <class C> void XMLSheetImplT<C>::setZoom(int zoom) {
    binding::c_sheet_view_setup view(&firstView());
    view.set_zoomScale(uint32_t(zoom));
    view.set_zoomScaleNormal(uint32_t(zoom));
}

#define TABRIX_XML_SHEET_VIEW(C)                                                                   \
    template binding::c_node &XMLSheetImplT<C>::firstView();                                       \
    template const binding::c_node *XMLSheetImplT<C>::firstViewIfAny();                            \
    template void XMLSheetImplT<C>::split(int, int);                                               \
    template void XMLSheetImplT<C>::getTopLeftView(int *, int *);                                  \
    template void XMLSheetImplT<C>::setTopLeftView(int, int);                                      \
    template bool XMLSheetImplT<C>::rightToLeft();                                                 \
    template void XMLSheetImplT<C>::setRightToLeft(bool);                                          \
    template bool XMLSheetImplT<C>::displayGridlines();                                            \
    template void XMLSheetImplT<C>::setDisplayGridlines(bool);                                     \
    template int XMLSheetImplT<C>::zoom();                                                         \
    template void XMLSheetImplT<C>::setZoom(int);
TABRIX_XML_SHEET_VIEW(char)
TABRIX_XML_SHEET_VIEW(wchar_t)
#undef TABRIX_XML_SHEET_VIEW

} // namespace tabrix
