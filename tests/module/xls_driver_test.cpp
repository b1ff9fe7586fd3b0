// The workbook drivers through the reference host: open failures and their
// report codes, the sharing of open books, files created and kept on
// writing, blank cells, named ranges, and every layout of a small transport
// model written to a workbook and read back equal.
#include "refhost.h"
#include "sheetfile.h"
#include "support/tout_support.h"
#include "tabrix.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace qdhost;
using tout::host;

namespace {

std::string scratchDir() {
    mkdir(TABRIX_TEST_TMP, 0777);
    std::string dir = std::string(TABRIX_TEST_TMP) + "/xls_driver";
    mkdir(dir.c_str(), 0777);
    return dir;
}

std::string pathOf(const std::string &name) { return scratchDir() + "/" + name; }

long fileSize(const std::string &name) {
    struct stat st;
    return stat(pathOf(name).c_str(), &st) == 0 ? static_cast<long>(st.st_size) : -1;
}

SheetFile *fileOf(void *p) { return static_cast<SheetFile *>(p); }

// The message the library gives for loading `path` into a new book, which
// the driver must pass on untranslated.
std::string loadMessage(bool xml, const std::string &path) {
    void *book = xml ? tbCreateXMLBookCA() : tbCreateBookCA();
    tbBookSetLocaleA(book, "UTF-8");
    EXPECT_FALSE(tbBookLoadA(book, path.c_str()));
    std::string message = tbBookErrorMessageA(book);
    tbBookReleaseA(book);
    return message;
}

// Builds a workbook directly with the library: `fill` gets the new book.
void makeBook(const std::string &name, const std::function<void(void *)> &fill) {
    void *book = tbCreateBookCA();
    tbBookSetLocaleA(book, "UTF-8");
    fill(book);
    EXPECT_TRUE(tbBookSaveA(book, pathOf(name).c_str())) << tbBookErrorMessageA(book);
    tbBookReleaseA(book);
}

// ---- open failures ------------------------------------------------------------

TEST(XlsOpen, FailuresAndTheirReports) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    tout::spit(pathOf("corrupt.xls"), "this is no workbook at all\n");
    remove(pathOf("missing.xls").c_str());
    remove(pathOf("missing.xlsx").c_str());
    struct Case {
        const char *what;
        const char *driver;
        std::string name;
        bool write;
        int code;            // expected report code, 0 for none
        std::string message; // expected report text
        int modeBits;        // bits the mode word must have after the open
    } cases[] = {
        {"missing file read", "xls", "missing.xls", false, 7,
         loadMessage(false, pathOf("missing.xls")), QD_MODE_OPENED | QD_MODE_PENDING},
        {"corrupt file read", "xls", "skiph;corrupt.xls", false, 7,
         loadMessage(false, pathOf("corrupt.xls")), QD_MODE_OPENED},
        {"corrupt file written", "xls", "corrupt.xls", true, 6,
         loadMessage(false, pathOf("corrupt.xls")), QD_MODE_OPENED},
        {"missing Open XML file read", "xlsx", "missing.xlsx", false, 7,
         loadMessage(true, pathOf("missing.xlsx")), QD_MODE_OPENED | QD_MODE_XML},
        {"options without a name", "xls", "grow;skiph;", false, 1, "access denied",
         QD_MODE_OPENED},
        {"no directory to create in", "xls", "no/such/dir/x.xls", true, 0, "",
         QD_MODE_OPENED | QD_MODE_NOSTREAM | QD_MODE_PENDING},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        Context ctx(scratchDir());
        int mode = 0;
        EXPECT_EQ(host().open(ctx, c.driver, c.name, c.write, &mode), nullptr);
        EXPECT_EQ(mode & c.modeBits, c.modeBits);
        if (c.code == 0) {
            EXPECT_TRUE(ctx.reports.empty());
        } else {
            ASSERT_EQ(ctx.reports.size(), 1u);
            EXPECT_EQ(ctx.reports[0], std::make_pair(c.message, c.code));
        }
        EXPECT_EQ(ctx.stream, nullptr); // no stream left open
    }
    EXPECT_EQ(tout::slurp(pathOf("corrupt.xls")), "this is no workbook at all\n");
}

