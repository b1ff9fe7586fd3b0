// Fonts, formats and the palette at the level of their records: bad
// records and their messages, font numbering, an empty table and the
// palette.
#include "biff/style_table.h"
#include "support/record_trip.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Table = StyleTable<char>;
using XF = FormatImplT<char>;
using Font = FontImplT<char>;

XF *newFormat(Table &t) { return static_cast<XF *>(t.addFormat(nullptr)); }
Font *newFont(Table &t) { return static_cast<Font *>(t.addFont(nullptr)); }

TEST(StylesTest, BadRecordsFailWithTheirMessage) {
    Bytes fontNoName(14, 0);                          // a name of count 0 has no flags byte
    Bytes fontLongName = Bytes(14, 0) + Bytes{40, 0}; // 40 characters, 0 present
    Bytes palette = words({3}) + Bytes(8);
    Bytes styleExtra = words({0x8000}) + Bytes{0, 0xFF, 0, 0};
    Table t;
    t.init();
    MemPool pool;
    struct Case {
        const char *what;
        uint16_t id;
        Bytes data;
        std::function<void(Xls<char> &, uint16_t)> reader;
        std::string message;
    };
    auto font = [&](Xls<char> &x, uint16_t s) { Font(&t).read(x, s, false); };
    auto xf = [&](Xls<char> &x, uint16_t s) { XF(&t).read(x, s, false); };
    auto style = [&](Xls<char> &x, uint16_t s) { Style().read(x, s, false, pool); };
    const Case cases[] = {
        {"font too short", 49, Bytes(13, 0), font, "Font size is incorrect"},
        {"font name missing", 49, fontNoName, font, "error in Font record"},
        {"font name too long", 49, fontLongName, font, "error in Font record"},
        {"xf cut in a field", 224, Bytes(7, 0), xf, "XF size is incorrect"},
        {"xf ends at a field", 224, Bytes(10, 0), xf, ""},
        {"format too short",
         1054,
         {1, 0},
         [&](Xls<char> &x, uint16_t s) { Format().read(x, s, false, pool); },
         "Format size is incorrect"},
        {"style too long", 659, styleExtra, style, "Style size is incorrect"},
        {"style one spare byte", 659, {0x00, 0x80, 0, 0xFF, 0}, style, ""},
        {"palette count mismatch", 146, palette,
         [&](Xls<char> &x, uint16_t s) { Palette().read(x, s); }, "Palette size is incorrect"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(errorOf([&] { readSized(rec(c.id, c.data) + rec(0x0A, {}), c.reader); }),
                  c.message);
    }
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
    Opened o(writeBook([&](Xls<char> &x) { t.palette().write(x); }));
    uint16_t id = 0, size = 0;
    o.x.readInt16(id);
    o.x.readInt16(size);
    EXPECT_EQ(size, 2 + 56 * 4);
    back.read(o.x, size);
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

TEST(StylesTest, EmptyTableHasNoDefaultFont) {
    int size = 0;
    Table empty;
    EXPECT_EQ(empty.defaultFont(&size), nullptr);
    EXPECT_STREQ(empty.errorMessage(), "fonts is empty");
    empty.setDefaultFont("Arial", 10);
    EXPECT_STREQ(empty.errorMessage(), "fonts is empty");
}

} // namespace
