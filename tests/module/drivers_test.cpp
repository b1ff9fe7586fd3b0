// The workbook and csv drivers through the reference host: open failures
// and their report codes, the sharing of open books, files created and kept
// on writing, fields read into the csv store and written back, buffer
// limits, blank cells and named ranges (the layouts' round trips run for
// every driver in roundtrip_test).
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
    std::string dir = std::string(TABRIX_TEST_TMP) + "/drivers";
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
// A book of the kind its name's extension says.
void makeBook(const std::string &name, const std::function<void(void *)> &fill) {
    const bool xml = name.size() > 5 && name.compare(name.size() - 5, 5, ".xlsx") == 0;
    void *book = xml ? tbCreateXMLBookCA() : tbCreateBookCA();
    tbBookSetLocaleA(book, "UTF-8");
    fill(book);
    EXPECT_TRUE(tbBookSaveA(book, pathOf(name).c_str())) << tbBookErrorMessageA(book);
    tbBookReleaseA(book);
}

// ---- open failures ------------------------------------------------------------

TEST(DriverOpen, FailuresAndTheirReports) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    tout::spit(pathOf("corrupt.xls"), "this is no workbook at all\n");
    remove(pathOf("missing.xls").c_str());
    remove(pathOf("missing.xlsx").c_str());
    remove(pathOf("missing.csv").c_str());
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
        {"options without a name", "xls", "grow;skiph;", false, 1, "access denied", QD_MODE_OPENED},
        {"no directory to create in", "xls", "no/such/dir/x.xls", true, 0, "",
         QD_MODE_OPENED | QD_MODE_NOSTREAM | QD_MODE_PENDING},
        {"missing csv read", "csv", "missing.csv", false, 0, "", QD_MODE_OPENED | QD_MODE_NOSTREAM},
        {"csv options without a name", "csv", "grow;skiph;", false, 1, "access denied",
         QD_MODE_OPENED},
        {"no directory to create a csv in", "csv", "no/such/dir/x.csv", true, 0, "",
         QD_MODE_NOSTREAM},
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
    ASSERT_EQ(host().readItem(in, "xls", "new.xls", "[B2]", QD_REAL, &back), 0) << in.allErrors();
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

