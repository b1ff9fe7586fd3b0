// The Open XML book: its messages, and packages built here loaded, edited
// and saved, checked part by part in the saved archive.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <string>

#include "ooxml/package/zip_package.h"
#include "ooxml/xml_book_proxy.h"
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

// Sheets added, inserted, copied and deleted: the parts, overrides,
// relations, ids, names and active tab of the saved package.
TEST(XMLBook, SheetsInThePackage) {
    Book b;
    ASSERT_TRUE(b.loadRaw(workbook({"worksheets/sheet1.xml", "worksheets/sheet7.xml"}))) << b.msg();
    ISheetT<char> *added = b->addSheet("New", nullptr);
    ASSERT_NE(added, nullptr);
    Parts p = saved(*b.b);
    ASSERT_TRUE(p.count(L"/xl/worksheets/sheet8.xml"));
    EXPECT_TRUE(has(p[L"/[Content_Types].xml"], "/xl/worksheets/sheet8.xml"));
    EXPECT_TRUE(has(p[L"/xl/_rels/workbook.xml.rels"], "worksheets/sheet8.xml"));
    EXPECT_TRUE(has(p[L"/xl/workbook.xml"], "name=\"New\" sheetId=\"3\""));

    ASSERT_TRUE(b->delSheet(2)) << b.msg();
    p = saved(*b.b);
    EXPECT_FALSE(p.count(L"/xl/worksheets/sheet8.xml"));
    EXPECT_FALSE(has(p[L"/[Content_Types].xml"], "sheet8"));
    EXPECT_FALSE(has(p[L"/xl/_rels/workbook.xml.rels"], "sheet8"));
    ASSERT_NE(b->insertSheet(0, "First", nullptr), nullptr);
    ASSERT_NE(b->insertSheet(2, "Copy", b->getSheet(0)), nullptr);
    p = saved(*b.b);
    EXPECT_TRUE(p.count(L"/xl/worksheets/sheet8.xml"));
    EXPECT_TRUE(p.count(L"/xl/worksheets/sheet9.xml"));
    const std::string names[] = {"First", "S1", "Copy", "S2"};
    ASSERT_EQ(b->sheetCount(), 4);
    for (int i = 0; i < 4; ++i) EXPECT_STREQ(b->getSheet(i)->name(), names[i].c_str());
    // The saved book reads back with the same order.
    Book again;
    const char *bytes = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(b->saveRaw(&bytes, &size));
    ASSERT_TRUE(again->loadRaw(bytes, size)) << again.msg();
    for (int i = 0; i < 4; ++i) EXPECT_STREQ(again->getSheet(i)->name(), names[i].c_str());

    // Active tab follows inserts; setActiveSheet leaves no sheet selected.
    Book fresh;
    for (const char *n : {"a", "b", "c"}) fresh->addSheet(n, nullptr);
    fresh->setActiveSheet(2);
    fresh->insertSheet(0, "d", nullptr);
    EXPECT_EQ(fresh->activeSheet(), 3);
    fresh->getSheet(3)->setHidden(SHEETSTATE_HIDDEN);
    EXPECT_EQ(fresh->activeSheet(), 0);
    fresh->delSheet(3);
    EXPECT_FALSE(has(saved(*fresh.b)[L"/xl/worksheets/sheet1.xml"], "tabSelected"));
}

