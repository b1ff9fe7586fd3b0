// Fonts, formats, custom number formats and the palette at the level of
// their records: field layouts of both versions, bad records and their
// messages, the initial table and the palette.
#include "biff/style_table.h"
#include "biff/support/biff_bytes.h"
#include "biff/support/style_io.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Table = StyleTable<char>;
using XF = FormatImplT<char>;
using Font = FontImplT<char>;

XF *newFormat(Table &t) { return static_cast<XF *>(t.addFormat(nullptr)); }
Font *newFont(Table &t) { return static_cast<Font *>(t.addFont(nullptr)); }

// What the XF record layout itself decides, beyond what the kind suite
// reads back through a book: flags that only add, bits shared by
// neighbouring fields.
TEST(StylesTest, RecordFieldsKeepTheirNeighbours) {
    const struct {
        const char *what;
        std::function<void(XF &)> set;
        std::function<int(XF &)> get;
        int expected;
    } cases[] = {
        {"readOrder only adds", [](XF &f) { f.setReadOrder(2), f.setReadOrder(1); },
         [](XF &f) { return f.readOrder(); }, 3},
        {"style flag", [](XF &f) { f.setStyle(true); }, [](XF &f) { return int(f.style()); }, 1},
        {"colour spills into the next field",
         [](XF &f) { f.setPatternForegroundColor(Color(0x80 | 5)); },
         [](XF &f) { return int(f.patternBackgroundColor()) & 1; }, 1},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        Table t;
        t.init();
        XF *f = newFormat(t);
        c.set(*f);
        XF back(&t);
        styleReadBack([&](Xls<char> &x) { f->write(x); },
                      [&](Xls<char> &x, uint16_t size) { back.read(x, size, false); });
        EXPECT_EQ(c.get(back), c.expected);
    }
}

TEST(StylesTest, Biff5FormatLayoutIsTranslated) {
    std::vector<uint8_t> d;
    put16(d, 3);                               // ifnt
    put16(d, 14);                              // ifmt
    put16(d, 0x0001);                          // flags
    d.push_back(uint8_t(3 | 0x08 | (1 << 4))); // right, wrap, centre
    d.push_back(2);                            // rotation code 2: 90
    put32(d, 10u | (11u << 7) | (1u << 16) | (2u << 22) | (1u << 31));
    put32(d, 1u | (5u << 3) | (6u << 6) | (20u << 9) | (21u << 16) | (22u << 23));
    Table t;
    t.init();
    XF f(&t);
    std::string err =
        styleReadError({{224, d}}, [&](Xls<char> &x, uint16_t size) { f.read(x, size, true); });
    EXPECT_EQ(err, "");
    const std::map<std::string, int> got = {{"ifnt", f.ifnt},
                                            {"ifmt", f.numFormat()},
                                            {"alignH", f.alignH()},
                                            {"wrap", f.wrap()},
                                            {"alignV", f.alignV()},
                                            {"rotation", f.rotation()},
                                            {"fg", f.patternForegroundColor()},
                                            {"bg", f.patternBackgroundColor()},
                                            {"pattern", f.fillPattern()},
                                            {"bottom", f.borderBottom()},
                                            {"bottomColor", f.borderBottomColor()},
                                            {"top", f.borderTop()},
                                            {"left", f.borderLeft()},
                                            {"right", f.borderRight()},
                                            {"topColor", f.borderTopColor()},
                                            {"leftColor", f.borderLeftColor()},
                                            {"rightColor", f.borderRightColor()}};
    const std::map<std::string, int> want = {
        {"ifnt", 3},        {"ifmt", 14},      {"alignH", 3}, {"wrap", 1},    {"alignV", 1},
        {"rotation", 90},   {"fg", 10},        {"bg", 11},    {"pattern", 1}, {"bottom", 2},
        {"bottomColor", 1}, {"top", 1},        {"left", 5},   {"right", 6},   {"topColor", 20},
        {"leftColor", 21},  {"rightColor", 22}};
    EXPECT_EQ(got, want);
}

