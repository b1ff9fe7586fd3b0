// The stylesheet part: its default content, loading and saving, the custom
// number formats, colours, the default font and what the sheets ask of it.
#include "ooxml/styles/styles.h"

#include <cstdio>
#include <cstdlib>
#include <set>

#include "book/tberror.h"
#include "book/text_result.h"
#include "book/units.h"
#include "ooxml/binding/parts/styles_more_facades.h"
#include "ooxml/styles/style_names.h"
#include "ooxml/styles/xml_font_impl.h"
#include "ooxml/styles/xml_format_impl.h"

namespace tabrix {

using namespace binding;

namespace {

const char *const kIndexOutOfRange = "index is out of range";
const char *const kFontsNotFound = "fonts are not found";
const char *const kTooManyNumFormats = "maximum number of custom formats is exceeded";
const char *const kRgbInvalid = "rgb color is invalid";

// Custom number formats are handed out from this id on, up to the last one.
const uint32_t kFirstHandedOut = 166;
const uint32_t kLastCustom = 392;

int packed(int red, int green, int blue) {
    return ((red & 0xFF) << 16) | ((green & 0xFF) << 8) | (blue & 0xFF);
}

// The bytes of a colour written as hex digits; false unless every pair is hex.
bool hexBytes(std::string_view hex, std::vector<uint8_t> &out) {
    if (hex.size() % 2) return false;
    out.clear();
    for (size_t i = 0; i < hex.size(); i += 2) {
        int v = 0;
        for (size_t k = i; k < i + 2; ++k) {
            const char c = hex[k];
            const int d = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                 : -1;
            if (d < 0) return false;
            v = v * 16 + d;
        }
        out.push_back(static_cast<uint8_t>(v));
    }
    return true;
}

// The elements `item` of the list `list`, in order, in one pass.
std::vector<c_node *> entries(c_node &root, const char *list, const char *item) {
    std::vector<c_node *> out;
    c_node *l = root.child(list);
    if (!l) return out;
    const int32_t decl = l->decl_of(item);
    for (c_child &c : l->_children)
        if (c.kind == K_NODE && c.decl == decl) out.push_back(c.node.get());
    return out;
}

} // namespace

template <class C>
Styles<C>::Styles(e_edition edition, bool utf8) : _edition(edition), _utf8(utf8) {
    _doc.create(edition, PART_STYLESHEET);
    makeDefault();
}

template <class C>
Styles<C>::Styles(e_edition edition, const char *bytes, size_t size, bool utf8)
    : _edition(edition), _utf8(utf8) {
    const lmx::elmx_error e = _doc.unmarshal(bytes, size, edition, PART_STYLESHEET);
    if (e != lmx::ELMX_OK) throw tberror(lmx::get_error_description(e));
    bindHandles();
}

template <class C> Styles<C>::~Styles() = default;

template <class C> void Styles<C>::makeDefault() {
    c_stylesheet_more sheet(&_doc.root());
    c_border border = sheet.get_borders().append_border();
    const bool strict = _edition == STRICT;
    for (const char *side :
         {strict ? "start" : "left", strict ? "end" : "right", "top", "bottom", "diagonal"})
        border.node()->append(side);
    sheet.get_borders().set_count(1);
    c_fills fills = sheet.get_fills();
    fills.append_fill().get_patternFill().set_patternType_text("none");
    fills.append_fill().get_patternFill().set_patternType_text("gray125");
    fills.set_count(2);
    c_xf xf = sheet.get_cellXfs().append_xf();
    for (const char *id : {"numFmtId", "fontId", "fillId", "borderId", "xfId"})
        xf.node()->set_attribute(id, "0");
    sheet.get_cellXfs().set_count(1);
    c_font font = sheet.get_fonts().append_font();
    font.get_sz().set_val("11");
    font.get_name().set_val("Calibri");
    sheet.get_fonts().set_count(1);
    c_xf styleXf = sheet.get_cellStyleXfs().append_xf();
    for (const char *id : {"numFmtId", "fontId", "fillId", "borderId"})
        styleXf.node()->set_attribute(id, "0");
    sheet.get_cellStyleXfs().set_count(1);
    c_cell_style normal = sheet.get_cellStyles().append_cellStyle();
    normal.set_name("Normal");
    normal.set_xfId(0);
    normal.set_builtinId(0);
    sheet.get_cellStyles().set_count(1);
    _rgbMode = false;
    bindHandles();
}

template <class C> void Styles<C>::bindHandles() {
    _formats.clear();
    _fonts.clear();
    c_node &root = _doc.root();
    const std::vector<c_node *> borders = entries(root, "borders", "border");
    const std::vector<c_node *> fills = entries(root, "fills", "fill");
    for (c_node *xf : entries(root, "cellXfs", "xf"))
        _formats.emplace_back(new XMLFormatImplT<C>(xf, this, borders, fills));
    for (c_node *font : entries(root, "fonts", "font"))
        _fonts.emplace_back(new XMLFontImplT<C>(font, this));
}

template <class C> void Styles<C>::save(std::string &out) {
    // Attributes of other namespaces and extension lists were kept at
    // reading and are written back as they came.
    const lmx::elmx_error e = _doc.marshal(out);
    if (e != lmx::ELMX_OK) throw tberror(lmx::get_error_description(e));
}

template <class C> IFormatT<C> *Styles<C>::format(int index) {
    if (index < 0 || static_cast<size_t>(index) >= _formats.size()) throw tberror(kIndexOutOfRange);
    return _formats[index].get();
}

template <class C> IFontT<C> *Styles<C>::font(int index) {
    if (index < 0 || static_cast<size_t>(index) >= _fonts.size()) throw tberror(kIndexOutOfRange);
    return _fonts[index].get();
}

template <class C> int Styles<C>::formatSize() { return static_cast<int>(_formats.size()); }
template <class C> int Styles<C>::fontSize() { return static_cast<int>(_fonts.size()); }

template <class C> int Styles<C>::fontIndex(const IFontT<C> *font) const {
    for (size_t i = 0; i < _fonts.size(); ++i)
        if (_fonts[i].get() == font) return static_cast<int>(i);
    return -1;
}

template <class C> c_node *Styles<C>::fontsElement() {
    c_node *fonts = _doc.root().child("fonts");
    if (!fonts) throw tberror(kFontsNotFound);
    return fonts;
}

// --- custom number formats ---

template <class C> const std::string *Styles<C>::customNumFormatText(uint32_t id) {
    for (c_node *f : entries(_doc.root(), "numFmts", "numFmt"))
        if (c_num_fmt(f).get_numFmtId() == id) return f->attribute("formatCode");
    return nullptr;
}

template <class C> const C *Styles<C>::customNumFormat(int fmt) {
    const std::string *text = fmt < 0 ? nullptr : customNumFormatText(static_cast<uint32_t>(fmt));
    if (!text) return nullptr;
    std::wstring wide;
    utf8ToWide(text->c_str(), wide);
    return textResult<C>(_text, *_message, wide.c_str(), _utf8);
}

template <class C> int Styles<C>::addCustomNumFormat(const C *code) {
    std::wstring wide;
    wideText(code, _utf8, wide);
    std::string text;
    wideToUtf8(wide.c_str(), text);
    std::set<uint32_t> used;
    for (c_node *e : entries(_doc.root(), "numFmts", "numFmt")) {
        const c_num_fmt f(e);
        if (f.get_formatCode() == text) return static_cast<int>(f.get_numFmtId());
        used.insert(f.get_numFmtId());
    }
    uint32_t id = kFirstHandedOut;
    while (id <= kLastCustom && used.count(id)) ++id;
    if (id > kLastCustom) throw tberror(kTooManyNumFormats);
    c_num_fmts list = c_stylesheet(&_doc.root()).get_numFmts();
    c_num_fmt f = list.append_numFmt();
    f.set_numFmtId(id);
    f.set_formatCode(text);
    list.set_count(static_cast<uint32_t>(list.size_numFmt()));
    return static_cast<int>(id);
}

// --- default font ---

template <class C> std::wstring Styles<C>::defaultFontName() {
    std::wstring wide;
    c_node *fonts = _doc.root().child("fonts");
    c_node *font = fonts ? fonts->child("font") : nullptr;
    const c_node *name = font ? font->child("name") : nullptr;
    if (name) utf8ToWide(std::string(name->attribute_or_default("val")).c_str(), wide);
    return wide;
}

template <class C> int Styles<C>::defaultFontSize() {
    c_node *fonts = _doc.root().child("fonts");
    c_node *font = fonts ? fonts->child("font") : nullptr;
    const c_node *sz = font ? font->child("sz") : nullptr;
    return sz ? static_cast<int>(
                    std::strtod(std::string(sz->attribute_or_default("val")).c_str(), nullptr))
              : 0;
}

template <class C> const C *Styles<C>::defaultFont(int *size) {
    if (!fontsElement()->child("font")) throw tberror(kFontsNotFound);
    if (size) *size = defaultFontSize();
    const std::wstring name = defaultFontName();
    return textResult<C>(_text, *_message, name.c_str(), _utf8);
}

template <class C> void Styles<C>::setDefaultFont(const C *fontName, int size) {
    c_node *font = fontsElement()->child("font");
    if (!font) throw tberror(kFontsNotFound);
    std::wstring wide;
    wideText(fontName, _utf8, wide);
    std::string name;
    wideToUtf8(wide.c_str(), name);
    c_font f(font);
    std::string sz;
    lmx::output_convert_to_xml(sz, static_cast<double>(size));
    f.get_sz().set_val(sz);
    f.get_name().set_val(name);
}

// --- colours ---

template <class C> bool Styles<C>::rgbMode() { return _rgbMode; }
template <class C> void Styles<C>::setRgbMode(bool on) { _rgbMode = on; }
template <class C> void Styles<C>::setUtf8Mode(bool utf8) { _utf8 = utf8; }

template <class C> Color Styles<C>::colorPack(int red, int green, int blue) {
    return Color(packed(red, green, blue));
}

template <class C> void Styles<C>::colorUnpack(Color color, int *red, int *green, int *blue) {
    const int c = static_cast<int>(color);
    if (red) *red = (c >> 16) & 0xFF;
    if (green) *green = (c >> 8) & 0xFF;
    if (blue) *blue = c & 0xFF;
}

template <class C> void Styles<C>::makeColorElement(c_node *element, int color) {
    element->_attrs.clear();
    c_color c(element);
    if (_rgbMode) {
        char hex[9];
        std::snprintf(hex, sizeof hex, "FF%06X", static_cast<unsigned>(color) & 0xFFFFFFu);
        c.set_rgb(hex);
    } else {
        c.set_indexed(static_cast<uint32_t>(color));
    }
}

template <class C> int Styles<C>::colorFromXML(const c_node *element) {
    if (!element) return -1;
    c_color c(const_cast<c_node *>(element));
    if (c.isset_rgb()) return colorFromRGB(c.get_rgb());
    if (c.isset_indexed()) return colorFromIndex(c.get_indexed());
    if (c.isset_theme() && c.isset_tint())
        return colorFromThemeAndTint(c.get_theme(), c.get_tint());
    return -1;
}

template <class C> int Styles<C>::colorFromIndex(uint32_t index) {
    if (!_rgbMode) return static_cast<int>(index);
    c_node *colors = _doc.root().child("colors");
    c_node *indexed = colors ? colors->child("indexedColors") : nullptr;
    if (indexed && index < indexed->count("rgbColor")) {
        std::vector<uint8_t> b;
        const std::string *rgb = indexed->child("rgbColor", index)->attribute("rgb");
        if (!rgb || !hexBytes(*rgb, b) || b.size() != 4) throw tberror(kRgbInvalid);
        return packed(b[1], b[2], b[3]);
    }
    if (index > 63) return -1;
    const uint8_t *e = stylenames::kIndexedColors[index];
    return packed(e[0], e[1], e[2]);
}

template <class C> int Styles<C>::colorFromRGB(std::string_view hex) {
    std::vector<uint8_t> b;
    if (!hexBytes(hex, b) || b.size() != 4) throw tberror(kRgbInvalid);
    if (_rgbMode) return packed(b[1], b[2], b[3]);
    if (b[0] != 255) return -1;
    for (int i = 8; i < 64; ++i) {
        const uint8_t *e = stylenames::kIndexedColors[i];
        if (e[0] == b[1] && e[1] == b[2] && e[2] == b[3]) return i;
    }
    return -1;
}

// Theme colours stay unresolved: the theme part is kept as it came.
template <class C> int Styles<C>::colorFromThemeAndTint(uint32_t, double) { return -1; }

// --- what the sheets use ---

template <class C> uint32_t Styles<C>::getStyleID(IFormatT<C> *format) {
    for (size_t i = 0; format && i < _formats.size(); ++i)
        if (_formats[i].get() == format) return static_cast<uint32_t>(i);
    throw tberror("unknown format");
}

template <class C> IFormatT<C> *Styles<C>::formatByIndex(uint32_t styleIndex) {
    return styleIndex < _formats.size() ? _formats[styleIndex].get() : nullptr;
}

template <class C> bool Styles<C>::isDate(uint32_t styleIndex) {
    if (styleIndex >= _formats.size()) return false;
    const uint32_t id = c_xf(_formats[styleIndex]->xf()).get_numFmtId();
    if (const std::string *text = customNumFormatText(id)) return stylenames::findDateChars(*text);
    return id < 50 && stylenames::isBuiltInDate(id);
}

template <class C> int Styles<C>::maxDigWidth() {
    if (_fonts.empty()) return 7;
    return getMaxDigWidth(defaultFontName(), defaultFontSize());
}

template class Styles<char>;
template class Styles<wchar_t>;

} // namespace tabrix
