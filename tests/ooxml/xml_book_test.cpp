// The Open XML book: its messages, sheet types, the active tab and scoped
// names through sheet edits, and templates by extension.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>

#include "support/packages.h"
#include "tabrix.h"

using namespace tabrix;

namespace {

using namespace packages;

struct Book {
    IBookT<char> *b = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    ~Book() { b->release(); }
    IBookT<char> *operator->() { return b; }
    std::string msg() { return b->errorMessage(); }
    bool loadRaw(const Parts &p) {
        const std::string bytes = zip(p);
        return b->loadRaw(bytes.data(), unsigned(bytes.size()));
    }
};

bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

TEST(XMLBook, Messages) {
    struct Case {
        const char *what;
        std::function<bool(Book &)> act; // true when the call answered success
        bool succeeds;
        const char *message;
    };
    const std::string longName(40, 'x');
    Parts noWorkbookRels = workbook({"worksheets/sheet1.xml"});
    noWorkbookRels.erase(L"/xl/_rels/workbook.xml.rels");
    Parts noTypes = workbook({"worksheets/sheet1.xml"});
    noTypes.erase(L"/[Content_Types].xml");
    const Case cases[] = {
        {"getSheet past the end", [](Book &b) { return b->getSheet(2) != nullptr; }, false,
         "index is out of range"},
        {"insert past the end", [](Book &b) { return b->insertSheet(3, "x", nullptr) != nullptr; },
         false, "index is out of range"},
        {"name taken in another case",
         [](Book &b) { return b->addSheet("TWO", nullptr) != nullptr; }, false,
         "book already contains such sheet name"},
        {"name over 31 characters",
         [&](Book &b) {
             ISheetT<char> *s = b->addSheet(longName.c_str(), nullptr);
             return s && std::string(s->name()) == longName.substr(0, 31) &&
                    b->addSheet(longName.c_str(), nullptr) == nullptr &&
                    s->setHidden(SHEETSTATE_HIDDEN) && (s->setName(longName.c_str()), true);
         },
         true, "warning: sheet's name is cut to 31 characters"},
        {"rename to a name taken", [](Book &b) { return b->getSheet(1)->setName("one"), false; },
         false, "book already contains such sheet name"},
        {"delete out of range", [](Book &b) { return b->delSheet(-1); }, false,
         "index is out of range"},
        {"delete the last sheet", [](Book &b) { return b->delSheet(0) && b->delSheet(0); }, false,
         "can't remove the last sheet in workbook"},
        {"hide every sheet",
         [](Book &b) {
             return b->getSheet(0)->setHidden(SHEETSTATE_HIDDEN) &&
                    b->getSheet(1)->setHidden(SHEETSTATE_VERYHIDDEN);
         },
         false, "a workbook must contain at least one visible worksheet"},
        {"empty memory", [](Book &b) { return b->loadRaw("", 0); }, false, "data is empty"},
        {"no workbook relationships", [&](Book &b) { return b.loadRaw(noWorkbookRels); }, false,
         "workbook relationships not found"},
        {"no content types", [&](Book &b) { return b.loadRaw(noTypes); }, false,
         "content types not found"},
        {"picture of unknown bytes", [](Book &b) { return b->addPicture2("GIF89a..", 8) >= 0; },
         false, "unknown picture format"},
        {"picture too short", [](Book &b) { return b->addPicture2("\x89PNG", 4) >= 0; }, false,
         "unknown picture format"},
        {"picture file missing", [](Book &b) { return b->addPicture("/no/such.png") >= 0; }, false,
         "can't open file"},
        {"picture index", [](Book &b) { return b->getPicture(0, nullptr, nullptr) != 255; }, false,
         "index is out of range"},
        {"bad locale", [](Book &b) { return b->setLocale("no_such_LOCALE.xyz"); }, false,
         "setlocale error"},
        {"font name not UTF-8",
         [](Book &b) { return b->setLocale("UTF-8") && b->addFont(nullptr)->setName("\xff"); },
         false, "Invalid UTF-8"},
        {"active sheet out of range", [](Book &b) { return b->setActiveSheet(5), false; }, false,
         "index is out of range"},
    };
    for (const Case &c : cases) {
        Book b;
        ASSERT_NE(b->addSheet("One", nullptr), nullptr);
        ASSERT_NE(b->addSheet("Two", nullptr), nullptr);
        EXPECT_EQ(c.act(b), c.succeeds) << c.what;
        EXPECT_EQ(b.msg(), c.message) << c.what;
    }
}

// A sheet entry's part decides its type; only worksheets are handed out.
// Inserting before the active tab moves it on; a name scoped to a sheet
// moves with the sheets inserted and deleted before it.
TEST(XMLBook, SheetTypesActiveTabAndScopedNames) {
    Parts p = workbook({"worksheets/sheet1.xml", "other/sheet2.xml"},
                       "<definedNames><definedName name=\"b\" localSheetId=\"1\">S2!$A$1"
                       "</definedName></definedNames>");
    std::string &types = p[L"/[Content_Types].xml"];
    const std::string from = "/xl/other/sheet2.xml\" ContentType=\"";
    const size_t at = types.find(from) + from.size();
    types.replace(at, types.find('"', at) - at,
                  "application/vnd.openxmlformats-officedocument.spreadsheetml.dialogsheet+xml");
    Book b;
    ASSERT_TRUE(b.loadRaw(p)) << b.msg();
    EXPECT_EQ(b->sheetType(1), SHEETTYPE_UNKNOWN);
    EXPECT_EQ(b->getSheet(1), nullptr);
    EXPECT_EQ(b.msg(), "sheet not found");
    ASSERT_NE(b->insertSheet(0, "First", nullptr), nullptr) << b.msg();
    EXPECT_EQ(b->activeSheet(), 1);
    EXPECT_TRUE(has(saved(*b.b)[L"/xl/workbook.xml"], "name=\"b\" localSheetId=\"2\""));
    ASSERT_TRUE(b->delSheet(0)) << b.msg();
    EXPECT_TRUE(has(saved(*b.b)[L"/xl/workbook.xml"], "name=\"b\" localSheetId=\"1\""));
}

TEST(XMLBook, TemplateByExtension) {
    const struct {
        bool setTemplate;
        const char *file;
        bool isTemplate;
    } cases[] = {{false, "t.xltx", true},
                 {true, "t.xlsx", false},
                 {true, "t.xlsm", false},
                 {true, "t.xltm", true}};
    for (const auto &c : cases) {
        Book b;
        b->addSheet("a", nullptr);
        b->setTemplate(c.setTemplate);
        const std::string path = ::testing::TempDir() + c.file;
        ASSERT_TRUE(b->save(path.c_str())) << b.msg();
        EXPECT_EQ(b->isTemplate(), c.isTemplate) << c.file;
        std::remove(path.c_str());
    }
}

} // namespace

