#include "ooxml/styles/xml_font_impl.h"

#include <cstdlib>
#include <string>

#include "book/failure_frame.h"
#include "book/tberror.h"
#include "book/text_result.h"
#include "ooxml/styles/style_names.h"

namespace tabrix {

using namespace binding;

namespace {
// The longest font name a font element takes, in UTF-16 units.
const size_t kMaxNameLength = 255;
// The automatic colour: in index mode it removes a font's colour.
const int kAutomatic = 32767;
} // namespace

template <class C> c_node *XMLFontImplT<C>::ensure(const char *kind) {
    c_node *c = _font->child(kind);
    return c ? c : _font->append(kind);
}

template <class C> bool XMLFontImplT<C>::flag(const char *kind) {
    c_node *c = _font->child(kind);
    return c && c_val(c).get_val() != "0" && c_val(c).get_val() != "false";
}

template <class C> void XMLFontImplT<C>::setFlag(const char *kind, bool on) {
    c_node *c = _font->child(kind);
    if (!on) {
        if (c) _font->remove(kind, 0);
        return;
    }
    // An element of its own is true unless it says otherwise.
    if (c)
        c->unset_attribute("val");
    else
        _font->append(kind);
}

template <class C> int XMLFontImplT<C>::size() {
    c_node *c = _font->child("sz");
    if (!c) return _styles->defaultFontSize();
    return static_cast<int>(std::strtod(std::string(c_val(c).get_val()).c_str(), nullptr));
}

template <class C> void XMLFontImplT<C>::setSize(int size) {
    std::string v;
    lmx::output_convert_to_xml(v, static_cast<double>(size));
    c_val(ensure("sz")).set_val(v);
}

template <class C> Color XMLFontImplT<C>::color() {
    c_node *c = _font->child("color");
    if (!c) return Color(_styles->rgbMode() ? 0 : 8);
    return Color(guarded(_styles->message(), -1, [&] { return _styles->colorFromXML(c); }));
}

template <class C> void XMLFontImplT<C>::setColor(Color color) {
    const int v = static_cast<int>(color);
    if (v == -1) return;
    if (!_styles->rgbMode() && v == kAutomatic) {
        if (_font->child("color")) _font->remove("color", 0);
        return;
    }
    _styles->makeColorElement(ensure("color"), v);
}

template <class C> Script XMLFontImplT<C>::script() {
    c_node *c = _font->child("vertAlign");
    return Script(c ? stylenames::kScript.value(c_val(c).get_val(), 0) : 0);
}

template <class C> void XMLFontImplT<C>::setScript(Script script) {
    if (script == 0) {
        if (_font->child("vertAlign")) _font->remove("vertAlign", 0);
        return;
    }
    if (const char *w = stylenames::kScript.word(script)) c_val(ensure("vertAlign")).set_val(w);
}

template <class C> Underline XMLFontImplT<C>::underline() {
    c_node *c = _font->child("u");
    return Underline(c ? stylenames::underlineValue(c_val(c).get_val()) : 0);
}

template <class C> void XMLFontImplT<C>::setUnderline(Underline underline) {
    if (underline == 0) {
        if (_font->child("u")) _font->remove("u", 0);
        return;
    }
    if (const char *w = stylenames::underlineWord(underline)) c_val(ensure("u")).set_val(w);
}

template <class C> const C *XMLFontImplT<C>::name() {
    return guarded(_styles->message(), static_cast<const C *>(nullptr), [&] {
        std::wstring wide;
        if (c_node *c = _font->child("name"))
            utf8ToWide(std::string(c_val(c).get_val()).c_str(), wide);
        else
            wide = _styles->defaultFontName();
        return textResult<C>(_text, _styles->message(), wide.c_str(), _styles->utf8());
    });
}

template <class C> bool XMLFontImplT<C>::setName(const C *name) {
    return guarded(_styles->message(), false, [&] {
        std::wstring wide;
        if (!name || !wideText(name, _styles->utf8(), wide) || wide.empty()) return false;
        if (wide.size() > kMaxNameLength) throw tberror("string is too long");
        std::string text;
        wideToUtf8(wide.c_str(), text);
        c_val(ensure("name")).set_val(text);
        return true;
    });
}

template class XMLFontImplT<char>;
template class XMLFontImplT<wchar_t>;

} // namespace tabrix