TEST(StylesTest, BadRecordsFailWithTheirMessage) {
    std::vector<uint8_t> font(14, 0);
    font[13] = 0; // a name of count 0 has no flags byte
    std::vector<uint8_t> fontLongName(16, 0);
    fontLongName[14] = 40; // 40 characters, 0 present
    std::vector<uint8_t> palette;
    put16(palette, 3);
    palette.resize(2 + 8);
    std::vector<uint8_t> styleExtra;
    put16(styleExtra, 0x8000);
    styleExtra.insert(styleExtra.end(), {0, 0xFF, 0, 0});
    Table t;
    t.init();
    MemPool pool;
    struct Case {
        const char *what;
        StyleRecords records;
        std::function<void(Xls<char> &, uint16_t)> reader;
        std::string message;
    };
    const Case cases[] = {
        {"font too short",
         {{49, std::vector<uint8_t>(13, 0)}},
         [&](Xls<char> &x, uint16_t s) { Font(&t).read(x, s, false); },
         "Font size is incorrect"},
        {"font name missing",
         {{49, font}},
         [&](Xls<char> &x, uint16_t s) { Font(&t).read(x, s, false); },
         "error in Font record"},
        {"font name too long",
         {{49, fontLongName}},
         [&](Xls<char> &x, uint16_t s) { Font(&t).read(x, s, false); },
         "error in Font record"},
        {"xf cut in a field",
         {{224, std::vector<uint8_t>(7, 0)}},
         [&](Xls<char> &x, uint16_t s) { XF(&t).read(x, s, false); },
         "XF size is incorrect"},
        {"xf ends at a field",
         {{224, std::vector<uint8_t>(10, 0)}},
         [&](Xls<char> &x, uint16_t s) { XF(&t).read(x, s, false); },
         ""},
        {"format too short",
         {{1054, {1, 0}}},
         [&](Xls<char> &x, uint16_t s) { Format().read(x, s, false, pool); },
         "Format size is incorrect"},
        {"style too long",
         {{659, styleExtra}},
         [&](Xls<char> &x, uint16_t s) { Style().read(x, s, false, pool); },
         "Style size is incorrect"},
        {"style one spare byte",
         {{659, {0x00, 0x80, 0, 0xFF, 0}}},
         [&](Xls<char> &x, uint16_t s) { Style().read(x, s, false, pool); },
         ""},
        {"palette count mismatch",
         {{146, palette}},
         [&](Xls<char> &x, uint16_t s) { Palette().read(x, s); },
         "Palette size is incorrect"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(styleReadError(c.records, c.reader), c.message);
    }
}

TEST(StylesTest, StyleExtUnexpectedRecord) {
    StyleExt e;
    std::string err = errorOf([&] {
        std::vector<uint8_t> wb;
        record(wb, 0x0A, {});
        Opened o(rawBook(wb));
        e.read(o.x);
    });
    EXPECT_EQ(err, "StyleExt: unexpected record");
    // A block keeps the StyleExt that follows its Style.
    StyleBlock b(0x8010, 4);
    b.hasExt = true;
    b.ext.data = {1, 2, 3};
    StyleBlock back;
    MemPool pool;
    uint16_t next = styleReadBack([&](Xls<char> &x) { b.write(x); },
                                  [&](Xls<char> &x, uint16_t s) { back.read(x, s, false, pool); });
    EXPECT_EQ(next, 0x0A);
    EXPECT_TRUE(back.hasExt);
    EXPECT_EQ(back.ext.data, b.ext.data);
    EXPECT_EQ(back.style.builtInStyle, 4);
}

TEST(StylesTest, StylesAndOldFontsReadBack) {
    MemPool pool;
    const struct {
        const char *what;
        uint16_t ixfe;
        const wchar_t *name;
        uint16_t size; // 0: the name decides
    } cases[] = {{"built-in", 0x8013, nullptr, 4}, {"named", 0x0015, L"Heading", 0}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        Style s(c.ixfe, 3);
        if (c.name) s.name.setString(c.name, pool);
        Style back;
        styleReadBack([&](Xls<char> &x) { s.write(x); },
                      [&](Xls<char> &x, uint16_t size) {
                          EXPECT_EQ(size, c.size ? c.size : 2 + s.name.size());
                          back.read(x, size, false, pool);
                      });
        EXPECT_EQ(back.ixfe, c.ixfe);
        EXPECT_EQ(back.builtIn(), c.name == nullptr);
        if (c.name)
            EXPECT_EQ(std::wstring(back.name.text), c.name);
        else
            EXPECT_EQ(back.level, 0xFF);
    }
    // An old font: no flags byte before the name, and trailing bytes skipped.
    std::vector<uint8_t> d;
    for (uint16_t v : {240, 2, 10, 700, 1}) put16(d, v);
    d.insert(d.end(), {1, 2, 0, 0, 4, 'T', 'a', 'h', 'o', 9, 9});
    Table t;
    t.init();
    Font f(&t);
    EXPECT_EQ(styleReadError({{49, d}}, [&](Xls<char> &x, uint16_t s) { f.read(x, s, true); }), "");
    EXPECT_EQ(f.wideName(), L"Taho");
    EXPECT_EQ(f.size(), 12);
    EXPECT_TRUE(f.italic());
    EXPECT_TRUE(f.bold());
    EXPECT_EQ(f.script(), SCRIPT_SUPER);
    EXPECT_EQ(f.underline(), UNDERLINE_SINGLE);
}

// An empty custom code keeps its count and flags byte in its record.
TEST(StylesTest, EmptyFormatCodeReadsBack) {
    Table t;
    t.init();
    EXPECT_EQ(t.addCustomNumFormat(""), 164);
    MemPool pool;
    Format back;
    styleReadBack([&](Xls<char> &x) { t.numFormats()[0].write(x); },
                  [&](Xls<char> &x, uint16_t s) {
                      EXPECT_EQ(s, 5u);
                      back.read(x, s, false, pool);
                  });
    EXPECT_EQ(back.ifmt, 164);
    EXPECT_EQ(std::wstring(back.code.text), L"");
}

TEST(StylesTest, PalettePacking) {
    Table t;
    t.init();
    EXPECT_FALSE(t.paletteChanged());
    EXPECT_EQ(t.colorPack(0, 0, 0), 8);
    EXPECT_TRUE(t.paletteChanged());
    EXPECT_EQ(t.colorPack(1, 2, 3), 9);
    int r = 0, g = 0, b = 0;
    t.colorUnpack(9, &r, &g, &b);
    EXPECT_EQ(std::vector<int>({r, g, b}), std::vector<int>({1, 2, 3}));
    for (int i = 0; i < 54; ++i) EXPECT_EQ(t.colorPack(200, 100, i), 10 + i) << i;
    EXPECT_EQ(t.colorPack(7, 7, 7), 32767);
    EXPECT_STREQ(t.errorMessage(), "no free color index, limit is reached for xls format");
    EXPECT_EQ(t.colorPack(1, 2, 3), 9);
    EXPECT_STREQ(t.errorMessage(), "ok");
    t.colorUnpack(64, &r, &g, &b);
    EXPECT_STREQ(t.errorMessage(), "general failure");
    // The changed palette is written and reads back alike.
    Palette back;
    back.colors.clear();
    styleReadBack([&](Xls<char> &x) { t.palette().write(x); },
                  [&](Xls<char> &x, uint16_t s) {
                      EXPECT_EQ(s, 2 + 56 * 4);
                      back.read(x, s);
                  });
    ASSERT_EQ(back.colors.size(), 56u);
    EXPECT_EQ(back.colors[1].value(), 0x010203u);
    EXPECT_EQ(back.colors[55].value(), 0xC86435u);
}

TEST(StylesTest, FontNumberingSkipsFour) {
    Table t;
    t.init();
    newFont(t); // position 5
    newFont(t); // position 6
    XF *f = newFormat(t);
    const struct {
        int position;
        int readsBack; // -1: "incorrect font"
    } cases[] = {{0, 1}, {1, 2}, {2, 3}, {3, -1}, {4, 4}, {5, 5}, {6, 6}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.position);
        ASSERT_TRUE(f->setFont(t.font(c.position)));
        EXPECT_EQ(f->ifnt, c.position + 1);
        IFontT<char> *got = f->font();
        if (c.readsBack < 0) {
            EXPECT_EQ(got, nullptr);
            EXPECT_STREQ(t.errorMessage(), "incorrect font");
        } else {
            EXPECT_EQ(got, t.font(c.readsBack));
        }
    }
}

