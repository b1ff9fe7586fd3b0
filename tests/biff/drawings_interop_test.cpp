// Pictures, charts and comments of binary sheets against LibreOffice:
// books we draw on are converted to Open XML and read back with openpyxl
// (tests/support/oracle.py "drawings"); books LibreOffice, gnumeric and
// the corpus' producers wrote, with pictures, comments and a chart, report the same pictures and
// comments through our interfaces, save with their drawing records
// unchanged, and after one more comment still show all they showed.
// Pictures also against python's olefile and a small walker of the drawing
// group: the pictures we add, and those of other writers, which a save
// keeps with their drawing group byte for byte.
#include "biff/book_impl.h"
#include "support/binary_book.h"
#include "biff/record_ids.h"
#include "support/interop_tools.h"
#include "support/oracle.h"
#include "support/record_walk.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cstdio>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Book = BookImplT<char>;
using BookPtr = BinaryBook<>;
using Lines = oracle::Lines;

// A book with a chart and two comments on its first sheet.
const char *kChartBook = R"PY(
import sys, openpyxl
from openpyxl.chart import BarChart, Reference
from openpyxl.comments import Comment
wb = openpyxl.Workbook()
ws = wb.active
ws.title = 'Data'
for i in range(1, 6):
    ws.append([i, i * i])
chart = BarChart()
chart.add_data(Reference(ws, min_col=2, min_row=1, max_row=5))
ws.add_chart(chart, 'D2')
ws['A1'].comment = Comment('one', 'ann')
ws['B3'].comment = Comment('two lines\nhere', 'bob')
wb.create_sheet('Empty')
wb.save(sys.argv[1])
)PY";

// A text as the oracle prints it: backslash and line feed escaped.
std::string escaped(const std::string &text) {
    std::string out;
    for (char c : text) out += c == '\\' ? "\\\\" : c == '\n' ? "\\n" : std::string(1, c);
    return out;
}

// Our own listing in the oracle's form: the pictures' first cells and the
// comments of the cells the oracle's listing names, under each sheet.
Lines ourLines(Book &book, const Lines &theirs) {
    Lines out;
    for (int s = 0; s < book.sheetCount(); ++s) {
        ISheetT<char> *sheet = book.getSheet(s);
        out.push_back(std::string("SHEET ") + sheet->name());
        Lines lines;
        for (int i = 0; i < sheet->pictureSize(); ++i) {
            int row = 0, col = 0;
            sheet->getPicture(i, &row, &col, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
            lines.push_back("PIC " + std::to_string(row) + " " + std::to_string(col));
        }
        for (const std::string &l : theirs) {
            int row = 0, col = 0;
            if (std::sscanf(l.c_str(), "NOTE %d %d", &row, &col) != 2) continue;
            const char *text = sheet->readComment(row, col);
            if (text)
                lines.push_back("NOTE " + std::to_string(row) + " " + std::to_string(col) + " " +
                                escaped(text));
        }
        std::sort(lines.begin(), lines.end());
        out.insert(out.end(), lines.begin(), lines.end());
    }
    return out;
}

// A dump without its chart lines, which we don't read.
Lines withoutCharts(const Lines &dump) {
    Lines out;
    for (const std::string &l : dump)
        if (l.compare(0, 6, "CHART ") != 0) out.push_back(l);
    return out;
}

} // namespace

TEST(DrawingsInterop, OurPicturesAndCommentsSeenByLibreOffice) {
    if (!oracle::has("openpyxl") || !oracle::has("soffice")) GTEST_SKIP() << "no LibreOffice";
    BookPtr book = newBinaryBook();
    ISheetT<char> *one = book->addSheet("One", nullptr);
    ISheetT<char> *two = book->addSheet("Two", nullptr);
    const std::string png = testimages::png(90, 40);
    ASSERT_EQ(book->addPicture2(png.data(), unsigned(png.size())), 0);
    one->setPicture2(1, 1, 0, 150, 60, 10, 3);
    one->writeComment(4, 2, "hello", "ann", 120, 60);
    one->setPicture(8, 0, 0, 1.0, 0, 0);
    two->writeComment(0, 0, "first", nullptr, 100, 50);
    two->setPicture2(3, 3, 0, 64, 17, 0, 0);
    two->writeComment(0, 0, "second \xc3\xa9t\xc3\xa9", "bob", 100, 50);
    one->writeComment(20, 5, "late", "cy", 80, 40);
    ASSERT_STREQ(book->errorMessage(), "ok");
    const std::string path = tmpPath("drawings_ours.xls");
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();

    Lines dump = oracle::dump("drawings", path, true);
    ASSERT_FALSE(oracle::failed(dump)) << dump[0];
    const Lines expected = {"SHEET One",
                            "NOTE 20 5 late",
                            "NOTE 4 2 hello",
                            "PIC 1 1",
                            "PIC 8 0",
                            "SHEET Two",
                            "NOTE 0 0 second \xc3\xa9t\xc3\xa9",
                            "PIC 3 3"};
    EXPECT_EQ(dump, expected) << oracle::firstDifference(dump, expected);
    EXPECT_EQ(ourLines(*book, dump), expected);

    // A book with comments and no pictures at all.
    BookPtr notes = newBinaryBook();
    notes->addSheet("S", nullptr)->writeComment(0, 0, "alone", "me", 100, 50);
    ASSERT_TRUE(notes->save(path.c_str())) << notes->errorMessage();
    EXPECT_EQ(oracle::dump("drawings", path, true), Lines({"SHEET S", "NOTE 0 0 alone"}));
}

