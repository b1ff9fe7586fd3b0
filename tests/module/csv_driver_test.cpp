// The "csv" driver through the reference host: reading fields into the store,
// writing the store back, buffer limits, and the sharing of open files.
#include "refhost.h"
#include "sheetfile.h"
#include "support/tout_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <sys/stat.h>

using namespace qdhost;
using tout::host;

namespace {

std::string scratchDir() {
    mkdir(TABRIX_TEST_TMP, 0777);
    std::string dir = std::string(TABRIX_TEST_TMP) + "/csv_driver";
    mkdir(dir.c_str(), 0777);
    return dir;
}

std::string pathOf(const std::string &name) { return scratchDir() + "/" + name; }

void writeFile(const std::string &name, const std::string &content) {
    tout::spit(pathOf(name), content);
}
std::string readFile(const std::string &name) { return tout::slurp(pathOf(name)); }

bool exists(const std::string &name) {
    struct stat st;
    return stat(pathOf(name).c_str(), &st) == 0;
}

SheetFile *fileOf(void *p) { return static_cast<SheetFile *>(p); }

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

struct ReadCase {
    const char *options;
    std::string content;
    std::string cells;
};

TEST(CsvRead, FieldsIntoTheStore) {
    ASSERT_TRUE(host().loaded()) << host().loadError();
    const ReadCase cases[] = {
        {"", "a,b\n1,2.5\n", "0,0=Sa 0,1=Sb 1,0=N1 1,1=N2.5"},
        {"", "\"a\"\"b\"\n", "0,0=Sa\"b"},
        {"", "\"x,y\",z\n", "0,0=Sx,y 0,1=Sz"},
        {"", "a\r\nb\r\n", "0,0=Sa 1,0=Sb"},
        {"", "a\rb\n", "0,0=Sa\rb"},
        {"", "\"a\nb\",c", "0,0=Sa\nb 0,1=Sc"},
        {"", "x,,y", "0,0=Sx 0,2=Sy"},
        {"", "\"\",\"q\"", "0,1=Sq"},
        {"", "TRUE,true,FALSE,False", "0,0=B1 0,1=Strue 0,2=B0 0,3=SFalse"},
        {"true=yes;false=no;", "yes,no,TRUE", "0,0=B1 0,1=B0 0,2=STRUE"},
        {"fsep=;;dsep=,;", "1,5;2;a,b\n", "0,0=N1.5 0,1=N2 0,2=Sa,b"},
        {"dsep=,;", "\"1,5\",2\n", "0,0=N1.5 0,1=N2"},
        {"fsep=\t;", "a b\t-3e2\n", "0,0=Sa b 0,1=N-300"},
        {"", "007,1e,+.5e,12a,+.5,1e3", "0,0=S007 0,1=S1e 0,2=S+.5e 0,3=S12a 0,4=N0.5 0,5=N1000"},
        {"", "9007199254740992,9007199254740991", "0,0=S9007199254740992 0,1=N9007199254740991"},
        {"", std::string(70, ',') + "far\n", "0,70=Sfar"},
        {"", "\n\n\nz", "3,0=Sz"},
        {"", "", "<none>"},
        {"", "\"open quote, never closed", "0,0=Sopen quote, never closed"},
        {"", "a\"b,\"c\"d", "0,0=Sa\"b 0,1=Scd"},
    };
    for (const ReadCase &c : cases) {
        Context ctx(scratchDir());
        writeFile("read.csv", c.content);
        int mode = 0;
        void *f = host().open(ctx, "csv", std::string(c.options) + "read.csv", false, &mode);
        ASSERT_NE(f, nullptr) << c.content;
        EXPECT_EQ(mode & (QD_MODE_OPENED | QD_MODE_PENDING), QD_MODE_OPENED);
        EXPECT_EQ(dumpCells(f), c.cells) << "input: " << c.content;
        EXPECT_EQ(host().close(ctx, "csv", f), 0);
        EXPECT_EQ(readFile("read.csv"), c.content); // reading saves nothing
        EXPECT_TRUE(ctx.errors.empty()) << ctx.allErrors();
    }
}

struct RoundTrip {
    const char *options;
    std::string in;
    std::string out;
};

TEST(CsvWrite, OpenForWritingAndCloseWritesBack) {
    const RoundTrip cases[] = {
        {"", "a,b\n1,2.5\n", "a,b\n1,2.5\n"},
        {"", "\"a\"\"b\",x\n", "\"a\"\"b\",x\n"},
        {"", "\"x,y\",z\n", "\"x,y\",z\n"},
        {"", "a\r\nb\r\n", "a\nb\n"},
        {"", "a\n\nb\n", "a\n\nb\n"},
        {"", "a,b,c\nd\n", "a,b,c\nd\n"},
        {"", "a,,\n", "a\n"},
        {"", "1.0,0.10,1e3,-0.5\n", "1,0.1,1000,-0.5\n"},
        {"", "TRUE,FALSE\n", "TRUE,FALSE\n"},
        {"true=yes;false=no;", "yes,no\n", "yes,no\n"},
        {"fsep=;;dsep=,;", "1,5;2\n", "1,5;2\n"},
        {"dsep=,;", "\"1,5\",2\n", "\"1,5\",2\n"},
        {"", std::string(70, ',') + "far\n", std::string(70, ',') + "far\n"},
        {"", std::string(130, ',') + "x," + std::string(3, ',') + "y\n",
         std::string(130, ',') + "x," + std::string(3, ',') + "y\n"},
        {"", "", ""},
        {"", "no line end", "no line end\n"},
    };
    ASSERT_TRUE(host().loaded()) << host().loadError();
    for (const RoundTrip &c : cases) {
        Context ctx(scratchDir());
        writeFile("rt.csv", c.in);
        void *f = host().open(ctx, "csv", std::string(c.options) + "rt.csv", true);
        ASSERT_NE(f, nullptr) << c.in;
        EXPECT_EQ(host().close(ctx, "csv", f), 0);
        EXPECT_EQ(readFile("rt.csv"), c.out) << "input: " << c.in;
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
    EXPECT_TRUE(exists("new.csv")); // created at open
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

TEST(CsvOpen, Refusals) {
    Context ctx(scratchDir());
    remove(pathOf("missing.csv").c_str());
    int mode = 0;
    EXPECT_EQ(host().open(ctx, "csv", "missing.csv", false, &mode), nullptr);
    EXPECT_EQ(mode & QD_MODE_NOSTREAM, QD_MODE_NOSTREAM);
    EXPECT_EQ(mode & QD_MODE_OPENED, QD_MODE_OPENED);
    EXPECT_TRUE(ctx.reports.empty());

    EXPECT_EQ(host().open(ctx, "csv", "grow;skiph;", false, &mode), nullptr);
    ASSERT_EQ(ctx.reports.size(), 1u);
    EXPECT_EQ(ctx.reports[0], std::make_pair(std::string("access denied"), 1));

    Context elsewhere("/no/such/directory");
    EXPECT_EQ(host().open(elsewhere, "csv", "x.csv", true, &mode), nullptr);
    EXPECT_EQ(mode & QD_MODE_NOSTREAM, QD_MODE_NOSTREAM);
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
