// Printout settings of an Open XML sheet: page breaks, page setup, margins,
// header and footer, print options; and sheet protection.  An element is
// made on the first change that needs it; an absent one answers defaults.
#include "book/text_result.h"
#include "ooxml/binding/parts/worksheet_setup_facades.h"
#include "ooxml/sheet/sheet_limits.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

namespace {

const char *const kMarginNames[] = {"left", "right", "top", "bottom", "header", "footer"};
const double kMarginDefaults[] = {0.7, 0.7, 0.75, 0.75, 0.3, 0.3};

double marginDefault(const char *which) {
    for (size_t i = 0; i < 6; ++i)
        if (std::string_view(which) == kMarginNames[i]) return kMarginDefaults[i];
    return 0.0;
}

binding::c_worksheet_setup setupOf(binding::c_node &root) {
    return binding::c_worksheet_setup(&root);
}

const binding::c_node *childOf(binding::c_node &root, const char *name) { return root.child(name); }

bool flagOf(binding::c_node &root, const char *element, const char *attribute) {
    const binding::c_node *e = childOf(root, element);
    const std::string_view v = e ? e->attribute_or_default(attribute) : std::string_view();
    return v == "1" || v == "true";
}

void setFlag(binding::c_node &root, const char *element, const char *attribute, bool on) {
    binding::c_node *e = root.child(element);
    if (!e) e = root.append(element);
    e->set_attribute(attribute, on ? "1" : "0");
}

binding::c_page_setup pageSetup(binding::c_node &root) {
    return binding::c_worksheet(&root).get_pageSetup();
}

} // namespace

// ---- page breaks ----

template <class C> bool XMLSheetImplT<C>::setPageBreak(const char *list, int id, int max) {
    binding::c_node &root = this->document().root();
    binding::c_page_breaks breaks(root.child(list) ? root.child(list) : root.append(list));
    binding::c_break entry;
    for (size_t i = 0; i < breaks.size_brk() && !entry; ++i)
        if (breaks.get_brk(i).isset_id() && breaks.get_brk(i).get_id() == uint32_t(id))
            entry = breaks.get_brk(i);
    if (!entry) entry = breaks.append_brk();
    entry.set_id(uint32_t(id));
    entry.set_max(uint32_t(max));
    entry.set_man(true);
    breaks.set_count(uint32_t(breaks.size_brk()));
    breaks.set_manualBreakCount(uint32_t(breaks.size_brk()));
    return true;
}

template <class C> void XMLSheetImplT<C>::delPageBreak(const char *list, int id) {
    binding::c_node &root = this->document().root();
    binding::c_page_breaks breaks(root.child(list));
    for (size_t i = 0; breaks && i < breaks.size_brk(); ++i) {
        if (!breaks.get_brk(i).isset_id() || breaks.get_brk(i).get_id() != uint32_t(id)) continue;
        breaks.delete_brk(i);
        if (breaks.size_brk() == 0) {
            root.remove(list, 0);
        } else {
            breaks.set_count(uint32_t(breaks.size_brk()));
            breaks.set_manualBreakCount(uint32_t(breaks.size_brk()));
        }
        return;
    }
    throw tberror("pagebreak not found");
}

template <class C> int XMLSheetImplT<C>::pageBreak(const char *list, int index) {
    binding::c_page_breaks breaks(this->document().root().child(list));
    if (!breaks || index < 0 || size_t(index) >= breaks.size_brk()) {
        frameMessage().assign(kXmlIndexOutOfRange);
        return -1;
    }
    binding::c_break entry = breaks.get_brk(size_t(index));
    if (!entry.isset_id()) {
        frameMessage().assign("c_CT_Break without id");
        return -1;
    }
    return int(entry.get_id());
}

template <class C> int XMLSheetImplT<C>::getHorPageBreak(int index) {
    return pageBreak("rowBreaks", index);
}
template <class C> int XMLSheetImplT<C>::getVerPageBreak(int index) {
    return pageBreak("colBreaks", index);
}
template <class C> int XMLSheetImplT<C>::getHorPageBreakSize() {
    const binding::c_node *list = this->document().root().child("rowBreaks");
    return list ? int(list->count("brk")) : 0;
}
template <class C> int XMLSheetImplT<C>::getVerPageBreakSize() {
    const binding::c_node *list = this->document().root().child("colBreaks");
    return list ? int(list->count("brk")) : 0;
}