TEST(DrawingsInterop, OtherWritersDrawingsKeptAndExtended) {
    if (!oracle::has("openpyxl") || !oracle::has("soffice")) GTEST_SKIP() << "no LibreOffice";
    const std::string dir = freshDir("drawings_made");
    const std::string corpus = std::string(TABRIX_CORPUS_DIR) + "/public/libxlsxwriter/";
    runPython("chart_book.py", kChartBook, "'" + dir + "/chart_src.xlsx'");
    std::vector<std::string> files = xlsFromXlsx(dir + "/chart_src.xlsx", dir, true);
    for (const char *name : {"image01.xlsx", "comment02.xlsx"})
        for (const std::string &f : xlsFromXlsx(corpus + name, dir, false)) files.push_back(f);
    ASSERT_GE(files.size(), 3u);
    for (const std::string &f : corpusXlsFiles())
        for (const char *name : {"/picture.xls", "/xls_cross_sheet_chart.xls", "/Formate.xls"})
            if (f.size() > std::strlen(name) &&
                f.compare(f.size() - std::strlen(name), std::string::npos, name) == 0)
                files.push_back(f);

    for (const std::string &f : files) {
        SCOPED_TRACE(f);
        Lines before = oracle::dump("drawings", f, true);
        ASSERT_FALSE(oracle::failed(before)) << before[0];
        ASSERT_GE(before.size(), 2u);
        ASSERT_TRUE(std::any_of(before.begin(), before.end(), [](const std::string &l) {
            return l.compare(0, 6, "SHEET ") != 0;
        })) << "nothing drawn";
        BookPtr book = newBinaryBook();
        ASSERT_TRUE(book->load(f.c_str())) << book->errorMessage();
        EXPECT_EQ(ourLines(*book, before), withoutCharts(before));

        const std::string saved = tmpPath("drawings_other_saved.xls");
        ASSERT_TRUE(book->save(saved.c_str())) << book->errorMessage();
        for (size_t s = 1; s <= size_t(book->sheetCount()); ++s)
            EXPECT_TRUE(drawingRun(walkFile(f).substreams[s]) ==
                        drawingRun(walkFile(saved).substreams[s]))
                << "sheet " << s;

        // One more comment: the old pictures, charts and comments stay.
        book->getSheet(0)->writeComment(30, 6, "added", "me", 100, 50);
        ASSERT_STREQ(book->errorMessage(), "ok");
        ASSERT_TRUE(book->save(saved.c_str())) << book->errorMessage();
        Lines after = oracle::dump("drawings", saved, true);
        auto firstSheetEnd = [](Lines &l) {
            return std::find_if(l.begin() + 1, l.end(), [](const std::string &x) {
                return x.compare(0, 6, "SHEET ") == 0;
            });
        };
        Lines want = before;
        want.insert(firstSheetEnd(want), "NOTE 30 6 added");
        std::sort(want.begin() + 1, firstSheetEnd(want));
        EXPECT_EQ(after, want) << oracle::firstDifference(after, want);
    }
}

namespace {

using Bytes = std::vector<uint8_t>;

// Prints "group <hex>" with the joined drawing group bytes, then one line
// "pic <getPicture code> <hex of the image>" for each store entry.
const char *kWalker = R"PY(
import struct, sys, olefile
s = olefile.OleFileIO(sys.argv[1]).openstream('Workbook').read()
p, group, inside = 0, b'', False
while p + 4 <= len(s):
    rid, ln = struct.unpack_from('<HH', s, p)
    if rid == 235 or (inside and rid == 60):
        group += s[p + 4:p + 4 + ln]
        inside = True
    else:
        inside = False
    p += 4 + ln
print('group', group.hex() or '-')
codes = {0xF01A: 4, 0xF01B: 2, 0xF01C: 5, 0xF01D: 1, 0xF01E: 0, 0xF01F: 3, 0xF020: 6}
two = {981, 535, 1347, 1131, 1763, 1761, 1961, 1765}
def records(b, at, end):
    while at + 8 <= end:
        vi, t, ln = struct.unpack_from('<HHI', b, at)
        yield vi, t, at + 8, at + 8 + ln
        at += 8 + ln
for vi, t, a, e in records(group, 0, len(group)):
    for vi, t, a, e in records(group, a, e):
        if t != 0xF001:
            continue
        for vi, t, a, e in records(group, a, e):
            if t != 0xF007:
                continue
            for bvi, bt, ba, be in records(group, a + 36 + group[a + 33], e):
                head = (32 if (bvi >> 4) in two else 16) + (34 if bt in (0xF01A, 0xF01B, 0xF01C) else 1)
                print('pic', codes.get(bt, -1), group[ba + head:be].hex())
)PY";

