// Sheet settings through the public sheet interface of each kind of book:
// printout, window, protection, page breaks, print area and titles, named
// ranges and visibility survive a save and a load, and refused changes
// give their messages.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"
#include "support/book_kinds.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>

using namespace tabrix;
using namespace bookkinds;

namespace {

using Sheet = ISheetT<char>;

// The kind of book the running test was given.
const BookKind *gKind = &kBookKinds[0];

class SheetSettings : public ::testing::TestWithParam<BookKind> {
protected:
    void SetUp() override { gKind = &GetParam(); }
};

BookPtr newBook() { return bookkinds::newBook(*gKind); }
BookPtr reloaded(IBookT<char> &b) { return bookkinds::reloaded(*gKind, b); }

std::string text(const char *t) { return t ? t : "(null)"; }

template <class... T> std::string join(T... values) {
    std::ostringstream os;
    ((os << values << ' '), ...);
    std::string s = os.str();
    s.pop_back();
    return s;
}

std::string range(bool found, int rf, int rl, int cf, int cl) {
    return found ? join(rf, rl, cf, cl) : "none";
}

// Every setting a sheet reports, by name.
std::map<std::string, std::string> settingsOf(Sheet &s) {
    std::map<std::string, std::string> m;
    int a = -1, b = -1, c = -1, d = -1;
    m["landscape"] = join(s.landscape());
    m["paper"] = join(int(s.paper()));
    m["printZoom"] = join(s.printZoom());
    bool fit = s.getPrintFit(&a, &b);
    m["printFit"] = join(fit, a, b);
    m["margins"] = join(s.marginLeft(), s.marginRight(), s.marginTop(), s.marginBottom());
    m["header"] = text(s.header()) + " @" + join(s.headerMargin());
    m["footer"] = text(s.footer()) + " @" + join(s.footerMargin());
    m["centre"] = join(s.hCenter(), s.vCenter());
    m["gridlines"] = join(s.printGridlines(), s.displayGridlines());
    m["printRowCol"] = join(s.printRowCol());
    m["zoom"] = join(s.zoom());
    m["protect"] = join(s.protect());
    m["rightToLeft"] = join(s.rightToLeft());
    s.getTopLeftView(&a, &b);
    m["topLeft"] = join(a, b);
    m["summary"] = join(s.groupSummaryBelow(), s.groupSummaryRight());
    std::string breaks;
    for (int i = 0; i < s.getHorPageBreakSize(); ++i) breaks += "r" + join(s.getHorPageBreak(i));
    for (int i = 0; i < s.getVerPageBreakSize(); ++i) breaks += "c" + join(s.getVerPageBreak(i));
    m["breaks"] = breaks;
    m["hidden"] = join(int(s.hidden()));
    for (int i = 0; i < s.namedRangeSize(); ++i) {
        int scope = 0;
        bool hidden = true;
        const char *name = s.namedRange(i, &a, &b, &c, &d, &scope, &hidden);
        m["name " + join(i)] = text(name) + ": " + join(a, b, c, d, scope, hidden);
    }
    return m;
}

TEST_P(SheetSettings, ComeBackFromASavedBook) {
    BookPtr book = newBook();
    Sheet *s = book->addSheet("Setup", nullptr);
    Sheet *t = book->addSheet("Other", nullptr);
    Sheet *u = book->addSheet("Third", nullptr);
    ASSERT_TRUE(s && t && u);
    s->setLandscape(true);
    s->setPaper(PAPER_A4);
    s->setPrintFit(1, 3);
    s->setMarginLeft(0.5);
    s->setMarginRight(0.6);
    s->setMarginTop(0.7);
    s->setMarginBottom(0.8);
    EXPECT_TRUE(s->setHeader("&CQuarterly report \xc3\xa9t\xc3\xa9", 0.3));
    EXPECT_TRUE(s->setFooter("&RPage &P", 0.35));
    s->setHCenter(true);
    s->setVCenter(true);
    s->setPrintGridlines(true);
    s->setDisplayGridlines(false);
    s->setPrintRowCol(true);
    s->setZoom(150);
    s->setProtect(true);
    s->setTopLeftView(5, 2);
    s->setGroupSummaryBelow(false);
    EXPECT_TRUE(s->setHorPageBreak(20, true));
    EXPECT_TRUE(s->setVerPageBreak(4, true));
    s->setPrintArea(1, 9, 1, 3);
    s->setPrintRepeatRows(0, 1);
    EXPECT_TRUE(s->setNamedRange("prices", 1, 3, 1, 1, -1));
    EXPECT_TRUE(s->setNamedRange("local", 4, 4, 2, 2, -2));
    t->setPrintZoom(60);
    t->setRightToLeft(true);
    EXPECT_TRUE(t->setNamedRange("codes", 0, 9, 0, 0, 1));
    EXPECT_TRUE(u->setHidden(SHEETSTATE_HIDDEN));

    // Open XML keeps the built-in names as stored, and its print titles
    // name whole rows, without columns.
    const bool xml = std::string(GetParam().name) == "xlsx";
    const std::string area = xml ? "_xlnm.Print_Area" : "Print_Area";
    std::map<std::string, std::string> expected = {
        {"landscape", "1"},
        {"paper", "9"},
        {"printZoom", "100"},
        {"printFit", "1 1 3"},
        {"margins", "0.5 0.6 0.7 0.8"},
        {"header", "&CQuarterly report \xc3\xa9t\xc3\xa9 @0.3"},
        {"footer", "&RPage &P @0.35"},
        {"centre", "1 1"},
        {"gridlines", "1 0"},
        {"printRowCol", "1"},
        {"zoom", "150"},
        {"protect", "1"},
        {"rightToLeft", "0"},
        {"topLeft", "5 2"},
        {"summary", "0 1"},
        {"breaks", "r20c4"},
        {"hidden", "0"},
        {"name 0", area + ": 1 9 1 3 0 0"},
        {"name 1", xml ? "_xlnm.Print_Titles: 0 1 -1 -1 0 0" : "Print_Titles: 0 1 0 255 0 0"},
        {"name 2", "prices: 1 3 1 1 -1 0"},
        {"name 3", "local: 4 4 2 2 0 0"},
    };
    EXPECT_EQ(settingsOf(*s), expected);

    BookPtr back = reloaded(*book);
    ASSERT_EQ(back->sheetCount(), 3);
    EXPECT_EQ(settingsOf(*back->getSheet(0)), expected);
    std::map<std::string, std::string> other = settingsOf(*back->getSheet(1));
    const std::map<std::string, std::string> otherWant = {
        {"printZoom", "60"},  {"printFit", "0 1 1"},
        {"rightToLeft", "1"}, {"name 0", "codes: 0 9 0 0 1 0"},
        {"landscape", "0"},   {"paper", "0"}};
    for (const auto &kv : otherWant) EXPECT_EQ(other[kv.first], kv.second) << kv.first;
    EXPECT_EQ(settingsOf(*back->getSheet(2))["hidden"], "1");

    // Found by name in any case, in the scope asked for.
    Sheet &s2 = *back->getSheet(0);
    int rf = -1, rl = -1, cf = -1, cl = -1;
    bool hidden = true;
    bool found = s2.getNamedRange("PRICES", &rf, &rl, &cf, &cl, -1, &hidden);
    EXPECT_EQ(range(found, rf, rl, cf, cl), "1 3 1 1");
    EXPECT_FALSE(hidden);
    found = s2.getNamedRange(area.c_str(), &rf, &rl, &cf, &cl, -2, nullptr);
    EXPECT_EQ(range(found, rf, rl, cf, cl), "1 9 1 3");
    EXPECT_FALSE(s2.getNamedRange("local", &rf, &rl, &cf, &cl, -1, nullptr));
    EXPECT_STREQ(back->errorMessage(), "named range is not found");
}

TEST_P(SheetSettings, EditsOfNamesAndRefusedChanges) {
    // Where Open XML books answer otherwise, the last two columns say how.
    struct Case {
        const char *what;
        std::function<bool(IBookT<char> &, Sheet &)> run;
        bool ok;
        const char *message;
        bool xmlOk;
        const char *xmlMessage;
    };
    const Case cases[] = {
        {"blank in a name",
         [](IBookT<char> &, Sheet &s) { return s.setNamedRange("two words", 0, 0, 0, 0, -1); },
         false, "space symbol isn't allowed", false, "space symbol isn't allowed"},
        {"delete a name that isn't there",
         [](IBookT<char> &, Sheet &s) { return s.delNamedRange("nothing", -1); }, false,
         "named range is not found", false, "named range not found"},
        {"name out of range",
         [](IBookT<char> &, Sheet &s) { return s.setNamedRange("far", 0, 1048576, 0, 0, -1); },
         false, "row must be in range 0-65535", false, "row must be in range 0-1048575"},
        {"hide the last visible sheet",
         [](IBookT<char> &b, Sheet &s) {
             return b.getSheet(1)->setHidden(SHEETSTATE_HIDDEN) &&
                    s.setHidden(SHEETSTATE_VERYHIDDEN);
         },
         false, "a workbook must contain at least one visible worksheet", false,
         "a workbook must contain at least one visible worksheet"},
        {"page break twice",
         [](IBookT<char> &, Sheet &s) {
             return s.setHorPageBreak(3, true) && s.setHorPageBreak(3, true);
         },
         false, "pagebreak already exists", true, "ok"},
        {"remove a missing break",
         [](IBookT<char> &, Sheet &s) { return s.setVerPageBreak(3, false); }, false,
         "pagebreak not found", false, "pagebreak not found"},
        {"top left view outside the sheet",
         [](IBookT<char> &, Sheet &s) {
             s.setTopLeftView(0, 16384);
             return false;
         },
         false, "col must be in range 0-255", false, "col must be in range 0-16383"},
        {"print area set twice keeps one name",
         [](IBookT<char> &, Sheet &s) {
             s.setPrintArea(0, 1, 0, 1);
             s.setPrintArea(2, 3, 2, 3);
             return s.namedRangeSize() == 1;
         },
         true, "ok", true, "ok"},
        {"a cell name set again keeps its first corner",
         [](IBookT<char> &, Sheet &s) {
             int rf, rl, cf, cl;
             return s.setNamedRange("spot", 1, 1, 1, 1, -1) &&
                    s.setNamedRange("spot", 4, 8, 4, 8, -1) &&
                    s.getNamedRange("spot", &rf, &rl, &cf, &cl, -1, nullptr) && rf == 4 &&
                    rl == 4 && cf == 4 && cl == 4;
         },
         true, "ok", false, "ok"},
        {"renaming keeps the names citing the sheet",
         [](IBookT<char> &, Sheet &s) {
             s.setName("First one");
             return s.setNamedRange("spot", 1, 1, 1, 1, -1) && (s.setName("Last one"), true) &&
                    s.namedRangeSize() == 1 && std::string(s.name()) == "Last one";
         },
         true, "ok", true, "ok"},
        {"hiding the active sheet activates the next",
         [](IBookT<char> &b, Sheet &s) {
             b.setActiveSheet(0);
             return s.setHidden(SHEETSTATE_HIDDEN) && b.activeSheet() == 1;
         },
         true, "ok", true, "ok"},
        {"delete by sheet scope",
         [](IBookT<char> &, Sheet &s) {
             return s.setNamedRange("gone", 0, 3, 0, 0, -2) && s.delNamedRange("GONE", -2) &&
                    s.namedRangeSize() == 0;
         },
         true, "ok", false, "named range not found"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        BookPtr book = newBook();
        Sheet *s = book->addSheet("One", nullptr);
        ASSERT_TRUE(book->addSheet("Two", nullptr));
        const bool xml = std::string(GetParam().name) == "xlsx";
        EXPECT_EQ(c.run(*book, *s), xml ? c.xmlOk : c.ok);
        EXPECT_STREQ(book->errorMessage(), xml ? c.xmlMessage : c.message);
    }
}

} // namespace

namespace {

// The sheet list: the active sheet follows its sheet, names are unique in
// any case and cut at 31 characters, indexes are checked, a deleted
// sheet's handle stays usable and the last sheet stays.
TEST_P(SheetSettings, SheetListOperations) {
    BookPtr b = newBook();
    Sheet *first = b->addSheet("Sheet1", nullptr);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(b->activeSheet(), 0);

    // The active sheet moves with its sheet.
    Sheet *front = b->insertSheet(0, "Front", nullptr);
    ASSERT_NE(front, nullptr);
    EXPECT_EQ(b->activeSheet(), 1);
    EXPECT_EQ(b->getSheet(1), first);

    EXPECT_EQ(b->addSheet("SHEET1", nullptr), nullptr);
    EXPECT_STREQ(b->errorMessage(), "book already contains such sheet name");

    std::string forty(40, 'x');
    Sheet *longName = b->addSheet(forty.c_str(), nullptr);
    ASSERT_NE(longName, nullptr);
    EXPECT_STREQ(b->errorMessage(), "warning: sheet's name is cut to 31 characters");
    EXPECT_EQ(std::string(longName->name()), std::string(31, 'x'));
    // 31 code points of UTF-8, not 31 bytes.
    std::string wide;
    for (int i = 0; i < 40; ++i) wide += "\xC3\xA9";
    Sheet *accents = b->addSheet(wide.c_str(), nullptr);
    ASSERT_NE(accents, nullptr);
    EXPECT_EQ(std::string(accents->name()), wide.substr(0, 62));

    struct Bad {
        const char *what;
        std::function<bool()> call;
        const char *message;
    };
    const Bad bad[] = {
        {"getSheet -1", [&] { return b->getSheet(-1) == nullptr; }, "index is out of range"},
        {"getSheet 4", [&] { return b->getSheet(4) == nullptr; }, "index is out of range"},
        {"sheetType 9", [&] { return b->sheetType(9) == SHEETTYPE_UNKNOWN; },
         "index is out of range"},
        {"insert 5", [&] { return b->insertSheet(5, "x", nullptr) == nullptr; },
         "index is out of range"},
        {"delSheet 4", [&] { return !b->delSheet(4); }, "index is out of range"},
        {"setActive 4",
         [&] {
             b->setActiveSheet(4);
             return true;
         },
         "index is out of range"},
        {"sheetType 0", [&] { return b->sheetType(0) == SHEETTYPE_SHEET; }, "ok"},
    };
    for (const Bad &c : bad) {
        SCOPED_TRACE(c.what);
        EXPECT_TRUE(c.call());
        EXPECT_STREQ(b->errorMessage(), c.message);
    }
    EXPECT_EQ(b->activeSheet(), 1);

    b->setActiveSheet(3);
    EXPECT_TRUE(b->delSheet(3));
    EXPECT_EQ(b->activeSheet(), 2);
    EXPECT_EQ(b->sheetCount(), 3);
    if (GetParam().deletedSheetsStay) {
        EXPECT_STREQ(accents->name(), wide.substr(0, 62).c_str());
    }
    EXPECT_TRUE(b->delSheet(0));
    EXPECT_TRUE(b->delSheet(0));
    EXPECT_FALSE(b->delSheet(0));
    EXPECT_STREQ(b->errorMessage(), "can't remove the last sheet in workbook");
    EXPECT_EQ(b->getSheet(0), longName);

    // A name keeps as many whole characters as fit 31 UTF-16 units.
    const std::string smile = "\xF0\x9F\x98\x80";
    Sheet *s = b->addSheet((std::string(30, 'a') + smile).c_str(), nullptr);
    ASSERT_NE(s, nullptr);
    EXPECT_STREQ(b->errorMessage(), "warning: sheet's name is cut to 31 characters");
    EXPECT_EQ(std::string(s->name()), std::string(30, 'a'));
    s = b->addSheet((std::string(29, 'b') + smile).c_str(), nullptr);
    ASSERT_NE(s, nullptr);
    EXPECT_STREQ(b->errorMessage(), "ok");
    EXPECT_EQ(std::string(s->name()), std::string(29, 'b') + smile);

    std::unique_ptr<BookImplT<wchar_t>, void (*)(BookImplT<wchar_t> *)> wideBook(
        new BinaryBookT<wchar_t>(), [](BookImplT<wchar_t> *b) { b->release(); });
    ISheetT<wchar_t> *w =
        wideBook->addSheet((std::wstring(30, L'c') + L"\U0001F600").c_str(), nullptr);
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(std::wstring(w->name()), std::wstring(30, L'c'));
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Kinds, SheetSettings, ::testing::ValuesIn(kBookKinds), kindName);