// ---- open books and their sharing ---------------------------------------------

TEST(XlsOpen, NewFileForWritingStartsWithoutASheet) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    Context ctx(scratchDir());
    remove(pathOf("new.xls").c_str());
    int mode = 0;
    void *f = host().open(ctx, "xls", "bufsize=4;new.xls", true, &mode);
    ASSERT_NE(f, nullptr) << ctx.allErrors();
    EXPECT_EQ(mode & (QD_MODE_PENDING | QD_MODE_NOSTREAM), 0);
    EXPECT_EQ(fileSize("new.xls"), 0); // created at once, written at the close
    SheetFile *file = fileOf(f);
    EXPECT_EQ(file->flags, static_cast<unsigned>(OPT_WRITING));
    EXPECT_EQ(file->bufferSize, 4096);
    EXPECT_EQ(file->ops->sheetCount(file->handle), 0);
    EXPECT_EQ(file->ops->getSheet(file->handle, 0), nullptr);
    qd_value price = qdReal(2.5);
    std::vector<Item> items{{"[Prices$B2]", QD_REAL, &price}};
    ASSERT_EQ(host().transferOut(ctx, "xls", f, items), 0) << ctx.allErrors();
    ASSERT_EQ(file->ops->sheetCount(file->handle), 1);
    EXPECT_STREQ(file->ops->sheetName(file->ops->getSheet(file->handle, 0)), "Prices");
    EXPECT_EQ(host().close(ctx, "xls", f), 0);
    EXPECT_GT(fileSize("new.xls"), 0);

    Context in(scratchDir());
    qd_value back{};
    ASSERT_EQ(host().readItem(in, "xls", "new.xls", "[B2]", QD_REAL, &back), 0)
        << in.allErrors();
    EXPECT_EQ(back.r, 2.5);
}

// A save that fails at the last close reports the book's message, code 8.
TEST(XlsClose, FailedSaveIsReported) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    remove(pathOf("gone.xls").c_str());
    rmdir(pathOf("gone.xls").c_str());
    Context ctx(scratchDir());
    void *f = host().open(ctx, "xls", "gone.xls", true);
    ASSERT_NE(f, nullptr) << ctx.allErrors();
    qd_value one = qdInt(1);
    std::vector<Item> items{{"[A1]", QD_INT, &one}};
    ASSERT_EQ(host().transferOut(ctx, "xls", f, items), 0) << ctx.allErrors();
    // The file made at the open gives way to a directory of the same name.
    remove(pathOf("gone.xls").c_str());
    ASSERT_EQ(mkdir(pathOf("gone.xls").c_str(), 0777), 0);
    EXPECT_EQ(host().close(ctx, "xls", f), 1);
    ASSERT_EQ(ctx.reports.size(), 1u);
    EXPECT_EQ(ctx.reports[0].second, 8);
    EXPECT_NE(ctx.reports[0].first, "");
    EXPECT_NE(ctx.reports[0].first, "ok");
    rmdir(pathOf("gone.xls").c_str());
}