// Opens of one file within a context share its store: two reads save nothing,
// a write after a read-only open is refused with code 2, a read after a write
// shares the writer's store and the last close saves it.  Two contexts get
// stores of their own.
TEST(DriverOpen, SharingRules) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    for (const char *driver : {"csv", "xls"}) {
        SCOPED_TRACE(driver);
        const bool csv = driver[0] == 'c';
        const std::string name = std::string("shared.") + driver;
        if (csv)
            tout::spit(pathOf(name), "1,two\n");
        else
            makeBook(name, [](void *book) {
                void *sheet = tbBookAddSheetA(book, "Sheet1", nullptr);
                tbSheetWriteNumA(sheet, 0, 0, 1, nullptr);
                tbSheetWriteStrA(sheet, 0, 1, "two", nullptr);
            });
        const std::string original = tout::slurp(pathOf(name));
        auto sheetOf = [](void *f) { return fileOf(f)->ops->getSheet(fileOf(f)->handle, 0); };
        {
            Context ctx(scratchDir());
            void *a = host().open(ctx, driver, name, false);
            int mode = 0;
            void *b = host().open(ctx, driver, "noindex;" + name, false, &mode);
            ASSERT_NE(a, nullptr) << ctx.allErrors();
            EXPECT_EQ(a, b);
            EXPECT_EQ(mode & QD_MODE_PENDING, 0);
            EXPECT_EQ(fileOf(a)->references, 2);
            EXPECT_EQ(fileOf(a)->flags, 0u); // the options of the first open
            if (csv) {
                EXPECT_EQ(ctx.streamsOpened, 1);
            }
            tout::spit(pathOf(name), "changed\n"); // a save would overwrite this
            EXPECT_EQ(host().close(ctx, driver, a), 0);
            EXPECT_EQ(host().close(ctx, driver, b), 0);
            EXPECT_EQ(tout::slurp(pathOf(name)), "changed\n");
            tout::spit(pathOf(name), original);
        }
        {
            Context ctx(scratchDir());
            void *a = host().open(ctx, driver, name, false);
            int mode = 0;
            EXPECT_EQ(host().open(ctx, driver, name, true, &mode), nullptr);
            EXPECT_EQ(mode & QD_MODE_PENDING, 0);
            ASSERT_EQ(ctx.reports.size(), 1u);
            EXPECT_EQ(ctx.reports[0],
                      std::make_pair(std::string("file already open for reading only"), 2));
            EXPECT_EQ(host().close(ctx, driver, a), 0);
        }
        {
            Context ctx(scratchDir());
            void *w = host().open(ctx, driver, name, true);
            void *r = host().open(ctx, driver, name, false);
            ASSERT_NE(w, nullptr) << ctx.allErrors();
            EXPECT_EQ(w, r);
            EXPECT_TRUE(fileOf(w)->ops->writeStr(sheetOf(w), 0, 2, "new"));
            EXPECT_EQ(host().close(ctx, driver, r), 0);
            EXPECT_EQ(tout::slurp(pathOf(name)), original); // still in memory
            EXPECT_EQ(host().close(ctx, driver, w), 0);
        }
        const std::string saved = tout::slurp(pathOf(name));
        EXPECT_NE(saved, original);
        {
            Context one(scratchDir()), two(scratchDir());
            void *w = host().open(one, driver, name, true);
            void *r = host().open(two, driver, name, false);
            ASSERT_NE(w, nullptr) << one.allErrors();
            ASSERT_NE(r, nullptr) << two.allErrors();
            EXPECT_NE(fileOf(w)->handle, fileOf(r)->handle);
            EXPECT_TRUE(fileOf(w)->ops->writeStr(sheetOf(w), 0, 0, "mine"));
            // The writer, opened first, closes first and saves; the reader
            // still sees its own store.
            EXPECT_EQ(host().close(one, driver, w), 0);
            EXPECT_NE(tout::slurp(pathOf(name)), saved);
            EXPECT_EQ(fileOf(r)->ops->cellType(sheetOf(r), 0, 0), CELL_NUMBER);
            EXPECT_EQ(host().close(two, driver, r), 0);
        }
        Context check(scratchDir());
        void *f = host().open(check, driver, name, false);
        ASSERT_NE(f, nullptr) << check.allErrors();
        const char *row[] = {"mine", "two", "new"};
        for (int c = 0; c < 3; c++) EXPECT_STREQ(fileOf(f)->ops->readStr(sheetOf(f), 0, c), row[c]);
        EXPECT_EQ(host().close(check, driver, f), 0);
    }
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
    } kinds[] = {{1, 1, CELL_NUMBER}, {1, 2, CELL_EMPTY},  {1, 3, CELL_BOOL},
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
    std::vector<Item> first{
        {"[Main$A1]", QD_INT, &a}, {"[Main$D4]", QD_STRING, &c}, {"[Notes$B2]", QD_BOOL, &other}};
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

TEST(WorkbookDriverNames, GlobalAndSheetScopedNamesByLabel) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    for (const std::string driver : {"xls", "xlsx"}) {
        SCOPED_TRACE(driver);
        const std::string file = "names." + driver;
        bool named = true;
        makeBook(file, [&named](void *book) {
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
            ASSERT_EQ(
                host().readItem(ctx, driver.c_str(), file.c_str(), c.label, list->type(), list), 0)
                << ctx.allErrors();
            EXPECT_EQ(list->texts(), c.texts);
        }
        Context ctx(scratchDir());
        List *list = ctx.newList(QD_REAL);
        EXPECT_NE(host().readItem(ctx, driver.c_str(), file.c_str(), "nowhere", list->type(), list),
                  0);
        EXPECT_NE(ctx.allErrors().find("SHEET: Range name not found.\n"), std::string::npos);
    }
}

// ---- the csv store ----------------------------------------------------------

void writeFile(const std::string &name, const std::string &content) {
    tout::spit(pathOf(name), content);
}
std::string readFile(const std::string &name) { return tout::slurp(pathOf(name)); }

// Every stored cell of the file's sheet as "row,col=Kvalue" joined by " ":
// N number, S string, B boolean.
std::string dumpCells(void *handle) {
    SheetFile *f = fileOf(handle);
    const SheetOps *ops = f->ops;
    if (ops->sheetCount(f->handle) == 0) return "<none>";
    void *sheet = ops->getSheet(f->handle, 0);
    std::string out;
    for (int r = ops->firstRow(sheet); r <= ops->lastRow(sheet); ++r)
        for (int c = ops->firstCol(sheet); c <= ops->lastCol(sheet); ++c) {
            int kind = ops->cellType(sheet, r, c);
            if (kind == CELL_EMPTY) continue;
            char buf[64];
            std::string value;
            if (kind == CELL_NUMBER) {
                snprintf(buf, sizeof buf, "N%.17g", ops->readNum(sheet, r, c));
                value = buf;
            } else if (kind == CELL_STRING) {
                value = std::string("S") + ops->readStr(sheet, r, c);
            } else {
                value = std::string("B") + std::to_string(ops->readBool(sheet, r, c));
            }
            out += (out.empty() ? "" : " ") + std::to_string(r) + "," + std::to_string(c) + "=" +
                   value;
        }
    return out;
}

// Each text read into the store (cells as dumpCells gives them, the file
// left as it was) and, opened for writing, written back as `out` at the
// close; nullptr: that side is not checked.
struct FieldCase {
    const char *options;
    std::string in;
    const char *cells;
    const char *out;
};

TEST(CsvFields, ReadIntoTheStoreAndWrittenBack) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    const std::string far = std::string(70, ',') + "far\n";
    const std::string wide = std::string(130, ',') + "x," + std::string(3, ',') + "y\n";
    const FieldCase cases[] = {
        {"", "a,b\n1,2.5\n", "0,0=Sa 0,1=Sb 1,0=N1 1,1=N2.5", "a,b\n1,2.5\n"},
        {"", "\"a\"\"b\"\n", "0,0=Sa\"b", "\"a\"\"b\"\n"},
        {"", "\"x,y\",z\n", "0,0=Sx,y 0,1=Sz", "\"x,y\",z\n"},
        {"", "a\r\nb\r\n", "0,0=Sa 1,0=Sb", "a\nb\n"},
        {"", "a\rb\n", "0,0=Sa\rb", nullptr},
        {"", "\"a\nb\",c", "0,0=Sa\nb 0,1=Sc", nullptr},
        {"", "x,,y", "0,0=Sx 0,2=Sy", nullptr},
        {"", "\"\",\"q\"", "0,1=Sq", nullptr},
        {"", "TRUE,true,FALSE,False", "0,0=B1 0,1=Strue 0,2=B0 0,3=SFalse",
         "TRUE,true,FALSE,False\n"},
        {"true=yes;false=no;", "yes,no,TRUE", "0,0=B1 0,1=B0 0,2=STRUE", "yes,no,TRUE\n"},
        {"fsep=;;dsep=,;", "1,5;2;a,b\n", "0,0=N1.5 0,1=N2 0,2=Sa,b", nullptr},
        {"fsep=;;dsep=,;", "1,5;2\n", nullptr, "1,5;2\n"},
        {"dsep=,;", "\"1,5\",2\n", "0,0=N1.5 0,1=N2", "\"1,5\",2\n"},
        {"fsep=\t;", "a b\t-3e2\n", "0,0=Sa b 0,1=N-300", nullptr},
        {"", "007,1e,+.5e,12a,+.5,1e3", "0,0=S007 0,1=S1e 0,2=S+.5e 0,3=S12a 0,4=N0.5 0,5=N1000",
         nullptr},
        {"", "9007199254740992,9007199254740991", "0,0=S9007199254740992 0,1=N9007199254740991",
         nullptr},
        {"", far, "0,70=Sfar", far.c_str()},
        {"", wide, nullptr, wide.c_str()},
        {"", "\n\n\nz", "3,0=Sz", "\n\n\nz\n"},
        {"", "", "<none>", ""},
        {"", "\"open quote, never closed", "0,0=Sopen quote, never closed", nullptr},
        {"", "a\"b,\"c\"d", "0,0=Sa\"b 0,1=Scd", nullptr},
        {"", "a\n\nb\n", nullptr, "a\n\nb\n"},
        {"", "a,b,c\nd\n", nullptr, "a,b,c\nd\n"},
        {"", "a,,\n", nullptr, "a\n"},
        {"", "1.0,0.10,1e3,-0.5\n", nullptr, "1,0.1,1000,-0.5\n"},
    };
    for (const FieldCase &c : cases) {
        SCOPED_TRACE(c.in);
        const std::string name = std::string(c.options) + "fields.csv";
        Context ctx(scratchDir());
        writeFile("fields.csv", c.in);
        if (c.cells) {
            int mode = 0;
            void *f = host().open(ctx, "csv", name, false, &mode);
            ASSERT_NE(f, nullptr);
            EXPECT_EQ(mode & (QD_MODE_OPENED | QD_MODE_PENDING), QD_MODE_OPENED);
            EXPECT_EQ(dumpCells(f), c.cells);
            EXPECT_EQ(host().close(ctx, "csv", f), 0);
            EXPECT_EQ(readFile("fields.csv"), c.in); // reading saves nothing
        }
        if (c.out) {
            void *f = host().open(ctx, "csv", name, true);
            ASSERT_NE(f, nullptr);
            EXPECT_EQ(host().close(ctx, "csv", f), 0);
            EXPECT_EQ(readFile("fields.csv"), c.out);
        }
        EXPECT_TRUE(ctx.errors.empty()) << ctx.allErrors();
    }
}

