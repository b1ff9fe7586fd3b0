// What only the Open XML stylesheet has: its messages, colours in both
// modes and between books, shared borders and fills, unnamed fonts.
#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "book/book_factory.h"
#include "ooxml/styles/styles.h"
#include "support/xml_parts.h"

using namespace tabrix;
using binding::e_edition;
using binding::STRICT;
using binding::TRANSITIONAL;

namespace {

const char *const kNs = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

// A stylesheet of `body` in the Transitional namespace.
std::string sheetXml(const std::string &body) {
    return std::string("<styleSheet xmlns=\"") + kNs + "\">" + body + "</styleSheet>";
}

template <class C>
std::unique_ptr<Styles<C>> loaded(const std::string &xml, e_edition ed = TRANSITIONAL) {
    return std::make_unique<Styles<C>>(ed, xml.data(), xml.size(), true);
}

template <class C> std::string saved(Styles<C> &s) {
    std::string out;
    s.save(out);
    return out;
}

std::string failure(const std::function<void()> &op) {
    try {
        op();
    } catch (const std::exception &e) {
        return e.what();
    }
    return "no failure";
}

std::string num(long v) { return std::to_string(v); }

} // namespace

TEST(Styles, FailuresCarryTheirMessages) {
    const std::string noFonts = sheetXml("<cellXfs count=\"1\"><xf/></cellXfs>");
    std::string allTaken;
    for (int id = 164; id <= 392; ++id)
        allTaken += "<numFmt numFmtId=\"" + num(id) + "\" formatCode=\"0." +
                    std::string(id - 163, '0') + "\"/>";
    allTaken = sheetXml("<numFmts>" + allTaken + "</numFmts>");
    Styles<char> other(TRANSITIONAL, true);
    const struct {
        const char *name;
        std::function<void()> op;
        std::string text;
    } rows[] = {
        {"foreign format", [&] { Styles<char>(TRANSITIONAL, true).getStyleID(other.format(0)); },
         "unknown format"},
        {"null format", [] { Styles<char>(TRANSITIONAL, true).getStyleID(nullptr); },
         "unknown format"},
        {"addFont without fonts", [&] { loaded<char>(noFonts)->addFont(nullptr); },
         "fonts are not found"},
        {"setDefaultFont without fonts",
         [&] { loaded<char>(noFonts)->setDefaultFont("Arial", 10); }, "fonts are not found"},
        {"defaultFont without fonts", [&] { loaded<char>(noFonts)->defaultFont(nullptr); },
         "fonts are not found"},
        {"rgb of two bytes", [] { Styles<char>(TRANSITIONAL, true).colorFromRGB("FF00"); },
         "rgb color is invalid"},
        {"rgb not hex", [] { Styles<char>(TRANSITIONAL, true).colorFromRGB("FFGG0000"); },
         "rgb color is invalid"},
        {"custom ids used up", [&] { loaded<char>(allTaken)->addCustomNumFormat("new"); },
         "maximum number of custom formats is exceeded"},
        {"unknown child", [] { loaded<char>(sheetXml("<bogus/>")); },
         lmx::get_error_description(lmx::ELMX_BAD_END_OF_ELEMENT)},
        {"other root", [] { loaded<char>("<worksheet xmlns=\"" + std::string(kNs) + "\"/>"); },
         lmx::get_error_description(lmx::ELMX_ELEMENT_NOT_FOUND)},
        {"Transitional read as Strict", [] { loaded<char>(sheetXml(""), STRICT); },
         lmx::get_error_description(lmx::ELMX_ELEMENT_NOT_FOUND)},
    };
    for (const auto &r : rows) EXPECT_EQ(failure(r.op), r.text) << r.name;
    // A loaded file keeps formats beyond the handed-out range, and the same text finds its id.
    EXPECT_EQ(loaded<char>(allTaken)->addCustomNumFormat("0.0"), 164);
}