TEST(XlsOpen, SharingRules) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    makeBook("shared.xls", [](void *book) {
        void *sheet = tbBookAddSheetA(book, "Sheet1", nullptr);
        tbSheetWriteNumA(sheet, 0, 0, 1, nullptr);
        tbSheetWriteStrA(sheet, 0, 1, "two", nullptr);
    });
    const std::string original = tout::slurp(pathOf("shared.xls"));
    {
        // Two reads share one book; nothing is saved.
        Context ctx(scratchDir());
        void *a = host().open(ctx, "xls", "shared.xls", false);
        int mode = 0;
        void *b = host().open(ctx, "xls", "noindex;shared.xls", false, &mode);
        ASSERT_NE(a, nullptr) << ctx.allErrors();
        EXPECT_EQ(a, b);
        EXPECT_EQ(mode & QD_MODE_PENDING, 0);
        EXPECT_EQ(fileOf(a)->references, 2);
        EXPECT_EQ(fileOf(a)->flags, 0u); // the options of the first open
        EXPECT_EQ(host().close(ctx, "xls", a), 0);
        EXPECT_EQ(host().close(ctx, "xls", b), 0);
        EXPECT_EQ(tout::slurp(pathOf("shared.xls")), original);
    }
    {
        // Writing after a read-only open is refused with code 2.
        Context ctx(scratchDir());
        void *a = host().open(ctx, "xls", "shared.xls", false);
        int mode = 0;
        EXPECT_EQ(host().open(ctx, "xls", "shared.xls", true, &mode), nullptr);
        EXPECT_EQ(mode & QD_MODE_PENDING, 0);
        ASSERT_EQ(ctx.reports.size(), 1u);
        EXPECT_EQ(ctx.reports[0],
                  std::make_pair(std::string("file already open for reading only"), 2));
        EXPECT_EQ(host().close(ctx, "xls", a), 0);
    }
    {
        // Two contexts get two books; the reader does not see the writer's
        // cells, and the writer's last close saves them.
        Context one(scratchDir()), two(scratchDir());
        void *w = host().open(one, "xls", "shared.xls", true);
        void *r = host().open(two, "xls", "shared.xls", false);
        ASSERT_NE(w, nullptr) << one.allErrors();
        ASSERT_NE(r, nullptr) << two.allErrors();
        EXPECT_NE(w, r);
        EXPECT_NE(fileOf(w)->handle, fileOf(r)->handle);
        SheetFile *fw = fileOf(w), *fr = fileOf(r);
        void *sheetW = fw->ops->getSheet(fw->handle, 0);
        void *sheetR = fr->ops->getSheet(fr->handle, 0);
        EXPECT_TRUE(fw->ops->writeStr(sheetW, 0, 0, "mine"));
        EXPECT_EQ(fr->ops->cellType(sheetR, 0, 0), CELL_NUMBER);
        EXPECT_EQ(host().close(two, "xls", r), 0);
        EXPECT_EQ(tout::slurp(pathOf("shared.xls")), original); // held in memory
        EXPECT_EQ(host().close(one, "xls", w), 0);
    }
    Context check(scratchDir());
    void *f = host().open(check, "xls", "shared.xls", false);
    ASSERT_NE(f, nullptr) << check.allErrors();
    SheetFile *file = fileOf(f);
    void *sheet = file->ops->getSheet(file->handle, 0);
    EXPECT_STREQ(file->ops->readStr(sheet, 0, 0), "mine");
    EXPECT_STREQ(file->ops->readStr(sheet, 0, 1), "two");
    EXPECT_EQ(host().close(check, "xls", f), 0);
}

// ---- cells ---------------------------------------------------------------------