template <class C> bool XMLSheetImplT<C>::setHorPageBreak(int row, bool pageBreak) {
    checkXmlRow(row);
    if (pageBreak) return setPageBreak("rowBreaks", row, kXmlCols - 1);
    delPageBreak("rowBreaks", row);
    return true;
}

template <class C> bool XMLSheetImplT<C>::setVerPageBreak(int col, bool pageBreak) {
    checkXmlCol(col);
    if (pageBreak) return setPageBreak("colBreaks", col, kXmlRows - 1);
    delPageBreak("colBreaks", col);
    return true;
}

// ---- page setup ----

template <class C> int XMLSheetImplT<C>::printZoom() {
    binding::c_page_setup setup(this->document().root().child("pageSetup"));
    return setup && setup.isset_scale() ? int(setup.get_scale()) : 100;
}
template <class C> void XMLSheetImplT<C>::setPrintZoom(int zoom) {
    pageSetup(this->document().root()).set_scale(uint32_t(zoom));
}

template <class C> bool XMLSheetImplT<C>::getPrintFit(int *wPages, int *hPages) {
    binding::c_node &root = this->document().root();
    binding::c_page_setup setup(root.child("pageSetup"));
    if (wPages) *wPages = setup && setup.isset_fitToWidth() ? int(setup.get_fitToWidth()) : 1;
    if (hPages) *hPages = setup && setup.isset_fitToHeight() ? int(setup.get_fitToHeight()) : 1;
    const binding::c_node *pr = root.child("sheetPr");
    const binding::c_node *fit = pr ? pr->child("pageSetUpPr") : nullptr;
    return fit && binding::c_page_setup_pr(const_cast<binding::c_node *>(fit)).get_fitToPage();
}

template <class C> void XMLSheetImplT<C>::setPrintFit(int wPages, int hPages) {
    binding::c_node &root = this->document().root();
    binding::c_page_setup setup = pageSetup(root);
    setup.set_fitToWidth(uint32_t(wPages));
    setup.set_fitToHeight(uint32_t(hPages));
    setupOf(root).get_sheetPr().get_pageSetUpPr().set_fitToPage(true);
}

template <class C> bool XMLSheetImplT<C>::landscape() {
    binding::c_page_setup setup(this->document().root().child("pageSetup"));
    return setup && setup.get_orientation_text() == "landscape";
}
template <class C> void XMLSheetImplT<C>::setLandscape(bool landscape) {
    pageSetup(this->document().root()).set_orientation_text(landscape ? "landscape" : "portrait");
}

template <class C> Paper XMLSheetImplT<C>::paper() {
    binding::c_page_setup setup(this->document().root().child("pageSetup"));
    return Paper(setup && setup.isset_paperSize() ? int(setup.get_paperSize()) : 0);
}
template <class C> void XMLSheetImplT<C>::setPaper(Paper paper) {
    pageSetup(this->document().root()).set_paperSize(uint32_t(paper));
}

// ---- margins ----

template <class C> binding::c_node &XMLSheetImplT<C>::pageMargins() {
    binding::c_node &root = this->document().root();
    if (binding::c_node *m = root.child("pageMargins")) return *m;
    binding::c_page_margins made = setupOf(root).get_pageMargins();
    for (const char *which : kMarginNames) {
        std::string text;
        lmx::output_convert_to_xml(text, marginDefault(which));
        made.node()->set_attribute(which, text);
    }
    return *made.node();
}

template <class C> double XMLSheetImplT<C>::margin(const char *which) {
    const binding::c_node *m = this->document().root().child("pageMargins");
    if (!m || !m->attribute(which)) return marginDefault(which);
    return std::strtod(m->attribute(which)->c_str(), nullptr);
}

template <class C> void XMLSheetImplT<C>::setMargin(const char *which, double value) {
    std::string text;
    lmx::output_convert_to_xml(text, value);
    pageMargins().set_attribute(which, text);
}