TEST(CsvWrite, StoreWritesThroughSheetOps) {
    Context ctx(scratchDir());
    remove(pathOf("new.csv").c_str());
    int mode = 0;
    void *f = host().open(ctx, "csv", "new.csv", true, &mode);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(mode & QD_MODE_NOSTREAM, 0);
    EXPECT_TRUE(fileSize("new.csv") >= 0); // created at open
    SheetFile *file = fileOf(f);
    const SheetOps *ops = file->ops;
    EXPECT_EQ(ops->sheetCount(file->handle), 0);
    EXPECT_EQ(ops->getSheet(file->handle, 0), nullptr);
    void *sheet = ops->addSheet(file->handle, "any");
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(ops->addSheet(file->handle, "again"), nullptr);
    EXPECT_EQ(ops->sheetCount(file->handle), 1);
    EXPECT_STREQ(ops->sheetName(sheet), "Sheet1");
    EXPECT_TRUE(ops->writeNum(sheet, 0, 0, 1.5));
    EXPECT_TRUE(ops->writeStr(sheet, 0, 2, "q\"t"));
    EXPECT_TRUE(ops->writeBool(sheet, 1, 1, 1));
    EXPECT_TRUE(ops->writeStr(sheet, 2, 0, "a,b"));
    EXPECT_TRUE(ops->writeStr(sheet, 2, 1, "line\nfeed"));
    EXPECT_TRUE(ops->writeNum(sheet, 3, 0, 7));
    EXPECT_TRUE(ops->writeStr(sheet, 3, 0, "")); // clears the cell again
    EXPECT_STREQ(ops->readBoolText(sheet, 1, 1), "TRUE");
    EXPECT_EQ(ops->readBoolText(sheet, 9, 9), nullptr);
    EXPECT_EQ(ops->readNum(sheet, 9, 9), 0.0);
    EXPECT_STREQ(ops->readStr(sheet, 0, 0), "");
    EXPECT_EQ(ops->isDate(sheet, 0, 0), 0);
    EXPECT_EQ(ops->namedRangeCount(sheet), 0);
    EXPECT_EQ(host().close(ctx, "csv", f), 0);
    EXPECT_EQ(readFile("new.csv"), "1.5,,\"q\"\"t\"\n,TRUE\n\"a,b\",line\nfeed\n\n");
}

