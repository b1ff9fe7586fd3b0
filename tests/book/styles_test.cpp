// Formats and fonts through the public interface of each kind of book:
// every attribute through a save and a load, the messages, custom number
// formats, colours, and formats copied between books of either kind.
#include "support/book_kinds.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <tuple>

using namespace tabrix;
using namespace bookkinds;

namespace {

using Fmt = IFormatT<char>;
using Fnt = IFontT<char>;

class Styles : public ::testing::TestWithParam<BookKind> {
protected:
    bool binary() const { return std::string(GetParam().name) == "binary"; }
};

const int kSame = INT_MIN; // the binary kind answers as the other
const int kNone = INT_MAX; // no RGB colours in binary books

// One attribute set to `value` on a new format with a new font, read back
// after a save and a load; `binaryWant` where the binary kind differs.
struct Attribute {
    const char *name;
    bool rgb; // colours spoken as RGB values
    void (*set)(Fmt &, Fnt &, int value);
    int (*get)(Fmt &, Fnt &);
    int value, want, binaryWant;
};
#define ON_FORMAT(calls) [](Fmt &f, Fnt &, int v) { f.calls; }
#define OF_FORMAT(expr) [](Fmt &f, Fnt &) { return static_cast<int>(f.expr); }
#define ON_FONT(calls) [](Fmt &, Fnt &t, int v) { t.calls; }
#define OF_FONT(expr) [](Fmt &, Fnt &t) { return static_cast<int>(t.expr); }

const Attribute kAttributes[] = {
    {"numFormat", false, ON_FORMAT(setNumFormat(v)), OF_FORMAT(numFormat()), 49, 49, kSame},
    {"numFormat 16 bits", false, ON_FORMAT(setNumFormat(v)), OF_FORMAT(numFormat()), 0x1FFFF,
     0x1FFFF, 0xFFFF},
    {"alignH", false, ON_FORMAT(setAlignH(AlignH(v))), OF_FORMAT(alignH()), 7, 7, kSame},
    {"alignH merge", false, ON_FORMAT(setAlignH(AlignH(v))), OF_FORMAT(alignH()), ALIGNH_MERGE,
     ALIGNH_MERGE, kSame},
    {"alignV distributed", false, ON_FORMAT(setAlignV(AlignV(v))), OF_FORMAT(alignV()),
     ALIGNV_DISTRIBUTED, ALIGNV_DISTRIBUTED, kSame},
    {"wrap", false, ON_FORMAT(setWrap(v)), OF_FORMAT(wrap()), 1, 1, kSame},
    {"rotation", false, ON_FORMAT(setRotation(v)), OF_FORMAT(rotation()), 255, 255, kSame},
    {"rotation refused", false, ON_FORMAT(setRotation(v); f.setRotation(181)),
     OF_FORMAT(rotation()), 45, 45, kSame},
    {"indent", false, ON_FORMAT(setIndent(v)), OF_FORMAT(indent()), 15, 15, kSame},
    {"shrinkToFit", false, ON_FORMAT(setShrinkToFit(v)), OF_FORMAT(shrinkToFit()), 1, 1, kSame},
    {"left", false, ON_FORMAT(setBorderLeft(BorderStyle(v))), OF_FORMAT(borderLeft()), 13, 13,
     kSame},
    {"right", false, ON_FORMAT(setBorderRight(BorderStyle(v))), OF_FORMAT(borderRight()), 6, 6,
     kSame},
    {"top", false, ON_FORMAT(setBorderTop(BorderStyle(v))), OF_FORMAT(borderTop()), 7, 7, kSame},
    {"bottom", false, ON_FORMAT(setBorderBottom(BorderStyle(v))), OF_FORMAT(borderBottom()), 5, 5,
     kSame},
    {"all four", false, ON_FORMAT(setBorder(BorderStyle(v))), OF_FORMAT(borderLeft()), 8, 8, kSame},
    {"not the diagonal", false, ON_FORMAT(setBorder(BorderStyle(v))),
     OF_FORMAT(borderDiagonalStyle()), 5, 0, kSame},
    {"left colour", false, ON_FORMAT(setBorderLeftColor(Color(v))), OF_FORMAT(borderLeftColor()),
     10, 10, kSame},
    {"top colour kept", false,
     ON_FORMAT(setBorderTopColor(Color(v)); f.setBorderTopColor(Color(-1))),
     OF_FORMAT(borderTopColor()), 12, 12, 127},
    {"bottom colour rgb", true, ON_FORMAT(setBorderBottomColor(Color(v))),
     OF_FORMAT(borderBottomColor()), 0x10203, 0x10203, kNone},
    {"all colours", false, ON_FORMAT(setBorderColor(Color(v))), OF_FORMAT(borderTopColor()), 20, 20,
     kSame},
    {"diagonals", false, ON_FORMAT(setBorderDiagonal(BorderDiagonal(v))),
     OF_FORMAT(borderDiagonal()), 3, 3, kSame},
    {"diagonal up", false,
     ON_FORMAT(setBorderDiagonal(BORDERDIAGONAL_BOTH); f.setBorderDiagonal(BorderDiagonal(v))),
     OF_FORMAT(borderDiagonal()), 2, 2, kSame},
    {"diagonal style", false, ON_FORMAT(setBorderDiagonalStyle(BorderStyle(v))),
     OF_FORMAT(borderDiagonalStyle()), 9, 9, kSame},
    {"diagonal colour", false, ON_FORMAT(setBorderDiagonalColor(Color(v))),
     OF_FORMAT(borderDiagonalColor()), 33, 33, kSame},
    {"pattern", false, ON_FORMAT(setFillPattern(FillPattern(v))), OF_FORMAT(fillPattern()), 18, 18,
     kSame},
    {"pattern none", false,
     ON_FORMAT(setFillPattern(FILLPATTERN_SOLID); f.setFillPattern(FillPattern(v))),
     OF_FORMAT(fillPattern()), 0, 0, kSame},
    {"pattern again", false,
     ON_FORMAT(setFillPattern(FILLPATTERN_SOLID); f.setFillPattern(FILLPATTERN_NONE);
               f.setFillPattern(FillPattern(v))),
     OF_FORMAT(fillPattern()), 8, 8, kSame},
    {"pattern refused", false,
     ON_FORMAT(setFillPattern(FILLPATTERN_SOLID); f.setFillPattern(FillPattern(v))),
     OF_FORMAT(fillPattern()), 19, 1, 19},
    {"foreground", false, ON_FORMAT(setPatternForegroundColor(Color(v))),
     OF_FORMAT(patternForegroundColor()), 40, 40, kSame},
    {"background", false, ON_FORMAT(setPatternBackgroundColor(Color(v))),
     OF_FORMAT(patternBackgroundColor()), 41, 41, kSame},
    {"foreground rgb", true, ON_FORMAT(setPatternForegroundColor(Color(v))),
     OF_FORMAT(patternForegroundColor()), 0x123456, 0x123456, kNone},
    {"unlocked", false, ON_FORMAT(setLocked(v)), OF_FORMAT(locked()), 0, 0, kSame},
    {"hidden", false, ON_FORMAT(setHidden(v)), OF_FORMAT(hidden()), 1, 1, kSame},
    {"hidden stays locked", false, ON_FORMAT(setHidden(v)), OF_FORMAT(locked()), 1, 1, kSame},
    {"size capped", false, ON_FONT(setSize(v)), OF_FONT(size()), 500, 500, 409},
    {"italic", false, ON_FONT(setItalic(v)), OF_FONT(italic()), 1, 1, kSame},
    {"strike", false, ON_FONT(setStrikeOut(v)), OF_FONT(strikeOut()), 1, 1, kSame},
    {"colour", false, ON_FONT(setColor(Color(v))), OF_FONT(color()), 10, 10, kSame},
    {"strike keeps italic", false, ON_FONT(setItalic(v); t.setStrikeOut(v)), OF_FONT(italic()), 1,
     1, kSame},
    {"bold twice", false, ON_FONT(setBold(v); t.setBold(v)), OF_FONT(bold()), 1, 1, kSame},
    {"bold off", false, ON_FONT(setBold(true); t.setBold(v)), OF_FONT(bold()), 0, 0, kSame},
    {"automatic colour", false, ON_FONT(setColor(COLOR_RED); t.setColor(Color(v))),
     OF_FONT(color()), 32767, 8, 32767},
    {"rgb colour", true, ON_FONT(setColor(Color(v))), OF_FONT(color()), 0xABCDEF, 0xABCDEF, kNone},
    {"superscript", false, ON_FONT(setScript(Script(v))), OF_FONT(script()), 1, 1, kSame},
    {"script off", false, ON_FONT(setScript(SCRIPT_SUB); t.setScript(Script(v))), OF_FONT(script()),
     0, 0, kSame},
    {"underline", false, ON_FONT(setUnderline(Underline(v))), OF_FONT(underline()), 34, 34, kSame},
    {"underline refused", false,
     ON_FONT(setUnderline(UNDERLINE_SINGLE); t.setUnderline(Underline(v))), OF_FONT(underline()), 3,
     1, 3},
};

TEST_P(Styles, EveryAttributeSurvivesSaveAndReload) {
    BookPtr fresh = newBook(GetParam());
    for (const Attribute &a : kAttributes) {
        SCOPED_TRACE(a.name);
        BookPtr b = newBook(GetParam());
        ASSERT_NE(b->addSheet("S", nullptr), nullptr);
        b->setRgbMode(a.rgb);
        Fmt *f = b->addFormat(nullptr);
        Fnt *t = b->addFont(nullptr);
        ASSERT_TRUE(f->setFont(t));
        a.set(*f, *t, a.value);
        const int last = b->formatSize() - 1;
        BookPtr r = reloaded(GetParam(), *b);
        r->setRgbMode(a.rgb);
        fresh->setRgbMode(a.rgb);
        ASSERT_EQ(r->formatSize(), last + 1);
        const int want = binary() && a.binaryWant != kSame ? a.binaryWant : a.want;
        if (want == kNone) continue;
        EXPECT_EQ(a.get(*r->format(last), *r->format(last)->font()), want);
        // The default format and font stay as a new book has them.
        EXPECT_EQ(a.get(*r->format(0), *r->font(0)), a.get(*fresh->format(0), *fresh->font(0)));
    }
}

TEST_P(Styles, FailuresCarryTheirMessages) {
    BookPtr other = newBook(GetParam());
    const struct {
        const char *name;
        std::function<bool(IBookT<char> &)> op; // true: the call answered success
        const char *message;                    // the same from both kinds of book
    } rows[] = {
        {"negative format", [](IBookT<char> &b) { return b.format(-1) != nullptr; },
         "index is out of range"},
        {"format past the end", [](IBookT<char> &b) { return b.format(b.formatSize()) != nullptr; },
         "index is out of range"},
        {"font past the end", [](IBookT<char> &b) { return b.font(b.fontSize()) != nullptr; },
         "index is out of range"},
        {"rotation", [](IBookT<char> &b) { return b.addFormat(nullptr)->setRotation(254); },
         "rotation must be in range 0-180 or 255"},
        {"font name too long",
         [](IBookT<char> &b) { return b.addFont(nullptr)->setName(std::string(256, 'a').c_str()); },
         "string is too long"},
        {"null custom format", [](IBookT<char> &b) { return b.addCustomNumFormat(nullptr) > 0; },
         "custom number format mustn't be NULL"},
        {"custom format not there",
         [](IBookT<char> &b) { return b.customNumFormat(100) != nullptr; },
         "custom number format not found"},
        {"font of another book",
         [&](IBookT<char> &b) { return b.addFormat(nullptr)->setFont(other->font(0)); },
         "specified font not found"},
    };
    for (const auto &r : rows) {
        BookPtr b = newBook(GetParam());
        EXPECT_FALSE(r.op(*b)) << r.name;
        EXPECT_STREQ(b->errorMessage(), r.message) << r.name;
    }
}

TEST_P(Styles, CustomNumberFormatsReuseTheirTextAndEndAt392) {
    BookPtr b = newBook(GetParam());
    b->addSheet("S", nullptr);
    const int first = binary() ? 164 : 166;
    EXPECT_EQ(b->addCustomNumFormat("0.000"), first);
    EXPECT_EQ(b->addCustomNumFormat("#,##0.0"), first + 1);
    EXPECT_EQ(b->addCustomNumFormat("0.000"), first);
    BookPtr r = reloaded(GetParam(), *b);
    EXPECT_STREQ(r->customNumFormat(first), "0.000");
    EXPECT_EQ(r->addCustomNumFormat("#,##0.0"), first + 1);
    int last = 0;
    for (int i = 0, id = 1; id > 0 && i < 300; ++i)
        if ((id = r->addCustomNumFormat(("0." + std::to_string(i)).c_str())) > 0) last = id;
    EXPECT_EQ(last, 392);
    EXPECT_STREQ(r->errorMessage(), "maximum number of custom formats is exceeded");
}

// A format copied from a book of either kind keeps its border, fill, font
// and custom number format, under this book's ids.
TEST_P(Styles, FormatsCopiedFromEitherKindKeepWhatTheyHold) {
    for (const BookKind &from : kBookKinds) {
        SCOPED_TRACE(from.name);
        BookPtr src = newBook(from);
        Fmt *fs = src->addFormat(nullptr);
        fs->setBorderLeft(BORDERSTYLE_THIN);
        fs->setBorderLeftColor(COLOR_RED);
        fs->setFillPattern(FILLPATTERN_SOLID);
        fs->setPatternForegroundColor(COLOR_BLUE);
        fs->setRotation(90);
        fs->setNumFormat(src->addCustomNumFormat("yyyy-mm-dd"));
        Fnt *ts = src->addFont(nullptr);
        ts->setBold(true);
        ts->setName("Verdana");
        ts->setColor(COLOR_GREEN);
        fs->setFont(ts);
        BookPtr dst = newBook(GetParam());
        dst->addSheet("S", nullptr);
        dst->addCustomNumFormat("0.0");
        const int fonts = dst->fontSize(), formats = dst->formatSize();
        dst->addFormat(fs);
        EXPECT_EQ(dst->fontSize(), fonts + 1);
        ASSERT_EQ(dst->formatSize(), formats + 1);
        BookPtr r = reloaded(GetParam(), *dst);
        Fmt *f = r->format(formats);
        ASSERT_NE(f->font(), nullptr);
        EXPECT_EQ(std::make_tuple(f->borderLeft(), f->borderLeftColor(), f->fillPattern(),
                                  f->patternForegroundColor(), f->rotation(), f->font()->bold(),
                                  std::string(f->font()->name()), f->font()->color()),
                  std::make_tuple(BORDERSTYLE_THIN, COLOR_RED, FILLPATTERN_SOLID, COLOR_BLUE, 90,
                                  true, std::string("Verdana"), COLOR_GREEN));
        EXPECT_STREQ(r->customNumFormat(f->numFormat()), "yyyy-mm-dd");
        EXPECT_NE(f->numFormat(), r->addCustomNumFormat("0.0"));
    }
}

TEST_P(Styles, DefaultFontAndColours) {
    BookPtr b = newBook(GetParam());
    int size = 0;
    const std::string name = b->defaultFont(&size);
    EXPECT_EQ(name + std::to_string(size), binary() ? "Arial10" : "Calibri11");
    b->setDefaultFont("Liberation Sans", 9);
    EXPECT_STREQ(b->font(0)->name(), "Liberation Sans");
    EXPECT_EQ(b->font(0)->size(), 9);
    // A new Open XML font starts as the default one; a binary one as Arial 10.
    EXPECT_EQ(b->addFont(nullptr)->size(), binary() ? 10 : 9);
    int r = 0, g = 0, bl = 0;
    b->colorUnpack(b->colorPack(1, 2, 3), &r, &g, &bl);
    EXPECT_EQ(r * 10000 + g * 100 + bl, 10203);
}

// The wide twins of each kind take texts beyond one byte alike.
TEST_P(Styles, WideBooksKeepFontNamesAndFormatCodes) {
    auto *b = static_cast<IBookT<wchar_t> *>(binary() ? tbCreateBookW() : tbCreateXMLBookW());
    b->addSheet(L"S", nullptr);
    const wchar_t *code = L"[$\u20ac-2] #,##0;[Red]\"\u5B8B\"";
    const int id = b->addCustomNumFormat(code);
    IFontT<wchar_t> *font = b->addFont(nullptr);
    EXPECT_TRUE(font->setName(L"\x5B8B\x4F53"));
    IFormatT<wchar_t> *f = b->addFormat(nullptr);
    EXPECT_TRUE(f->setFont(font));
    f->setNumFormat(id);
    const char *data = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(b->saveRaw(&data, &size));
    auto *r = static_cast<IBookT<wchar_t> *>(binary() ? tbCreateBookW() : tbCreateXMLBookW());
    ASSERT_TRUE(r->loadRaw(data, size)) << r->errorMessage();
    EXPECT_STREQ(r->customNumFormat(id), code);
    EXPECT_STREQ(r->format(r->formatSize() - 1)->font()->name(), L"\x5B8B\x4F53");
    r->release();
    b->release();
}

INSTANTIATE_TEST_SUITE_P(Kinds, Styles, ::testing::ValuesIn(kBookKinds), kindName);

} // namespace