template <class C> double XMLSheetImplT<C>::marginLeft() { return margin("left"); }
template <class C> double XMLSheetImplT<C>::marginRight() { return margin("right"); }
template <class C> double XMLSheetImplT<C>::marginTop() { return margin("top"); }
template <class C> double XMLSheetImplT<C>::marginBottom() { return margin("bottom"); }
template <class C> double XMLSheetImplT<C>::headerMargin() { return margin("header"); }
template <class C> double XMLSheetImplT<C>::footerMargin() { return margin("footer"); }
template <class C> void XMLSheetImplT<C>::setMarginLeft(double m) { setMargin("left", m); }
template <class C> void XMLSheetImplT<C>::setMarginRight(double m) { setMargin("right", m); }
template <class C> void XMLSheetImplT<C>::setMarginTop(double m) { setMargin("top", m); }
template <class C> void XMLSheetImplT<C>::setMarginBottom(double m) { setMargin("bottom", m); }

// ---- header and footer ----

template <class C> const C *XMLSheetImplT<C>::headerText(const char *which) {
    const binding::c_node *hf = this->document().root().child("headerFooter");
    const std::string utf8 =
        hf ? binding::c_header_footer(const_cast<binding::c_node *>(hf)).get_text(which) : "";
    std::wstring wide;
    utf8ToWide(utf8.c_str(), wide);
    return result(wide);
}

template <class C> void XMLSheetImplT<C>::setHeaderText(const char *which, const C *text) {
    std::wstring wide;
    wideText(text, this->book().utf8Mode(), wide);
    std::string utf8;
    wideToUtf8(wide.c_str(), utf8);
    setupOf(this->document().root()).get_headerFooter().set_text(which, std::move(utf8));
}

template <class C> const C *XMLSheetImplT<C>::header() { return headerText("oddHeader"); }
template <class C> const C *XMLSheetImplT<C>::footer() { return headerText("oddFooter"); }

template <class C> bool XMLSheetImplT<C>::setHeader(const C *header, double margin) {
    setHeaderText("oddHeader", header);
    setMargin("header", margin);
    return true;
}

template <class C> bool XMLSheetImplT<C>::setFooter(const C *footer, double margin) {
    setHeaderText("oddFooter", footer);
    setMargin("footer", margin);
    return true;
}

// ---- print options and protection ----

template <class C> bool XMLSheetImplT<C>::printGridlines() {
    return flagOf(this->document().root(), "printOptions", "gridLines");
}
template <class C> void XMLSheetImplT<C>::setPrintGridlines(bool print) {
    setFlag(this->document().root(), "printOptions", "gridLines", print);
}
template <class C> bool XMLSheetImplT<C>::printRowCol() {
    return flagOf(this->document().root(), "printOptions", "headings");
}
template <class C> void XMLSheetImplT<C>::setPrintRowCol(bool print) {
    setFlag(this->document().root(), "printOptions", "headings", print);
}
template <class C> bool XMLSheetImplT<C>::hCenter() {
    return flagOf(this->document().root(), "printOptions", "horizontalCentered");
}
template <class C> void XMLSheetImplT<C>::setHCenter(bool center) {
    setFlag(this->document().root(), "printOptions", "horizontalCentered", center);
}
template <class C> bool XMLSheetImplT<C>::vCenter() {
    return flagOf(this->document().root(), "printOptions", "verticalCentered");
}
template <class C> void XMLSheetImplT<C>::setVCenter(bool center) {
    setFlag(this->document().root(), "printOptions", "verticalCentered", center);
}

template <class C> bool XMLSheetImplT<C>::protect() {
    return flagOf(this->document().root(), "sheetProtection", "sheet");
}

// No password is kept: the flags alone.
template <class C> void XMLSheetImplT<C>::setProtect(bool protect) {
    binding::c_node &root = this->document().root();
    if (!root.child("sheetProtection") && !protect) return;
    binding::c_sheet_protection p = setupOf(root).get_sheetProtection();
    p.set_sheet(protect);
    p.set_objects(protect);
    p.set_scenarios(protect);
}

template <class C> const C *XMLSheetImplT<C>::readComment(int, int) {
    throw tberror("not supported");
}
template <class C> void XMLSheetImplT<C>::writeComment(int, int, const C *, const C *, int, int) {
    throw tberror("not supported");
}