TEST(XlsCells, SheetOperationsOverABook) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    makeBook("cells.xls", [](void *book) {
        void *sheet = tbBookAddSheetA(book, "Cells", nullptr);
        tbSheetWriteNumA(sheet, 1, 1, 1.5, nullptr);
        tbSheetWriteBlankA(sheet, 1, 2, nullptr);
        tbSheetWriteBoolA(sheet, 1, 3, 1, nullptr);
        tbSheetWriteBoolA(sheet, 1, 4, 0, nullptr);
        tbSheetWriteStrA(sheet, 2, 1, "r\xC3\xA9sum\xC3\xA9", nullptr);
    });
    Context ctx(scratchDir());
    void *f = host().open(ctx, "xls", "cells.xls", false);
    ASSERT_NE(f, nullptr) << ctx.allErrors();
    SheetFile *file = fileOf(f);
    const SheetOps *ops = file->ops;
    ASSERT_EQ(ops->sheetCount(file->handle), 1);
    void *sheet = ops->getSheet(file->handle, 0);
    EXPECT_STREQ(ops->sheetName(sheet), "Cells");
    EXPECT_EQ(ops->firstRow(sheet), 1);
    EXPECT_EQ(ops->lastRow(sheet), 3); // one past the last used row
    EXPECT_EQ(ops->firstCol(sheet), 1);
    EXPECT_EQ(ops->lastCol(sheet), 5);
    struct Cell {
        int row, col, kind;
    } kinds[] = {{1, 1, CELL_NUMBER}, {1, 2, CELL_EMPTY}, {1, 3, CELL_BOOL},
                 {1, 4, CELL_BOOL},   {2, 1, CELL_STRING}, {7, 7, CELL_EMPTY}};
    for (const Cell &c : kinds)
        EXPECT_EQ(ops->cellType(sheet, c.row, c.col), c.kind) << c.row << "," << c.col;
    EXPECT_EQ(ops->readNum(sheet, 1, 1), 1.5);
    EXPECT_STREQ(ops->readBoolText(sheet, 1, 3), "true");
    EXPECT_STREQ(ops->readBoolText(sheet, 1, 4), "false");
    EXPECT_STREQ(ops->readStr(sheet, 2, 1), "r\xC3\xA9sum\xC3\xA9");
    EXPECT_EQ(ops->isDate(sheet, 1, 1), 0);

    // The blank reaches the transfer as an empty cell: no entry is stored.
    Array *row = ctx.newArray(QD_REAL, {tout::intSet(ctx, {1, 2, 3, 4})});
    std::vector<Item> items{{"noindex;[B2:E2]", row->type(), row}};
    ASSERT_EQ(host().transferIn(ctx, "xls", f, items), 0) << ctx.allErrors();
    EXPECT_EQ(row->entries(), (std::map<std::vector<std::string>, std::string>{
                                  {{"1"}, "1.5"}, {{"3"}, "1"}, {{"4"}, "0"}}));
    EXPECT_EQ(host().close(ctx, "xls", f), 0);
}

// A sheet that uses the last row and column: whole-sheet, whole-column and
// oversized labels stop there and never meet row 0 again; a scalar the
// sheet cannot hold is reported.
TEST(XlsCells, RangesStopAtTheLastRowAndColumn) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    makeBook("edge.xls", [](void *book) {
        void *sheet = tbBookAddSheetA(book, "Edge", nullptr);
        tbSheetWriteNumA(sheet, 0, 0, 1, nullptr);
        tbSheetWriteNumA(sheet, 65535, 0, 2, nullptr);
        tbSheetWriteNumA(sheet, 0, 255, 3, nullptr);
    });
    Context ctx(scratchDir());
    void *f = host().open(ctx, "xls", "edge.xls", false);
    ASSERT_NE(f, nullptr) << ctx.allErrors();
    const std::pair<const char *, std::vector<std::string>> reads[] = {
        {"[A:A]", {"1", "2"}}, {"[]", {"1", "3", "2"}}, {"[A1:IW65537]", {"1", "3", "2"}}};
    for (const auto &r : reads) {
        SCOPED_TRACE(r.first);
        List *list = ctx.newList(QD_REAL);
        std::vector<Item> items{{r.first, list->type(), list}};
        ASSERT_EQ(host().transferIn(ctx, "xls", f, items), 0) << ctx.allErrors();
        EXPECT_EQ(list->texts(), r.second);
    }
    EXPECT_EQ(host().close(ctx, "xls", f), 0);

    qd_value far = qdInt(1);
    EXPECT_NE(host().writeItem(ctx, "xls", "edge.xls", "[Edge$A70000]", QD_INT, &far), 0);
    EXPECT_NE(ctx.allErrors().find("SHEET: "), std::string::npos);
}

TEST(XlsWrite, ExistingContentIsKept) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    remove(pathOf("kept.xls").c_str());
    Context ctx(scratchDir());
    qd_value a = qdInt(1), c = qdStr("far"), other = qdBool(true);
    std::vector<Item> first{{"[Main$A1]", QD_INT, &a},
                            {"[Main$D4]", QD_STRING, &c},
                            {"[Notes$B2]", QD_BOOL, &other}};
    ASSERT_EQ(host().write(ctx, "xls", "kept.xls", first), 0) << ctx.allErrors();

    // A second writer changes only the cells it writes.
    qd_value b = qdReal(-0.25);
    ASSERT_EQ(host().writeItem(ctx, "xls", "kept.xls", "[Main$B2]", QD_REAL, &b), 0)
        << ctx.allErrors();

    qd_value a2{}, b2{}, c2{}, other2{};
    std::vector<Item> back{{"[Main$A1]", QD_INT, &a2},
                           {"[Main$B2]", QD_REAL, &b2},
                           {"[Main$D4]", QD_STRING, &c2},
                           {"[Notes$B2]", QD_BOOL, &other2}};
    ASSERT_EQ(host().read(ctx, "xls", "kept.xls", back), 0) << ctx.allErrors();
    EXPECT_EQ(a2.i, 1);
    EXPECT_EQ(b2.r, -0.25);
    EXPECT_STREQ(c2.s, "far");
    EXPECT_EQ(other2.b, 1);
}

