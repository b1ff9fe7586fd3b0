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
    int fontSize() const { return int(fonts_.size()); }
    int formatSize() const { return int(formats_.size()); }
    int addCustomNumFormat(const C *text);
    const C *customNumFormat(int id) override;
    const C *defaultFont(int *size);
    void setDefaultFont(const C *name, int size);
    int maxDigWidth() const { return maxDigWidth_; }
    int colorPack(int red, int green, int blue);
    void colorUnpack(int color, int *red, int *green, int *blue);
    bool rgbMode() override { return rgbMode_; }
    void setRgbMode(bool on) override { rgbMode_ = on; }
    bool paletteChanged() const { return paletteChanged_; }

    const char *errorMessage() { return message_.template c_str<char>(true); }
    void setUtf8Mode(bool on) { utf8_ = on; }

    // Record reading, one record of `size` whose header was read; `version`
    // is the book's BOF version.
    void readFont(XlsRecords &xls, uint16_t size, uint16_t version);
    void readXF(XlsRecords &xls, uint16_t size, uint16_t version);
    void readFormat(XlsRecords &xls, uint16_t size, uint16_t version);
    void readStyle(XlsRecords &xls, uint16_t size, uint16_t version);
    void readPalette(XlsRecords &xls, uint16_t size);
    // Fonts, Formats, XFs, style blocks, then the Palette if it changed.
    void write(XlsRecords &xls);

    const std::vector<FontImplT<C> *> &fonts() const { return fonts_; }
    const std::vector<FormatImplT<C> *> &formats() const { return formats_; }
    const std::vector<Format> &numFormats() const { return numFormats_; }
    const std::vector<StyleBlock> &styles() const { return styles_; }
    const Palette &palette() const { return palette_; }

    XString &message() override { return message_; }
    bool utf8Mode() const override { return utf8_; }
    MemPool &pool() override { return pool_; }
    int fontPosition(const IFontT<C> *font) const override;
    IFontT<C> *fontAt(size_t pos) override;

private:
    int addCustomWide(const std::wstring &text);
    void copyFormat(FormatImplT<C> &to, IFormatT<C> &from);
    MemPool pool_;
    XString message_;
    XString textBuf_;
    bool utf8_ = true;
    bool rgbMode_ = false;
    bool paletteChanged_ = false;
    int maxDigWidth_ = 7;
    std::vector<FontImplT<C> *> fonts_;
    std::vector<FormatImplT<C> *> formats_;
    std::vector<Format> numFormats_;
    std::vector<StyleBlock> styles_;
    Palette palette_;
};

// Whether number format `id` shows a date or time: the built-in ids 14-22
// and 45-47, and a custom format whose code holds a date or time letter
// (y, m, d, h, s in either case) outside quoted text, [..] sections and
// characters taken literally (after \, _ or *).
bool isDateNumFormat(int id, const wchar_t *customCode);
} // namespace tabrix
#endif