template <class C> const C *XMLSheetImplT<C>::result(const std::wstring &text) {
    return textResult<C>(_text, frameMessage(), text.c_str(), this->book().utf8Mode());
}

#define TABRIX_XML_SHEET_SETUP(C)                                                                  \
    template bool XMLSheetImplT<C>::setPageBreak(const char *, int, int);                          \
    template void XMLSheetImplT<C>::delPageBreak(const char *, int);                               \
    template int XMLSheetImplT<C>::pageBreak(const char *, int);                                   \
    template int XMLSheetImplT<C>::getHorPageBreak(int);                                           \
    template int XMLSheetImplT<C>::getVerPageBreak(int);                                           \
    template int XMLSheetImplT<C>::getHorPageBreakSize();                                          \
    template int XMLSheetImplT<C>::getVerPageBreakSize();                                          \
    template bool XMLSheetImplT<C>::setHorPageBreak(int, bool);                                    \
    template bool XMLSheetImplT<C>::setVerPageBreak(int, bool);                                    \
    template int XMLSheetImplT<C>::printZoom();                                                    \
    template void XMLSheetImplT<C>::setPrintZoom(int);                                             \
    template bool XMLSheetImplT<C>::getPrintFit(int *, int *);                                     \
    template void XMLSheetImplT<C>::setPrintFit(int, int);                                         \
    template bool XMLSheetImplT<C>::landscape();                                                   \
    template void XMLSheetImplT<C>::setLandscape(bool);                                            \
    template Paper XMLSheetImplT<C>::paper();                                                      \
    template void XMLSheetImplT<C>::setPaper(Paper);                                               \
    template binding::c_node &XMLSheetImplT<C>::pageMargins();                                     \
    template double XMLSheetImplT<C>::margin(const char *);                                        \
    template void XMLSheetImplT<C>::setMargin(const char *, double);                               \
    template double XMLSheetImplT<C>::marginLeft();                                                \
    template double XMLSheetImplT<C>::marginRight();                                               \
    template double XMLSheetImplT<C>::marginTop();                                                 \
    template double XMLSheetImplT<C>::marginBottom();                                              \
    template double XMLSheetImplT<C>::headerMargin();                                              \
    template double XMLSheetImplT<C>::footerMargin();                                              \
    template void XMLSheetImplT<C>::setMarginLeft(double);                                         \
    template void XMLSheetImplT<C>::setMarginRight(double);                                        \
    template void XMLSheetImplT<C>::setMarginTop(double);                                          \
    template void XMLSheetImplT<C>::setMarginBottom(double);                                       \
    template const C *XMLSheetImplT<C>::headerText(const char *);                                  \
    template void XMLSheetImplT<C>::setHeaderText(const char *, const C *);                        \
    template const C *XMLSheetImplT<C>::header();                                                  \
    template const C *XMLSheetImplT<C>::footer();                                                  \
    template bool XMLSheetImplT<C>::setHeader(const C *, double);                                  \
    template bool XMLSheetImplT<C>::setFooter(const C *, double);                                  \
    template bool XMLSheetImplT<C>::printGridlines();                                              \
    template void XMLSheetImplT<C>::setPrintGridlines(bool);                                       \
    template bool XMLSheetImplT<C>::printRowCol();                                                 \
    template void XMLSheetImplT<C>::setPrintRowCol(bool);                                          \
    template bool XMLSheetImplT<C>::hCenter();                                                     \
    template void XMLSheetImplT<C>::setHCenter(bool);                                              \
    template bool XMLSheetImplT<C>::vCenter();                                                     \
    template void XMLSheetImplT<C>::setVCenter(bool);                                              \
    template bool XMLSheetImplT<C>::protect();                                                     \
    template void XMLSheetImplT<C>::setProtect(bool);                                              \
    template const C *XMLSheetImplT<C>::readComment(int, int);                                     \
    template void XMLSheetImplT<C>::writeComment(int, int, const C *, const C *, int, int);        \
    template const C *XMLSheetImplT<C>::result(const std::wstring &);
TABRIX_XML_SHEET_SETUP(char)
TABRIX_XML_SHEET_SETUP(wchar_t)
#undef TABRIX_XML_SHEET_SETUP

} // namespace tabrix
