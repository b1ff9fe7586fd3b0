// Styles: the live stylesheet part of an Open XML book.  Formats and fonts
// are thin handles on the `xf` and `font` elements of the bound tree; a
// setter edits the tree at once and save writes the tree out.  Nothing is
// deduplicated: every addFormat appends an xf and a border, every addFont a
// font.  Only custom number formats are looked up by their text first.
#ifndef TABRIX_OOXML_STYLES_STYLES_H
#define TABRIX_OOXML_STYLES_STYLES_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "book/xstring.h"
#include "ooxml/binding/engine/document.h"
#include "ooxml/package/xfile.h"
#include "tabrix/IFormatT.h"

namespace tabrix {

template <class C> class XMLFormatImplT;
template <class C> class XMLFontImplT;

template <class C> class Styles : public XFile {
public:
    Styles(binding::e_edition edition, bool utf8); // default stylesheet of a new book
    Styles(binding::e_edition edition, const char *bytes, size_t size,
           bool utf8); // a loaded part; throws tberror
    ~Styles() override;
    void save(std::string &out) override;
    // What the book forwards (same meaning and messages as IBookT's; failures throw tberror):
    IFormatT<C> *addFormat(IFormatT<C> *init);
    IFontT<C> *addFont(IFontT<C> *init);
    IFormatT<C> *format(int index);
    IFontT<C> *font(int index);
    int formatSize();
    int fontSize();
    const C *customNumFormat(int fmt);
    int addCustomNumFormat(const C *customNumFormat);
    const C *defaultFont(int *size);
    void setDefaultFont(const C *fontName, int size);
    bool rgbMode();
    void setRgbMode(bool rgbMode);
    Color colorPack(int red, int green, int blue);
    void colorUnpack(Color color, int *red, int *green, int *blue);
    void setUtf8Mode(bool utf8);
    // What the sheets use:
    uint32_t
    getStyleID(IFormatT<C> *format); // the cellXfs index a cell's "s" takes for this format
    IFormatT<C> *formatByIndex(uint32_t styleIndex); // null when the index has no xf
    bool isDate(uint32_t styleIndex); // the date test of a number cell's style (number format id /
                                      // custom text)
    int maxDigWidth();

    // What the format and font handles use.
    binding::c_node &root() { return _doc.root(); }
    bool utf8() const { return _utf8; }
    // The failure text of the last handle operation that failed (handles
    // answer their neutral value then): the owning book's message once the
    // book has said so, so that its errorMessage() tells the cause.
    XString &message() { return *_message; }
    void reportTo(XString &message) { _message = &message; }
    // Writes `color` into a colour element: rgb in RGB mode, indexed otherwise.
    void makeColorElement(binding::c_node *element, int color);
    // The caller's colour of a colour element; -1 when it has none we can speak.
    int colorFromXML(const binding::c_node *element);
    int colorFromIndex(uint32_t index);
    int colorFromRGB(std::string_view hex);
    int colorFromThemeAndTint(uint32_t theme, double tint);
    // The index of a font of this stylesheet in the fonts list, or -1.
    int fontIndex(const IFontT<C> *font) const;
    // The wide text of a custom number format, or null when the id has none.
    const std::string *customNumFormatText(uint32_t id);
    // The first text of the default font and its size.
    std::wstring defaultFontName();
    int defaultFontSize();

private:
    void makeDefault();
    void bindHandles();
    binding::c_node *fontsElement();
    binding::e_edition _edition;
    binding::c_document _doc;
    std::vector<std::unique_ptr<XMLFormatImplT<C>>> _formats;
    std::vector<std::unique_ptr<XMLFontImplT<C>>> _fonts;
    bool _utf8;
    bool _rgbMode = false;
    XString _text;
    XString _ownMessage;
    XString *_message = &_ownMessage;
};

extern template class Styles<char>;
extern template class Styles<wchar_t>;

} // namespace tabrix

#endif