std::vector<std::string> walk(const std::string &path) {
    return runPython("dgg_walk.py", kWalker, "'" + path + "'");
}

std::string hex(const char *data, unsigned size) {
    std::string out;
    char two[3];
    for (unsigned i = 0; i < size; ++i) {
        std::snprintf(two, sizeof two, "%02x", unsigned(uint8_t(data[i])));
        out += two;
    }
    return out;
}

// The lines the walker prints for our book's pictures.
std::vector<std::string> ourPictures(Book &book) {
    std::vector<std::string> lines;
    for (int i = 0; i < book.pictureSize(); ++i) {
        const char *data = nullptr;
        unsigned size = 0;
        int code = book.getPicture(i, &data, &size);
        lines.push_back("pic " + std::to_string(code) + " " + hex(data, size));
    }
    return lines;
}

} // namespace

TEST(PicturesInterop, AddedPicturesReadByAnotherWalker) {
    if (!oracle::has("olefile")) GTEST_SKIP() << "python3-olefile missing";
    const std::string images[] = {testimages::png(64, 32),        testimages::jpeg(10, 20),
                                  testimages::jpeg(30, 40, 0xE1), testimages::bmp(7, 8),
                                  testimages::dib(9, 10),         testimages::wmf(),
                                  testimages::emf(100, 50)};
    BookPtr book = newBinaryBook();
    book->addSheet("Sheet1", nullptr);
    for (const std::string &b : images)
        ASSERT_GE(book->addPicture2(b.data(), unsigned(b.size())), 0);
    std::string path = tmpPath("pictures_added.xls");
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();
    std::vector<std::string> expected = ourPictures(*book);
    std::vector<std::string> lines = walk(path);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end()), expected);

    BookPtr loaded = newBinaryBook();
    ASSERT_TRUE(loaded->load(path.c_str())) << loaded->errorMessage();
    EXPECT_EQ(ourPictures(*loaded), expected);
}

TEST(PicturesInterop, OtherWritersPicturesAndGroupKept) {
    if (!oracle::has("olefile")) GTEST_SKIP() << "python3-olefile missing";
    std::vector<std::string> files;
    for (const std::string &f : corpusXlsFiles())
        if (f.find("picture") != std::string::npos) files.push_back(f);
    for (const std::string &f :
         xlsFromXlsx(std::string(TABRIX_CORPUS_DIR) + "/public/libxlsxwriter/image01.xlsx",
                     freshDir("pictures_made"), true))
        files.push_back(f);
    ASSERT_GE(files.size(), 3u);

    for (const std::string &f : files) {
        SCOPED_TRACE(f);
        std::vector<std::string> lines = walk(f);
        ASSERT_FALSE(lines.empty());
        ASSERT_NE(lines.size(), 1u) << "no pictures";
        BookPtr book = newBinaryBook();
        ASSERT_TRUE(book->load(f.c_str())) << book->errorMessage();
        EXPECT_EQ(ourPictures(*book), std::vector<std::string>(lines.begin() + 1, lines.end()));
        std::string saved = tmpPath("pictures_resaved.xls");
        ASSERT_TRUE(book->save(saved.c_str())) << book->errorMessage();
        std::vector<std::string> again = walk(saved);
        ASSERT_FALSE(again.empty());
        EXPECT_EQ(again[0], lines[0]) << "drawing group changed";

        // With one more picture, the old ones stay and the new one follows.
        const std::string png = testimages::png(5, 5);
        ASSERT_EQ(book->addPicture2(png.data(), unsigned(png.size())), int(lines.size()) - 1);
        ASSERT_TRUE(book->save(saved.c_str())) << book->errorMessage();
        std::vector<std::string> more = walk(saved);
        ASSERT_EQ(more.size(), lines.size() + 1);
        EXPECT_EQ(std::vector<std::string>(more.begin() + 1, more.end() - 1),
                  std::vector<std::string>(lines.begin() + 1, lines.end()));
        EXPECT_EQ(more.back(), ourPictures(*book).back());
    }
}