// Whatever the book does not model survives; the calculation chain and
// entries without a content type do not.
TEST(XMLBook, PartsKeptAndDropped) {
    Parts p = workbook({"worksheets/sheet1.xml"}, false,
                       "<definedNames><definedName name=\"a\">S1!$A$1</definedName>"
                       "<definedName name=\"b\" localSheetId=\"1\">S2!$A$1</definedName>"
                       "<definedName name=\"c\">S10!$A$1</definedName></definedNames>",
                       rel(kRel, "rId9", "calcChain", "calcChain.xml"));
    std::string &types = p[L"/[Content_Types].xml"];
    types.insert(types.size() - 8,
                 "<Override PartName=\"/xl/calcChain.xml\" ContentType=\"application/"
                 "vnd.openxmlformats-officedocument.spreadsheetml.calcChain+xml\"/>"
                 "<Override PartName=\"/custom/data.bin\" ContentType=\"application/x-own\"/>");
    p[L"/xl/calcChain.xml"] = "<calcChain/>";
    p[L"/custom/data.bin"] = std::string("\0\1\2binary\xff", 10);
    p[L"/stray.dat"] = "no content type";
    // The content types entry is found in another case.
    const std::string typesText = types;
    p.erase(L"/[Content_Types].xml");
    p[L"/[Content_Types].XML"] = typesText;

    Book b;
    ASSERT_TRUE(b.loadRaw(p)) << b.msg();
    ASSERT_NE(b->addSheet("S2", nullptr), nullptr);
    ASSERT_NE(b->addSheet("S10", nullptr), nullptr);
    ASSERT_TRUE(b->delSheet(0));
    Parts out = saved(*b.b);
    EXPECT_EQ(out[L"/custom/data.bin"], p[L"/custom/data.bin"]);
    EXPECT_FALSE(out.count(L"/stray.dat"));
    EXPECT_FALSE(out.count(L"/xl/calcChain.xml"));
    EXPECT_FALSE(has(out[L"/[Content_Types].XML"], "calcChain"));
    EXPECT_TRUE(has(out[L"/[Content_Types].XML"], "application/x-own"));
    EXPECT_FALSE(has(out[L"/xl/_rels/workbook.xml.rels"], "calcChain"));
    const std::string &wb = out[L"/xl/workbook.xml"];
    EXPECT_TRUE(has(wb, "fullCalcOnLoad=\"1\""));
    // "a" names the deleted sheet S1, and so does "c" (S10 contains it);
    // "b", scoped to index 1, moved up with the sheets added at 1 and 2,
    // and down with the one deleted before it.
    EXPECT_FALSE(has(wb, "name=\"a\""));
    EXPECT_FALSE(has(wb, "name=\"c\""));
    EXPECT_TRUE(has(wb, "name=\"b\" localSheetId=\"2\"")) << wb;

    // Entries go out in the case-insensitive order of their names.
    const char *bytes = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(b->saveRaw(&bytes, &size));
    std::vector<std::wstring> order;
    ZipReader archive(bytes, size);
    for (size_t i = 0; i < archive.size(); ++i) order.push_back(archive.name(i));
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end(), CaseInsensitiveLess()));
    EXPECT_EQ(order.front(), L"/[Content_Types].XML");
}

// A sheet entry's part decides its type; only worksheets are handed out.
TEST(XMLBook, SheetTypes) {
    struct Case {
        const char *contentType;
        SheetType type;
        const char *message; // of getSheet
    };
    const Case cases[] = {
        {"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml",
         SHEETTYPE_SHEET, "ok"},
        {"application/vnd.openxmlformats-officedocument.spreadsheetml.chartsheet+xml",
         SHEETTYPE_CHART, "sheet not found"},
        {"application/vnd.openxmlformats-officedocument.spreadsheetml.dialogsheet+xml",
         SHEETTYPE_UNKNOWN, "sheet not found"},
    };
    for (const Case &c : cases) {
        Parts p = workbook({"worksheets/sheet1.xml", "other/sheet2.xml"});
        std::string &types = p[L"/[Content_Types].xml"];
        const std::string from = "/xl/other/sheet2.xml\" ContentType=\"";
        const size_t at = types.find(from) + from.size();
        types.replace(at, types.find('"', at) - at, c.contentType);
        Book b;
        ASSERT_TRUE(b.loadRaw(p)) << b.msg();
        EXPECT_EQ(b->sheetCount(), 2);
        EXPECT_EQ(b->sheetType(1), c.type) << c.contentType;
        EXPECT_EQ(b->getSheet(1) != nullptr, c.type == SHEETTYPE_SHEET);
        EXPECT_EQ(b.msg(), c.message);
        // A new sheet's name does not collide with the part of another kind.
        ASSERT_NE(b->addSheet("New", nullptr), nullptr);
        EXPECT_TRUE(saved(*b.b).count(L"/xl/worksheets/sheet3.xml"));
    }
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
