// StyleTable: the styling a binary book owns — fonts, formats (XF), style
// blocks, custom number formats and the palette — with the book-level
// operations over them and their record reading and writing.
#ifndef TABRIX_BIFF_STYLE_TABLE_H
#define TABRIX_BIFF_STYLE_TABLE_H
#include "biff/font_impl.h"
#include "biff/format_impl.h"
#include "biff/records/format.h"
#include "biff/records/palette.h"
#include "biff/records/style.h"
#include "biff/style_owner.h"
#include <string>
#include <vector>
namespace tabrix {
template <class C> class StyleTable : public IStyleOwner<C> {
public:
    static const int kFirstCustomFormat = 164;
    static const int kLastCustomFormat = 392;

    StyleTable() = default;
    ~StyleTable();
    StyleTable(const StyleTable &) = delete;
    StyleTable &operator=(const StyleTable &) = delete;

    // The table of a new book: 5 fonts, 21 formats, 6 style blocks, the
    // default palette, no custom format.
    void init();
    // Empties everything, for a load to fill.
    void clear();

    IFontT<C> *addFont(IFontT<C> *init);
    IFormatT<C> *addFormat(IFormatT<C> *init);
    IFontT<C> *font(int index);
    IFormatT<C> *format(int index);
    int fontSize() const { return int(_fonts.size()); }
    int formatSize() const { return int(_formats.size()); }
    int addCustomNumFormat(const C *text);
    const C *customNumFormat(int id) override;
    const C *defaultFont(int *size);
    void setDefaultFont(const C *name, int size);
    int maxDigWidth() const { return _maxDigWidth; }
    int colorPack(int red, int green, int blue);
    void colorUnpack(int color, int *red, int *green, int *blue);
    bool rgbMode() override { return _rgbMode; }
    void setRgbMode(bool on) override { _rgbMode = on; }
    bool paletteChanged() const { return _paletteChanged; }

    const char *errorMessage() { return _message.template c_str<char>(true); }
    void setUtf8Mode(bool on) { _utf8 = on; }

    // Record reading, one record of `size` whose header was read; `version`
    // is the book's BOF version.
    void readFont(XlsRecords &xls, uint16_t size, uint16_t version);
    void readXF(XlsRecords &xls, uint16_t size, uint16_t version);
    void readFormat(XlsRecords &xls, uint16_t size, uint16_t version);
    void readStyle(XlsRecords &xls, uint16_t size, uint16_t version);
    void readPalette(XlsRecords &xls, uint16_t size);
    // Fonts, Formats, XFs, style blocks, then the Palette if it changed.
    void write(XlsRecords &xls);

    const std::vector<FontImplT<C> *> &fonts() const { return _fonts; }
    const std::vector<FormatImplT<C> *> &formats() const { return _formats; }
    const std::vector<Format> &numFormats() const { return _numFormats; }
    const std::vector<StyleBlock> &styles() const { return _styles; }
    const Palette &palette() const { return _palette; }

    XString &message() override { return _message; }
    bool utf8Mode() const override { return _utf8; }
    MemPool &pool() override { return _pool; }
    int fontPosition(const IFontT<C> *font) const override;
    IFontT<C> *fontAt(size_t pos) override;

private:
    int addCustomWide(const std::wstring &text);
    void copyFormat(FormatImplT<C> &to, IFormatT<C> &from);
    MemPool _pool;
    XString _message;
    XString _textBuf;
    bool _utf8 = true;
    bool _rgbMode = false;
    bool _paletteChanged = false;
    int _maxDigWidth = 7;
    std::vector<FontImplT<C> *> _fonts;
    std::vector<FormatImplT<C> *> _formats;
    std::vector<Format> _numFormats;
    std::vector<StyleBlock> _styles;
    Palette _palette;
};

// Whether number format `id` shows a date or time: the built-in ids 14-22
// and 45-47, and a custom format whose code holds a date or time letter
// (y, m, d, h, s in either case) outside quoted text, [..] sections and
// characters taken literally (after \, _ or *).
bool isDateNumFormat(int id, const wchar_t *customCode);
} // namespace tabrix
#endif
