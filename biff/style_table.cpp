#include "biff/style_table.h"
#include "book/failure_frame.h"
#include "book/tberror.h"
#include "book/text_result.h"
#include "book/units.h"
#include <cwctype>
#include <memory>
#include <set>
namespace tabrix {
namespace {
const char *const kOutOfRange = "index is out of range";
const char *const kFontsEmpty = "fonts is empty";

bool hasColor(Color c) { return unsigned(c) < 0xFFFFFFFFu; }

// Changes of the initial formats from the constructor's values.
struct InitialXf {
    int ifnt, ifmt;
    long long flags; // -1: unchanged
    long long alignment;
};
const InitialXf kInitialXf[21] = {
    {0, 0, -1, 0x20},       {1, 0, -1, -1},          {1, 0, -1, -1},
    {2, 0, -1, -1},         {2, 0, -1, -1},          {0, 0, -1, -1},
    {0, 0, -1, -1},         {0, 0, -1, -1},          {0, 0, -1, -1},
    {0, 0, -1, -1},         {0, 0, -1, -1},          {0, 0, -1, -1},
    {0, 0, -1, -1},         {0, 0, -1, -1},          {0, 0, -1, -1},
    {0, 0, 1, 0x20},        {1, 44, -1, 0xF8000020}, {1, 42, -1, 0xF8000020},
    {1, 9, -1, 0xF8000020}, {1, 43, -1, 0xF8000020}, {1, 41, -1, 0}};

const struct {
    uint16_t xf;
    uint8_t builtIn;
} kInitialStyles[6] = {{0x8010, 4}, {0x8011, 7}, {0x8000, 0},
                       {0x8012, 5}, {0x8013, 3}, {0x8014, 6}};

// Switches rgbMode off on an object for the lifetime of the guard.
template <class T> struct RgbOff {
    T *obj;
    bool was = false;
    explicit RgbOff(T *o) : obj(o) {
        if (obj) {
            was = obj->rgbMode();
            obj->setRgbMode(false);
        }
    }
    ~RgbOff() {
        if (obj) obj->setRgbMode(was);
    }
};
} // namespace

template <class C> StyleTable<C>::~StyleTable() { clear(); }

template <class C> void StyleTable<C>::clear() {
    for (auto *f : _fonts) delete f;
    for (auto *f : _formats) delete f;
    _fonts.clear();
    _formats.clear();
    _numFormats.clear();
    _styles.clear();
    _palette = Palette();
    _paletteChanged = false;
}

template <class C> void StyleTable<C>::init() {
    clear();
    for (int i = 0; i < 5; ++i) _fonts.push_back(new FontImplT<C>(this));
    for (const InitialXf &x : kInitialXf) {
        auto *f = new FormatImplT<C>(this);
        f->ifnt = uint16_t(x.ifnt);
        f->ifmt = uint16_t(x.ifmt);
        if (x.flags >= 0) f->flags = uint16_t(x.flags);
        if (x.alignment >= 0) f->alignment = uint32_t(x.alignment);
        _formats.push_back(f);
    }
    for (const auto &s : kInitialStyles) _styles.emplace_back(s.xf, s.builtIn);
    _maxDigWidth = getMaxDigWidth(_fonts[0]->wideName(), _fonts[0]->size());
}

template <class C> IFontT<C> *StyleTable<C>::addFont(IFontT<C> *init) {
    return guarded(_message, static_cast<IFontT<C> *>(nullptr), [&]() -> IFontT<C> * {
        auto *f = new FontImplT<C>(this);
        _fonts.push_back(f);
        if (!init) return f;
        RgbOff<IStyleOwner<C>> mine(this);
        RgbOff<IFontPrivate<C>> theirs(dynamic_cast<IFontPrivate<C> *>(init));
        f->setSize(init->size());
        f->setItalic(init->italic());
        f->setStrikeOut(init->strikeOut());
        if (hasColor(init->color())) f->setColor(init->color());
        f->setBold(init->bold());
        f->setScript(init->script());
        f->setUnderline(init->underline());
        if (auto *impl = dynamic_cast<FontImplT<C> *>(init)) {
            f->setWideName(impl->wideName());
        } else {
            std::wstring wide;
            wideText(init->name(), _utf8, wide);
            f->setWideName(wide);
        }
        return f;
    });
}

template <class C> void StyleTable<C>::copyFormat(FormatImplT<C> &to, IFormatT<C> &from) {
    if (IFontT<C> *font = from.font()) {
        IFontT<C> *copy = addFont(font);
        if (!copy) throw tberror(_message.template c_str<char>(true));
        to.ifnt = uint16_t(fontPosition(copy) + 1);
    }
    int n = from.numFormat();
    if (n >= kFirstCustomFormat) {
        auto *priv = dynamic_cast<IFormatPrivate<C> *>(&from);
        const C *text = priv ? priv->customNumFormat() : nullptr;
        std::wstring wide;
        wideText(text, _utf8, wide);
        n = addCustomWide(wide);
    }
    to.setNumFormat(n);
    to.setAlignH(from.alignH());
    to.setAlignV(from.alignV());
    to.setWrap(from.wrap());
    to.setRotation(from.rotation());
    to.setIndent(from.indent());
    to.setShrinkToFit(from.shrinkToFit());
    to.setBorderLeft(from.borderLeft());
    to.setBorderRight(from.borderRight());
    to.setBorderTop(from.borderTop());
    to.setBorderBottom(from.borderBottom());
    if (hasColor(from.borderLeftColor())) to.setBorderLeftColor(from.borderLeftColor());
    // The right colour is taken from the left one; the right's own value only
    // decides whether it is copied.
    if (hasColor(from.borderRightColor())) to.setBorderRightColor(from.borderLeftColor());
    if (hasColor(from.borderTopColor())) to.setBorderTopColor(from.borderTopColor());
    if (hasColor(from.borderBottomColor())) to.setBorderBottomColor(from.borderBottomColor());
    to.setBorderDiagonal(from.borderDiagonal());
    to.setBorderDiagonalStyle(from.borderDiagonalStyle());
    if (hasColor(from.borderDiagonalColor())) to.setBorderDiagonalColor(from.borderDiagonalColor());
    to.setFillPattern(from.fillPattern());
    if (hasColor(from.patternForegroundColor()))
        to.setPatternForegroundColor(from.patternForegroundColor());
    if (hasColor(from.patternBackgroundColor()))
        to.setPatternBackgroundColor(from.patternBackgroundColor());
    to.setLocked(from.locked());
    to.setHidden(from.hidden());
}

template <class C> IFormatT<C> *StyleTable<C>::addFormat(IFormatT<C> *init) {
    return guarded(_message, static_cast<IFormatT<C> *>(nullptr), [&]() -> IFormatT<C> * {
        std::unique_ptr<FormatImplT<C>> f(new FormatImplT<C>(this));
        f->flags = 1;
        if (init) {
            RgbOff<IStyleOwner<C>> mine(this);
            RgbOff<IFormatPrivate<C>> theirs(dynamic_cast<IFormatPrivate<C> *>(init));
            copyFormat(*f, *init);
        }
        _formats.push_back(f.get());
        return f.release();
    });
}

template <class C> IFontT<C> *StyleTable<C>::font(int index) {
    return guarded(_message, static_cast<IFontT<C> *>(nullptr),
                   [&] { return index < 0 ? throw tberror(kOutOfRange) : fontAt(size_t(index)); });
}

template <class C> IFormatT<C> *StyleTable<C>::format(int index) {
    return guarded(_message, static_cast<IFormatT<C> *>(nullptr), [&]() -> IFormatT<C> * {
        if (index < 0 || size_t(index) >= _formats.size()) throw tberror(kOutOfRange);
        return _formats[size_t(index)];
    });
}

template <class C> IFontT<C> *StyleTable<C>::fontAt(size_t pos) {
    if (pos >= _fonts.size()) throw tberror(kOutOfRange);
    return _fonts[pos];
}

template <class C> int StyleTable<C>::fontPosition(const IFontT<C> *font) const {
    for (size_t i = 0; i < _fonts.size(); ++i)
        if (_fonts[i] == font) return int(i);
    return -1;
}

template <class C> int StyleTable<C>::addCustomWide(const std::wstring &text) {
    std::set<int> used;
    for (const Format &f : _numFormats) {
        if (text == (f.code.text ? f.code.text : L"")) return f.ifmt;
        used.insert(f.ifmt);
    }
    int id = 0;
    for (int i = kFirstCustomFormat; i <= kLastCustomFormat; ++i) {
        if (!used.count(i)) {
            id = i;
            break;
        }
    }
    Format f;
    f.ifmt = uint16_t(id);
    f.code.setString(text.c_str(), _pool);
    _numFormats.push_back(f);
    if (id == 0) _message.assign("maximum number of custom formats is exceeded");
    return id;
}

template <class C> int StyleTable<C>::addCustomNumFormat(const C *text) {
    return guarded(_message, 0, [&] {
        if (!text) throw tberror("custom number format mustn't be NULL");
        std::wstring wide;
        wideText(text, _utf8, wide);
        return addCustomWide(wide);
    });
}

template <class C> const C *StyleTable<C>::customNumFormat(int id) {
    return guarded(_message, static_cast<const C *>(nullptr), [&] {
        for (const Format &f : _numFormats)
            if (f.ifmt == id)
                return textResult<C>(_textBuf, _message, f.code.text ? f.code.text : L"", _utf8);
        throw tberror("custom number format not found");
    });
}

template <class C> const C *StyleTable<C>::defaultFont(int *size) {
    return guarded(_message, static_cast<const C *>(nullptr), [&] {
        if (_fonts.empty()) throw tberror(kFontsEmpty);
        if (size) *size = _fonts[0]->size();
        return textResult<C>(_textBuf, _message, _fonts[0]->wideName().c_str(), _utf8);
    });
}

template <class C> void StyleTable<C>::setDefaultFont(const C *name, int size) {
    guarded(_message, [&] {
        if (_fonts.empty()) throw tberror(kFontsEmpty);
        std::wstring wide;
        wideText(name, _utf8, wide);
        _fonts[0]->setWideName(wide);
        _fonts[0]->setSize(size);
        _maxDigWidth = getMaxDigWidth(wide, _fonts[0]->size());
    });
}

template <class C> int StyleTable<C>::colorPack(int red, int green, int blue) {
    _paletteChanged = true;
    return guarded(_message, int(Palette::kNoColor),
                   [&] { return _palette.addRGB(uint8_t(red), uint8_t(green), uint8_t(blue)); });
}

template <class C> void StyleTable<C>::colorUnpack(int color, int *red, int *green, int *blue) {
    guarded(_message, [&] {
        int r = 0, g = 0, b = 0;
        _palette.getRGB(color, r, g, b);
        if (red) *red = r;
        if (green) *green = g;
        if (blue) *blue = b;
    });
}

template <class C> void StyleTable<C>::readFont(XlsRecords &xls, uint16_t size, uint16_t version) {
    std::unique_ptr<FontImplT<C>> f(new FontImplT<C>(this));
    f->read(xls, size, version < 0x0501);
    _fonts.push_back(f.release());
}

template <class C> void StyleTable<C>::readXF(XlsRecords &xls, uint16_t size, uint16_t version) {
    std::unique_ptr<FormatImplT<C>> f(new FormatImplT<C>(this));
    f->read(xls, size, version == 0x0500);
    _formats.push_back(f.release());
}

template <class C>
void StyleTable<C>::readFormat(XlsRecords &xls, uint16_t size, uint16_t version) {
    Format f;
    f.read(xls, size, version < 0x0501, _pool);
    _numFormats.push_back(f);
}

template <class C> void StyleTable<C>::readStyle(XlsRecords &xls, uint16_t size, uint16_t version) {
    StyleBlock b;
    b.read(xls, size, version < 0x0501, _pool);
    _styles.push_back(b);
}

template <class C> void StyleTable<C>::readPalette(XlsRecords &xls, uint16_t size) {
    _palette.read(xls, size);
    _paletteChanged = true;
}

template <class C> void StyleTable<C>::write(XlsRecords &xls) {
    for (auto *f : _fonts) f->write(xls);
    for (const Format &f : _numFormats) f.write(xls);
    for (auto *f : _formats) f->write(xls);
    for (const StyleBlock &s : _styles) s.write(xls);
    if (_paletteChanged) _palette.write(xls);
}

bool isDateNumFormat(int id, const wchar_t *code) {
    if (id < 164) return (id >= 14 && id <= 22) || (id >= 45 && id <= 47);
    if (!code) return false;
    for (const wchar_t *p = code; *p; ++p) {
        switch (*p) {
        case L'"':
            while (p[1] && p[1] != L'"') ++p;
            if (p[1]) ++p;
            break;
        case L'[':
            while (p[1] && p[1] != L']') ++p;
            if (p[1]) ++p;
            break;
        case L'\\':
        case L'_':
        case L'*':
            if (p[1]) ++p;
            break;
        default:
            switch (std::towlower(wint_t(*p))) {
            case L'y':
            case L'm':
            case L'd':
            case L'h':
            case L's': return true;
            }
        }
    }
    return false;
}

template class StyleTable<char>;
template class StyleTable<wchar_t>;
} // namespace tabrix