// ---- named ranges --------------------------------------------------------------

TEST(XlsNames, GlobalAndSheetScopedNamesByLabel) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    bool named = true;
    makeBook("names.xls", [&named](void *book) {
        void *data = tbBookAddSheetA(book, "Data", nullptr);
        void *other = tbBookAddSheetA(book, "Other", nullptr);
        for (int r = 0; r < 3; r++) {
            tbSheetWriteNumA(data, 1 + r, 1, 10 * (r + 1), nullptr);
            tbSheetWriteStrA(other, 4 + r, 2, std::string(1, char('x' + r)).c_str(), nullptr);
        }
        // Two names of one sheet that differ in case only: the later one wins.
        named = tbSheetSetNamedRangeA(data, "prices", 1, 3, 1, 1, -1) &&
                tbSheetSetNamedRangeA(other, "codes", 4, 6, 2, 2, -2) &&
                tbSheetSetNamedRangeA(data, "twice", 1, 1, 1, 1, -1) &&
                tbSheetSetNamedRangeA(data, "TWICE", 2, 3, 1, 1, -2);
    });
    ASSERT_TRUE(named);
    struct Case {
        const char *label;
        qd_type type;
        std::vector<std::string> texts;
    } cases[] = {
        {"prices", QD_REAL, {"10", "20", "30"}},
        {"PRICES", QD_INT, {"10", "20", "30"}},
        {"codes", QD_STRING, {"x", "y", "z"}},
        {"Twice", QD_REAL, {"20", "30"}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        Context ctx(scratchDir());
        List *list = ctx.newList(c.type);
        ASSERT_EQ(host().readItem(ctx, "xls", "names.xls", c.label, list->type(), list), 0)
            << ctx.allErrors();
        EXPECT_EQ(list->texts(), c.texts);
    }
    Context ctx(scratchDir());
    List *list = ctx.newList(QD_REAL);
    EXPECT_NE(host().readItem(ctx, "xls", "names.xls", "nowhere", list->type(), list), 0);
    EXPECT_NE(ctx.allErrors().find("SHEET: Range name not found.\n"), std::string::npos);
}

} // namespace

