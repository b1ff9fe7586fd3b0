#include "ooxml/styles/xml_format_impl.h"

#include <string>

#include "book/failure_frame.h"
#include "book/tberror.h"
#include "book/xstring.h"
#include "ooxml/styles/style_names.h"

namespace tabrix {

using namespace binding;

namespace {

// The entry `id` of a list element, or null when there is none.
c_node *entry(c_node &root, const char *list, const char *item, uint32_t id) {
    c_node *l = root.child(list);
    return l && id < l->count(item) ? l->child(item, id) : nullptr;
}

// Appends a copy of `model` (or a blank entry) to a list, recounts it and
// answers the new entry and its index.
c_node *appendEntry(c_node &root, const char *list, const char *item, const c_node *model,
                    uint32_t &index) {
    c_node *l = root.child(list);
    if (!l) {
        // Entry 0 is what formats without an entry of their own show: a
        // new list starts with a blank one.
        l = root.append(list);
        l->append(item);
    }
    c_node *e = l->append(item);
    if (model) *e = *model;
    index = static_cast<uint32_t>(l->count(item) - 1);
    l->set_attribute("count", std::to_string(index + 1));
    return e;
}

// Strict books name the left and right sides by the reading direction;
// Transitional books may use either.
const char *alternateSide(const char *side) {
    const std::string_view s(side);
    return s == "left" ? "start" : s == "right" ? "end" : nullptr;
}

c_node *findSide(c_node *border, const char *side) {
    if (!border) return nullptr;
    if (c_node *s = border->child(side)) return s;
    const char *other = alternateSide(side);
    return other ? border->child(other) : nullptr;
}

c_node *makeSide(c_node *border, const char *side) {
    if (c_node *s = findSide(border, side)) return s;
    return border->append(border->decl_of(side) >= 0 ? side : alternateSide(side));
}

} // namespace

template <class C> const char *const XMLFormatImplT<C>::kLeft = "left";
template <class C> const char *const XMLFormatImplT<C>::kRight = "right";
template <class C> const char *const XMLFormatImplT<C>::kTop = "top";
template <class C> const char *const XMLFormatImplT<C>::kBottom = "bottom";
template <class C> const char *const XMLFormatImplT<C>::kDiagonal = "diagonal";

template <class C>
XMLFormatImplT<C>::XMLFormatImplT(c_node *xf, Styles<C> *styles,
                                  const std::vector<c_node *> &borders,
                                  const std::vector<c_node *> &fills)
    : _xf(xf), _styles(styles) {
    // A non-zero id shares the list's entry with every format of that id;
    // an id past the end of its list leaves the format without one, as if
    // the entry were blank.
    const c_xf f(_xf);
    const uint32_t border = f.get_borderId(), fill = f.get_fillId();
    if (border != 0 && border < borders.size()) _border = borders[border];
    if (fill != 0 && fill < fills.size()) _fill = fills[fill];
}

template <class C> XMLFormatImplT<C>::XMLFormatImplT(Styles<C> *styles) : _styles(styles) {
    c_node &root = _styles->root();
    c_node *xfs = root.child("cellXfs");
    if (!xfs) xfs = root.append("cellXfs");
    _xf = xfs->append("xf");
    xfs->set_attribute("count", std::to_string(xfs->count("xf")));
    c_xf f(_xf);
    f.set_numFmtId(0);
    f.set_fontId(0);
    f.set_fillId(0);
    uint32_t index = 0;
    _border = appendEntry(root, "borders", "border", nullptr, index);
    f.set_borderId(index);
    f.set_xfId(0);
}

template <class C> c_node *XMLFormatImplT<C>::shownBorder() const {
    return _border ? _border
                   : entry(_styles->root(), "borders", "border", c_xf(_xf).get_borderId());
}

template <class C> c_node *XMLFormatImplT<C>::shownFill() const {
    const uint32_t id = c_xf(_xf).get_fillId();
    if (id == 0) return entry(_styles->root(), "fills", "fill", 0);
    return _fill ? _fill : entry(_styles->root(), "fills", "fill", id);
}

template <class C> c_node *XMLFormatImplT<C>::ownBorder() {
    if (!_border) {
        uint32_t index = 0;
        _border = appendEntry(_styles->root(), "borders", "border", shownBorder(), index);
        c_xf(_xf).set_borderId(index);
    }
    return _border;
}

template <class C> c_node *XMLFormatImplT<C>::ownFill() {
    c_xf f(_xf);
    if (!_fill) {
        uint32_t index = 0;
        _fill = appendEntry(_styles->root(), "fills", "fill", nullptr, index);
        _fill->append("patternFill");
        f.set_fillId(index);
    } else if (f.get_fillId() == 0) {
        // Pattern 0 pointed the format at the list's first entry; its own
        // fill comes back into use.
        c_node *fills = _styles->root().child("fills");
        for (size_t i = 0, n = fills ? fills->count("fill") : 0; i < n; ++i)
            if (fills->child("fill", i) == _fill) f.set_fillId(static_cast<uint32_t>(i));
    }
    return _fill;
}

// --- font and number format ---

template <class C> IFontT<C> *XMLFormatImplT<C>::font() {
    const c_xf f(_xf);
    if (!f.isset_fontId()) return nullptr;
    const int n = _styles->fontSize();
    const uint32_t id = f.get_fontId();
    return id < static_cast<uint32_t>(n) ? _styles->font(static_cast<int>(id)) : nullptr;
}

template <class C> bool XMLFormatImplT<C>::setFont(IFontT<C> *font) {
    return guarded(_styles->message(), false, [&] {
        const int index = _styles->fontIndex(font);
        if (index < 0) throw tberror("specified font not found");
        c_xf(_xf).set_fontId(static_cast<uint32_t>(index));
        return true;
    });
}

template <class C> int XMLFormatImplT<C>::numFormat() {
    return static_cast<int>(c_xf(_xf).get_numFmtId());
}

template <class C> void XMLFormatImplT<C>::setNumFormat(int numFormat) {
    c_xf(_xf).set_numFmtId(static_cast<uint32_t>(numFormat));
}

template <class C> const C *XMLFormatImplT<C>::customNumFormat() {
    const int id = numFormat();
    return id > 163 ? _styles->customNumFormat(id) : nullptr;
}

// --- alignment ---

template <class C> AlignH XMLFormatImplT<C>::alignH() {
    const c_node *a = _xf->child("alignment");
    return AlignH(
        a ? stylenames::kAlignH.value(c_alignment(const_cast<c_node *>(a)).get_horizontal_text(), 0)
          : 0);
}

template <class C> void XMLFormatImplT<C>::setAlignH(AlignH align) {
    if (const char *w = stylenames::kAlignH.word(align))
        xfFacade().get_alignment().set_horizontal_text(w);
}

template <class C> AlignV XMLFormatImplT<C>::alignV() {
    const c_node *a = _xf->child("alignment");
    return AlignV(
        a ? stylenames::kAlignV.value(c_alignment(const_cast<c_node *>(a)).get_vertical_text(), 2)
          : 2);
}

template <class C> void XMLFormatImplT<C>::setAlignV(AlignV align) {
    if (const char *w = stylenames::kAlignV.word(align))
        xfFacade().get_alignment().set_vertical_text(w);
}

template <class C> bool XMLFormatImplT<C>::wrap() {
    c_node *a = _xf->child("alignment");
    return a && c_alignment(a).get_wrapText();
}

template <class C> void XMLFormatImplT<C>::setWrap(bool wrap) {
    xfFacade().get_alignment().set_wrapText(wrap);
}

template <class C> int XMLFormatImplT<C>::rotation() {
    c_node *a = _xf->child("alignment");
    return a ? static_cast<int>(c_alignment(a).get_textRotation()) : 0;
}

template <class C> bool XMLFormatImplT<C>::setRotation(int rotation) {
    return guarded(_styles->message(), false, [&] {
        if (rotation < 0 || (rotation > 180 && rotation != 255))
            throw tberror("rotation must be in range 0-180 or 255");
        xfFacade().get_alignment().set_textRotation(static_cast<uint32_t>(rotation));
        return true;
    });
}

template <class C> int XMLFormatImplT<C>::indent() {
    c_node *a = _xf->child("alignment");
    return a ? static_cast<int>(c_alignment(a).get_indent()) : 0;
}

template <class C> void XMLFormatImplT<C>::setIndent(int indent) {
    xfFacade().get_alignment().set_indent(static_cast<uint32_t>(indent < 0 ? 0 : indent));
}

template <class C> bool XMLFormatImplT<C>::shrinkToFit() {
    c_node *a = _xf->child("alignment");
    return a && c_alignment_more(a).get_shrinkToFit();
}

template <class C> void XMLFormatImplT<C>::setShrinkToFit(bool on) {
    xfFacade().get_alignment().set_shrinkToFit(on);
}

// --- borders ---

template <class C> int XMLFormatImplT<C>::sideStyle(const char *side) const {
    c_node *s = findSide(shownBorder(), side);
    return s ? stylenames::kBorderStyle.value(c_border_pr(s).get_style_text(), 0) : 0;
}

template <class C> void XMLFormatImplT<C>::setSideStyle(const char *side, int style) {
    const char *w = stylenames::kBorderStyle.word(style);
    if (!w) return;
    c_border_pr(makeSide(ownBorder(), side)).set_style_text(w);
}

template <class C> int XMLFormatImplT<C>::sideColor(const char *side) const {
    c_node *s = findSide(shownBorder(), side);
    c_node *c = s ? s->child("color") : nullptr;
    if (!c) return -1;
    return guarded(_styles->message(), -1, [&] { return _styles->colorFromXML(c); });
}

template <class C> void XMLFormatImplT<C>::setSideColor(const char *side, int color) {
    if (color == -1) return;
    _styles->makeColorElement(c_border_pr(makeSide(ownBorder(), side)).get_color().node(), color);
}

template <class C> void XMLFormatImplT<C>::setBorder(BorderStyle style) {
    for (const char *side : {kLeft, kRight, kTop, kBottom}) setSideStyle(side, style);
}

template <class C> void XMLFormatImplT<C>::setBorderColor(Color color) {
    for (const char *side : {kLeft, kRight, kTop, kBottom}) setSideColor(side, color);
}

template <class C> BorderDiagonal XMLFormatImplT<C>::borderDiagonal() {
    c_node *b = shownBorder();
    if (!b) return BorderDiagonal(0);
    const c_border f(b);
    return BorderDiagonal((f.get_diagonalDown() ? 1 : 0) | (f.get_diagonalUp() ? 2 : 0));
}

template <class C> void XMLFormatImplT<C>::setBorderDiagonal(BorderDiagonal border) {
    c_border f(ownBorder());
    const int v = static_cast<int>(border);
    if (v & 1)
        f.set_diagonalDown(true);
    else
        f.unset_diagonalDown();
    if (v & 2)
        f.set_diagonalUp(true);
    else
        f.unset_diagonalUp();
}

// --- fill ---

template <class C> FillPattern XMLFormatImplT<C>::fillPattern() {
    c_node *fill = shownFill();
    c_node *p = fill ? fill->child("patternFill") : nullptr;
    return FillPattern(
        p ? stylenames::kFillPattern.value(c_pattern_fill(p).get_patternType_text(), 0) : 0);
}

template <class C> void XMLFormatImplT<C>::setFillPattern(FillPattern pattern) {
    if (pattern == 0) {
        c_xf(_xf).set_fillId(0);
        return;
    }
    const char *w = stylenames::kFillPattern.word(pattern);
    if (!w) return;
    c_fill(ownFill()).get_patternFill().set_patternType_text(w);
}

template <class C> int XMLFormatImplT<C>::fillColor(const char *which) const {
    c_node *fill = shownFill();
    c_node *p = fill ? fill->child("patternFill") : nullptr;
    c_node *c = p ? p->child(which) : nullptr;
    if (!c) return -1;
    return guarded(_styles->message(), -1, [&] { return _styles->colorFromXML(c); });
}

template <class C> void XMLFormatImplT<C>::setFillColor(const char *which, int color) {
    if (color == -1) return;
    c_node *p = c_fill(ownFill()).get_patternFill().node();
    c_node *c = p->child(which);
    _styles->makeColorElement(c ? c : p->append(which), color);
}

// --- protection ---

template <class C> bool XMLFormatImplT<C>::locked() {
    c_node *p = _xf->child("protection");
    // The attribute has no declared default: absent means locked.
    return !p || !c_cell_protection(p).isset_locked() || c_cell_protection(p).get_locked();
}

template <class C> void XMLFormatImplT<C>::setLocked(bool on) {
    xfFacade().get_protection().set_locked(on);
}

template <class C> bool XMLFormatImplT<C>::hidden() {
    c_node *p = _xf->child("protection");
    return p && c_cell_protection(p).get_hidden();
}

template <class C> void XMLFormatImplT<C>::setHidden(bool on) {
    xfFacade().get_protection().set_hidden(on);
}

template class XMLFormatImplT<char>;
template class XMLFormatImplT<wchar_t>;

} // namespace tabrix