TEST(Styles, ColoursReadInBothModesAndWriteAsTheModeSays) {
    const std::string palette = "<colors><indexedColors><rgbColor rgb=\"FF000000\"/><rgbColor "
                                "rgb=\"FF010203\"/></indexedColors></colors>";
    const struct {
        bool rgb;
        const char *color; // attributes of the font's colour element
        bool customPalette;
        int want;
    } rows[] = {
        {false, "indexed=\"10\"", false, 10},
        {false, "rgb=\"FFFF0000\"", false, 10},
        {false, "rgb=\"FF333399\"", false, 62},
        {false, "rgb=\"FF123456\"", false, -1},
        {false, "rgb=\"80FF0000\"", false, -1},
        {false, "theme=\"1\" tint=\"0.5\"", false, -1},
        {false, "theme=\"1\"", false, -1},
        {false, "auto=\"1\"", false, -1},
        {true, "indexed=\"10\"", false, 0xFF0000},
        {true, "indexed=\"2\"", false, 0xFF0000},
        {true, "indexed=\"63\"", false, 0x333333},
        {true, "indexed=\"64\"", false, -1},
        {true, "rgb=\"FF123456\"", false, 0x123456},
        {true, "indexed=\"1\"", true, 0x010203},
        {true, "indexed=\"5\"", true, 0xFFFF00},
        {true, "theme=\"4\" tint=\"-0.25\"", false, -1},
    };
    for (const auto &r : rows) {
        const std::string xml =
            sheetXml(std::string("<fonts count=\"1\"><font><color ") + r.color +
                     "/><sz val=\"10\"/></font></fonts>" + (r.customPalette ? palette : ""));
        auto s = loaded<char>(xml);
        s->setRgbMode(r.rgb);
        EXPECT_EQ(static_cast<int>(s->font(0)->color()), r.want) << r.color << " rgb " << r.rgb;
        // An untouched colour is written back as it came.
        EXPECT_EQ(xmlparts::canonicalXml(saved(*s)), xmlparts::canonicalXml(xml)) << r.color;
    }
    const struct {
        bool rgb;
        int color;
        const char *written; // empty: no colour element
    } writes[] = {{false, 10, "<color indexed=\"10\"/>"},
                  {true, 0x123456, "<color rgb=\"FF123456\"/>"},
                  {false, 32767, ""},
                  {true, 32767, "<color rgb=\"FF007FFF\"/>"}};
    for (const auto &w : writes) {
        Styles<char> s(TRANSITIONAL, true);
        s.setRgbMode(w.rgb);
        IFontT<char> *f = s.addFont(nullptr);
        f->setColor(Color(w.color));
        const std::string xml = saved(s);
        if (*w.written)
            EXPECT_NE(xml.find(w.written), std::string::npos) << xml;
        else
            EXPECT_EQ(xml.find("<color"), std::string::npos) << xml;
    }
}

TEST(Styles, FormatsCopiedBetweenBooksKeepTheirColours) {
    // Between two Open XML books colours cross as RGB, so one outside the
    // palette survives; both books' modes come back afterwards.
    Styles<char> a(TRANSITIONAL, true), b(STRICT, true);
    a.setRgbMode(true);
    IFormatT<char> *fa = a.addFormat(nullptr);
    fa->setFillPattern(FILLPATTERN_SOLID);
    fa->setPatternForegroundColor(Color(0x123456));
    fa->setBorderBottom(BORDERSTYLE_MEDIUM);
    IFontT<char> *ta = a.addFont(nullptr);
    ta->setColor(Color(0x654321));
    ta->setBold(true);
    fa->setFont(ta);
    a.setRgbMode(false);
    IFormatT<char> *fb = b.addFormat(fa);
    EXPECT_FALSE(a.rgbMode());
    b.setRgbMode(true);
    EXPECT_EQ(static_cast<int>(fb->patternForegroundColor()), 0x123456);
    EXPECT_EQ(static_cast<int>(fb->font()->color()), 0x654321);
    EXPECT_TRUE(fb->font()->bold());
    EXPECT_EQ(fb->borderBottom(), BORDERSTYLE_MEDIUM);
    // From a binary book colours cross as palette indices.
    IBookT<char> *bin = newBinaryBook<char>();
    IFormatT<char> *fx = bin->addFormat(nullptr);
    fx->setBorderLeft(BORDERSTYLE_THIN);
    fx->setBorderLeftColor(COLOR_RED);
    Styles<char> c(TRANSITIONAL, true);
    c.addFormat(fx);
    EXPECT_NE(saved(c).find("<left style=\"thin\"><color indexed=\"10\"/>"), std::string::npos);
    bin->release();
}