TEST(CsvWrite, NumberTooLongForTheBufferFailsTheClose) {
    Context ctx(scratchDir());
    ctx.realFormat = "%03000.1f";
    writeFile("wide.csv", "1,x\n2\n");
    void *f = host().open(ctx, "csv", "wide.csv", true);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(host().close(ctx, "csv", f), 1);
    EXPECT_EQ(readFile("wide.csv"), "");
}

TEST(CsvRead, BufferLimit) {
    struct Case {
        const char *options;
        std::string content;
        bool ok;
        const char *error;
    } cases[] = {
        {"", "a\n" + std::string(2047, 'x') + "\n", true, ""},
        {"", "a\n" + std::string(2048, 'x') + "\n", false, "SHEET: Buffer overflow at line 2\n"},
        {"", "a\nb\n\"" + std::string(2048, 'x') + "\"", false,
         "SHEET: Buffer overflow at line 3\n"},
        {"bufsize=16;", "a\n" + std::string(3000, 'x') + "\n", true, ""},
        {"bufsize=1;", std::string(1023, 'x'), true, ""},
        {"bufsize=1;", std::string(1024, 'x'), false, "SHEET: Buffer overflow at line 1\n"},
        {"bufsize=0;", std::string(2048, 'x'), false, "SHEET: Buffer overflow at line 1\n"},
    };
    for (const Case &c : cases) {
        Context ctx(scratchDir());
        writeFile("big.csv", c.content);
        void *f = host().open(ctx, "csv", std::string(c.options) + "big.csv", false);
        if (c.ok) {
            ASSERT_NE(f, nullptr) << c.options << " " << c.content.size();
            EXPECT_TRUE(ctx.reports.empty());
            EXPECT_EQ(host().close(ctx, "csv", f), 0);
            continue;
        }
        EXPECT_EQ(f, nullptr);
        ASSERT_EQ(ctx.reports.size(), 1u);
        EXPECT_EQ(ctx.reports[0].first, "failed to load data");
        EXPECT_EQ(ctx.reports[0].second, 5);
        EXPECT_EQ(ctx.allErrors(), c.error);
        EXPECT_EQ(ctx.stream, nullptr); // closed again
    }
}