TEST(StylesTest, InitialTable) {
    Table t;
    t.init();
    auto recs = styleRecords([&](Xls<char> &x) { t.write(x); });
    std::map<uint16_t, int> count;
    for (const auto &r : recs) ++count[r.first];
    EXPECT_EQ(count, (std::map<uint16_t, int>{{49, 5}, {224, 21}, {659, 6}}));
    const struct {
        int index;
        uint16_t ifnt, ifmt, flags;
        uint32_t alignment;
    } rows[] = {{0, 0, 0, 0xFFF5, 0x20},
                {1, 1, 0, 0xFFF5, 0xFC000020},
                {4, 2, 0, 0xFFF5, 0xFC000020},
                {14, 0, 0, 0xFFF5, 0xFC000020},
                {15, 0, 0, 1, 0x20},
                {16, 1, 44, 0xFFF5, 0xF8000020},
                {19, 1, 43, 0xFFF5, 0xF8000020},
                {20, 1, 41, 0xFFF5, 0}};
    for (const auto &r : rows) {
        SCOPED_TRACE(r.index);
        XF *f = t.formats()[size_t(r.index)];
        EXPECT_EQ(f->ifnt, r.ifnt);
        EXPECT_EQ(f->ifmt, r.ifmt);
        EXPECT_EQ(f->flags, r.flags);
        EXPECT_EQ(f->alignment, r.alignment);
        EXPECT_EQ(f->border1, 0x20400000u | (64u << 16));
        EXPECT_EQ(f->border2, 64u | (64u << 7));
        EXPECT_EQ(f->fill, 0x20C0);
    }
    const uint8_t styles[6] = {4, 7, 0, 5, 3, 6};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(t.styles()[size_t(i)].style.builtInStyle, styles[i]);
    EXPECT_EQ(t.styles()[2].style.ixfe, 0x8000);
    // A packed colour brings the Palette record.
    t.colorPack(1, 1, 1);
    recs = styleRecords([&](Xls<char> &x) { t.write(x); });
    EXPECT_EQ(recs.back().first, 146);
    int size = 0;
    Table empty;
    EXPECT_EQ(empty.defaultFont(&size), nullptr);
    EXPECT_STREQ(empty.errorMessage(), "fonts is empty");
    empty.setDefaultFont("Arial", 10);
    EXPECT_STREQ(empty.errorMessage(), "fonts is empty");
}

// A copy takes the left border colour for the right one too, leaves the
// book's RGB mode alone, and adds a font even within one book.
TEST(StylesTest, AddFormatCopies) {
    Table a;
    a.init();
    XF *src = newFormat(a);
    src->setBorderLeftColor(Color(10));
    src->setBorderRightColor(Color(12));
    src->setBorderTopColor(Color(13));
    src->setFont(newFont(a));
    a.setRgbMode(true);
    XF *copy = static_cast<XF *>(a.addFormat(src));
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(a.rgbMode());
    EXPECT_EQ(copy->flags & 0x4, 0);
    EXPECT_EQ(copy->borderRightColor(), 10);
    EXPECT_EQ(copy->borderTopColor(), 13);
    EXPECT_EQ(a.fontSize(), 7);
    EXPECT_EQ(a.formatSize(), 23);
}

} // namespace