TEST(Styles, LoadedBordersAndFillsAreSharedAndTheFirstEntriesStayAlone) {
    const std::string xml =
        sheetXml("<fonts count=\"1\"><font/></fonts>"
                 "<fills count=\"3\"><fill><patternFill "
                 "patternType=\"none\"/></fill><fill><patternFill patternType=\"gray125\"/></fill>"
                 "<fill><patternFill patternType=\"solid\"><fgColor "
                 "indexed=\"10\"/></patternFill></fill></fills>"
                 "<borders count=\"2\"><border/><border><left style=\"thin\"/></border></borders>"
                 "<cellXfs count=\"4\"><xf/><xf borderId=\"1\" fillId=\"2\"/><xf borderId=\"1\" "
                 "fillId=\"2\"/><xf borderId=\"7\"/></cellXfs>");
    auto s = loaded<char>(xml);
    IFormatT<char> *zero = s->format(0), *one = s->format(1), *two = s->format(2),
                   *dangling = s->format(3);
    one->setBorderLeft(BORDERSTYLE_THICK);
    one->setPatternForegroundColor(Color(12));
    EXPECT_EQ(two->borderLeft(), BORDERSTYLE_THICK);
    EXPECT_EQ(two->patternForegroundColor(), COLOR_BLUE);
    zero->setBorderTop(BORDERSTYLE_DOTTED);
    zero->setFillPattern(FILLPATTERN_THINHORCROSSHATCH);
    EXPECT_EQ(dangling->borderLeft(), BORDERSTYLE_NONE);
    dangling->setBorderRight(BORDERSTYLE_HAIR);
    auto r = loaded<char>(saved(*s));
    const std::string again = saved(*r);
    EXPECT_NE(again.find("<borders count=\"4\"><border/>"), std::string::npos) << again;
    EXPECT_NE(again.find("<fills count=\"4\"><fill><patternFill patternType=\"none\"/></fill>"),
              std::string::npos)
        << again;
    EXPECT_EQ(r->format(0)->borderTop(), BORDERSTYLE_DOTTED);
    EXPECT_EQ(r->format(0)->fillPattern(), FILLPATTERN_THINHORCROSSHATCH);
    EXPECT_EQ(r->format(3)->borderRight(), BORDERSTYLE_HAIR);
    EXPECT_EQ(r->format(2)->borderLeft(), BORDERSTYLE_THICK);

    // Lists made for a new format start with a blank entry for the others.
    auto bare = loaded<char>(sheetXml("<cellXfs count=\"1\"><xf/></cellXfs>"));
    IFormatT<char> *added = bare->addFormat(nullptr);
    added->setBorderLeft(BORDERSTYLE_THIN);
    added->setFillPattern(FILLPATTERN_SOLID);
    auto bareAgain = loaded<char>(saved(*bare));
    EXPECT_EQ(bareAgain->format(0)->borderLeft() * 100 + bareAgain->format(0)->fillPattern(), 0);
    EXPECT_EQ(bareAgain->format(1)->borderLeft() * 100 + bareAgain->format(1)->fillPattern(), 101);

    // A new format appends a border of its own, and a pattern a fill.
    Styles<char> n(TRANSITIONAL, true);
    n.addFormat(nullptr)->setFillPattern(FILLPATTERN_SOLID);
    const std::string out = saved(n);
    EXPECT_NE(
        out.find(
            "<fills count=\"3\"><fill><patternFill patternType=\"none\"/></fill><fill><patternFill "
            "patternType=\"gray125\"/></fill><fill><patternFill "
            "patternType=\"solid\"/></fill></fills>"),
        std::string::npos)
        << out;
    EXPECT_NE(out.find("<borders count=\"2\">"), std::string::npos) << out;
    EXPECT_NE(out.find("fillId=\"2\" borderId=\"1\""), std::string::npos) << out;
}

// A font without a name takes the default font's.
TEST(Styles, UnnamedFontTakesTheDefaultName) {
    auto unnamed = loaded<char>(
        sheetXml("<fonts count=\"2\"><font><name val=\"Arial\"/></font><font/></fonts>"));
    EXPECT_STREQ(unnamed->font(1)->name(), "Arial");
}