// A sheet copied from another keeps its formulas, read in or written,
// after the sheet it came from is gone with the memory of its cells.
TEST(XMLBook, CopiedSheetOutlivesItsSource) {
    Book first;
    first->setLocale("UTF-8");
    ISheetT<char> *s = first->addSheet("Source", nullptr);
    for (int r = 0; r < 3000; ++r) ASSERT_TRUE(s->writeFormula(r, 0, "SUM(B1;C1)", nullptr));
    const char *bytes = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(first->saveRaw(&bytes, &size)) << first.msg();
    Book b;
    b->setLocale("UTF-8");
    ASSERT_TRUE(b->loadRaw(bytes, size)) << b.msg();
    ASSERT_TRUE(b->getSheet(0)->writeFormula(3000, 0, "=IF(A1;\"x,y\";2)", nullptr));
    ASSERT_NE(b->addSheet("Copy", b->getSheet(0)), nullptr) << b.msg();
    ASSERT_TRUE(b->delSheet(0)) << b.msg();
    ISheetT<char> *copy = b->getSheet(0);
    EXPECT_STREQ(copy->readFormula(2999, 0, nullptr), "SUM(B1;C1)");
    EXPECT_STREQ(copy->readFormula(3000, 0, nullptr), "IF(A1;\"x,y\";2)");
    ASSERT_TRUE(copy->writeFormula(0, 0, "SUM(B1;C1;D1)", nullptr));
    EXPECT_STREQ(copy->readFormula(0, 0, nullptr), "SUM(B1;C1;D1)");
    bool stored = false;
    for (const auto &part : saved(*b.b))
        stored = stored || has(part.second, "<f>IF(A1,\"x,y\",2)</f>");
    EXPECT_TRUE(stored);
}