namespace {

// ---- every layout of the transport model -------------------------------------

// ENTRIES: stored entries; CELLS: every cell of the index sets; NONZERO:
// stored entries other than zero (partndx writes zeros for the cells of a
// row without an entry, and they read back as entries).
enum View { ENTRIES, CELLS, NONZERO };

std::string join(const std::vector<std::string> &items) {
    std::string out;
    for (const std::string &s : items) out += s + ";";
    return out;
}

std::string show(std::map<std::vector<std::string>, std::string> cells, View how) {
    std::string out;
    for (const auto &c : cells)
        if (how != NONZERO || c.second != "0") out += join(c.first) + "=" + c.second + "\n";
    return out;
}

// A text view of an object that two equal objects share.
std::string view(const void *value, qd_type type, View how) {
    if ((type & QD_STRUCT_MASK) == QD_VALUE && qdhost::isBasicType(type))
        return valueText(type, *static_cast<const qd_value *>(value));
    const Object *object = static_cast<const Object *>(value);
    if (auto *a = dynamic_cast<const Array *>(object))
        return show(how == CELLS ? tout::allCells(*a) : a->entries(), how);
    if (auto *s = dynamic_cast<const Set *>(object)) return join(s->texts());
    if (auto *l = dynamic_cast<const List *>(object)) {
        if (l->size() == 0 || (l->at(0).type & QD_STRUCT_MASK) != QD_ARRAY) return join(l->texts());
        std::string out;
        for (int i = 0; i < l->size(); i++)
            out += "[" + view(l->at(i).value.p, l->at(i).type, how) + "]";
        return out;
    }
    return "?";
}

// What a layout writes and what it reads back into.
struct Pair {
    qd_type type;
    void *written;
    void *read;
};

struct Layout {
    const char *what;
    const char *writeLabel; // with the sheet name in front of the range
    const char *readLabel;
    View how;
    std::function<Pair(Context &)> build;
};

Set *plants(Context &ctx) { return tout::textSet(ctx, {"Seattle", "San Diego", "Denver"}); }
Set *markets(Context &ctx) {
    return tout::textSet(ctx, {"New York", "Chicago", "Topeka", "Austin, TX"});
}
Set *freshTexts(Context &ctx) { return ctx.newSet(QD_STRING); }

Array *cost(Context &ctx, Set *p, Set *m) {
    Array *a = ctx.newArray(QD_REAL, {p, m});
    a->set({0, 0}, qdReal(2.5));
    a->set({0, 1}, qdReal(1.75));
    a->set({1, 0}, qdReal(2.5));
    a->set({1, 2}, qdReal(1.4));
    a->set({2, 3}, qdReal(0.9));
    return a;
}

Pair costPair(Context &ctx) {
    return {QD_REAL | QD_ARRAY | QD_DYNAMIC, cost(ctx, plants(ctx), markets(ctx)),
            ctx.newArray(QD_REAL, {freshTexts(ctx), freshTexts(ctx)})};
}

const Layout kLayouts[] = {
    {"a set, one element a row", "skiph+;grow;[sets$A1](plant)", "skiph;[sets$A:A](plant)",
     ENTRIES,
     [](Context &ctx) { return Pair{QD_STRING | QD_SET | QD_DYNAMIC, plants(ctx), freshTexts(ctx)}; }},
    {"a set beside it", "skiph+;grow;[sets$B1](market)", "skiph;[sets$B:B](market)", ENTRIES,
     [](Context &ctx) { return Pair{QD_STRING | QD_SET | QD_DYNAMIC, markets(ctx), freshTexts(ctx)}; }},
    {"one row for each stored entry", "skiph+;grow;[cost$A1:C1](plant,market,cost)",
     "skiph;[cost$A:C](plant,market,cost)", ENTRIES, costPair},
    {"a row a plant, markets across", "partndx;grow;[cost_table$A1:E1]", "partndx;[cost_table$]",
     NONZERO,
     [](Context &ctx) {
         Set *m = markets(ctx);
         return Pair{QD_REAL | QD_ARRAY | QD_DYNAMIC, cost(ctx, plants(ctx), m),
                     ctx.newArray(QD_REAL, {freshTexts(ctx), m})};
     }},
    {"every plant, no index columns", "noindex;[capacity$A1:C1]", "noindex;[capacity$A1:C1]",
     CELLS,
     [](Context &ctx) {
         Set *p = plants(ctx);
         Array *a = ctx.newArray(QD_INT, {p});
         a->set({0}, qdInt(350));
         a->set({1}, qdInt(600));
         a->set({2}, qdInt(275));
         return Pair{a->type(), a, ctx.newArray(QD_INT, {p})};
     }},
    // A workbook sheet's extent reaches one column past the data, so the
    // whole sheet would give this item a fourth column: its columns are named.
    {"two arrays merged by market", "grow;[terms$A1:C1]", "[terms$A:C]", ENTRIES,
     [](Context &ctx) {
         Set *m = markets(ctx);
         Array *price = ctx.newArray(QD_REAL, {m}), *minOrder = ctx.newArray(QD_INT, {m});
         price->set({0}, qdReal(12.5));
         price->set({1}, qdReal(11));
         price->set({3}, qdReal(9.75));
         minOrder->set({1}, qdInt(20));
         minOrder->set({2}, qdInt(15));
         List *written = ctx.newList(QD_REAL | QD_ARRAY), *read = ctx.newList(QD_REAL | QD_ARRAY);
         Set *fresh = freshTexts(ctx);
         for (Array *x : {price, minOrder}) {
             written->append(x->type(), qdPtr(x));
             Array *y = ctx.newArray(x->elementType(), {fresh});
             read->append(y->type(), qdPtr(y));
         }
         return Pair{QD_LIST | QD_DYNAMIC, written, read};
     }},
    {"a list, four to a row", "grow;[demand$A1:D1]", "[demand$]", ENTRIES,
     [](Context &ctx) {
         List *l = ctx.newList(QD_INT);
         for (qd_int d : {325, 300, 275, 120, -7}) l->append(QD_INT, qdInt(d));
         return Pair{l->type(), l, ctx.newList(QD_INT)};
     }},
    {"records with a header", "skiph+;grow;[shipments$A1:D1](from,to,qty,express)",
     "skiph;[shipments$](from,to,qty,express)", ENTRIES,
     [](Context &ctx) {
         List *l = ctx.newList(tout::shipmentType());
         l->append(tout::shipmentType(), qdPtr(tout::shipment(ctx, "Seattle", "New York", 50, false)));
         l->append(tout::shipmentType(), qdPtr(tout::shipment(ctx, "San Diego", "Topeka", 275, true)));
         return Pair{l->type(), l, ctx.newList(tout::shipmentType())};
     }},
};

TEST(XlsRoundTrip, EveryLayoutOfTheModel) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    remove(pathOf("model.xls").c_str());
    // Every layout goes to its own sheet of one workbook, which each write
    // opens anew: the sheets written before must survive.
    for (const Layout &l : kLayouts) {
        SCOPED_TRACE(l.what);
        Context ctx(scratchDir());
        Pair p = l.build(ctx);
        ASSERT_EQ(host().writeItem(ctx, "xls", "model.xls", l.writeLabel, p.type, p.written), 0)
            << ctx.allErrors();
    }
    for (const Layout &l : kLayouts) {
        SCOPED_TRACE(l.what);
        Context ctx(scratchDir());
        Pair p = l.build(ctx);
        int counter = 0;
        ASSERT_EQ(host().readItem(ctx, "xls", "model.xls", l.readLabel, p.type, p.read, &counter), 0)
            << ctx.allErrors();
        EXPECT_EQ(view(p.read, p.type, l.how), view(p.written, p.type, l.how));
        EXPECT_GT(counter, 0);
        EXPECT_EQ(ctx.allErrors(), "");
    }
}

