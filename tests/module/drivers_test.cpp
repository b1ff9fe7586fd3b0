// The workbook and csv drivers through the reference host: open failures
// and their report codes, the sharing of open books, a failed save, the csv
// store's sheet operations, buffer limits, blank cells and named ranges (the
// layouts' round trips run for every driver in roundtrip_test).
#include "refhost.h"
#include "sheetfile.h"
#include "support/tout_support.h"
#include "tabrix.h"

#include <gtest/gtest.h>

#include <cstdio>
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

SheetFile *fileOf(void *p) { return static_cast<SheetFile *>(p); }

using Reports = std::vector<std::pair<std::string, int>>;

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
        EXPECT_EQ(ctx.reports, c.code ? Reports(1, {c.message, c.code}) : Reports());
        EXPECT_EQ(ctx.stream, nullptr); // no stream left open
    }
    EXPECT_EQ(tout::slurp(pathOf("corrupt.xls")), "this is no workbook at all\n");
}

// ---- open books and their sharing ---------------------------------------------

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
            EXPECT_EQ(ctx.reports, (Reports{{"file already open for reading only", 2}}));
            EXPECT_EQ(host().close(ctx, driver, a), 0);
        }
        {
            Context ctx(scratchDir());
            void *w = host().open(ctx, driver, name, true);
            void *r = host().open(ctx, driver, name, false);
            ASSERT_NE(w, nullptr) << ctx.allErrors();
            EXPECT_EQ(w, r);
            EXPECT_TRUE(fileOf(w)->ops->writeStr(sheetOf(w), 0, 2, "new"));
            EXPECT_TRUE(fileOf(w)->ops->writeBool(sheetOf(w), 0, 3, 1));
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
        EXPECT_STRCASEEQ(fileOf(f)->ops->readBoolText(sheetOf(f), 0, 3), "true");
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
    // The last row and column are one past the last used ones.
    EXPECT_EQ((std::vector<int>{ops->firstRow(sheet), ops->lastRow(sheet), ops->firstCol(sheet),
                                ops->lastCol(sheet)}),
              (std::vector<int>{1, 3, 1, 5}));
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

TEST(CsvWrite, StoreWritesThroughSheetOps) {
    Context ctx(scratchDir());
    remove(pathOf("new.csv").c_str());
    int mode = 0;
    void *f = host().open(ctx, "csv", "new.csv", true, &mode);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(mode & QD_MODE_NOSTREAM, 0);
    EXPECT_EQ(access(pathOf("new.csv").c_str(), F_OK), 0); // created at open
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
        EXPECT_EQ(ctx.reports, (Reports{{"failed to load data", 5}}));
        EXPECT_EQ(ctx.allErrors(), c.error);
        EXPECT_EQ(ctx.stream, nullptr); // closed again
    }
}

} // namespace