// "[]" on a file that does not exist yet: the new sheet is the cell A1, so
// a scalar lands there and a set written with grow runs down from it.
TEST(CsvTransfer, WholeSheetOfANewFile) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    struct Case {
        const char *label;
        bool set; // a set of texts, else the real scalar 2.5
        std::string file;
        std::vector<std::string> back;
    } cases[] = {
        {"[]", false, "2.5\n", {"2.5"}},
        {"grow;[]", false, "2.5\n", {"2.5"}},
        {"grow;[]", true, "a\n\"b,c\"\nd\n", {"a", "b,c", "d"}},
        {"[]", true, "a\n", {"a"}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(std::string(c.label) + (c.set ? " set" : " scalar"));
        Context ctx(scratchDir());
        remove(pathOf("whole.csv").c_str());
        Set *names = ctx.newSet(QD_STRING);
        for (const char *t : {"a", "b,c", "d"}) names->add(qdStr(t));
        qd_value half = qdReal(2.5);
        int rc = c.set ? host().writeItem(ctx, "csv", "whole.csv", c.label, names->type(), names)
                       : host().writeItem(ctx, "csv", "whole.csv", c.label, QD_REAL, &half);
        ASSERT_EQ(rc, 0) << ctx.allErrors();
        EXPECT_EQ(readFile("whole.csv"), c.file);

        Context in(scratchDir());
        std::vector<std::string> back;
        if (c.set) {
            Set *read = in.newSet(QD_STRING);
            ASSERT_EQ(host().readItem(in, "csv", "whole.csv", "[]", read->type(), read), 0)
                << in.allErrors();
            back = read->texts();
        } else {
            qd_value r{};
            ASSERT_EQ(host().readItem(in, "csv", "whole.csv", "[]", QD_REAL, &r), 0)
                << in.allErrors();
            back = {valueText(QD_REAL, r)};
        }
        EXPECT_EQ(back, c.back);
    }
}

} // namespace