TEST(XlsRoundTrip, ScalarsInOneWrite) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    remove(pathOf("scalars.xls").c_str());
    Context ctx(scratchDir());
    qd_value freight = qdReal(90.125), title = qdStr(ctx.intern("transport, \"small\"")),
             periods = qdInt(-4), overtime = qdBool(true);
    Record *ship = tout::shipment(ctx, "Denver", "Austin, TX", 120, false);
    std::vector<Item> out{{"[A1]", QD_REAL, &freight},  {"[A2]", QD_STRING, &title},
                          {"[A3]", QD_INT, &periods},   {"[A4]", QD_BOOL, &overtime},
                          {"[2$B2:E2]", tout::shipmentType(), ship}};
    ASSERT_EQ(host().write(ctx, "xls", "scalars.xls", out), 0) << ctx.allErrors();

    qd_value freight2{}, title2{}, periods2{}, overtime2{};
    Record *ship2 = ctx.newRecord(tout::shipmentType());
    std::vector<Item> in{{"[A1]", QD_REAL, &freight2},  {"[A2]", QD_STRING, &title2},
                         {"[A3]", QD_INT, &periods2},   {"[A4]", QD_BOOL, &overtime2},
                         {"[2$B2:E2]", tout::shipmentType(), ship2}};
    ASSERT_EQ(host().read(ctx, "xls", "scalars.xls", in), 0) << ctx.allErrors();
    EXPECT_EQ(freight2.r, 90.125);
    EXPECT_STREQ(title2.s, "transport, \"small\"");
    EXPECT_EQ(periods2.i, -4);
    EXPECT_EQ(overtime2.b, 1);
    EXPECT_EQ(ship2->text(), ship->text());
}

} // namespace
