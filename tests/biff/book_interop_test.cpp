// Whole books checked against independent programs.  Books we write are
// read by xlrd (values and, with formatting info, bold, colour and number
// format) and by LibreOffice (to csv, every sheet).  Books just written by
// LibreOffice, xlwt and gnumeric, and the binary books of the public corpus,
// load here with the sheets and cells xlrd sees; saved again they still
// read the same in xlrd and here, and every record we don't model is still
// in the same substream, byte for byte.
#include "biff/support/interop_tools.h"
#include "biff/support/record_walk.h"
#include "support/book_kinds.h"
#include "support/oracle.h"
#include "tabrix.h"
#include "tabrix/IBookT.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace tabrix;
using namespace bifftest;
using namespace oracle;

namespace {

using Book = IBookT<wchar_t>;
using Sheet = ISheetT<wchar_t>;

using BookPtr = bookkinds::Owned<Book>;

BookPtr newBook() { return BookPtr(static_cast<Book *>(tbCreateBookW())); }

std::string saveRaw(Book &b) {
    const char *data = nullptr;
    unsigned size = 0;
    if (!b.saveRaw(&data, &size) || !data) return std::string();
    return std::string(data, size);
}

std::string narrow(const wchar_t *w) {
    std::string s;
    for (; w && *w; ++w) s += char(*w);
    return s;
}

Lines xlrdCells(const std::string &path, const char *reader = "xlrd") { return dump(reader, path); }

// Whether LibreOffice's raw csv value `theirs` ("kind value", or empty)
// shows our cell.
bool csvMatches(Sheet &s, int r, int c, const std::string &theirs) {
    switch (s.cellType(r, c)) {
    case CELLTYPE_NUMBER: {
        double want = s.readNum(r, c, nullptr);
        if (theirs.compare(0, 2, "n ") != 0) return false;
        double got = std::strtod(theirs.c_str() + 2, nullptr);
        return got == want || std::fabs(got - want) <= 1e-12 * std::fabs(want);
    }
    // Raw values may give a boolean as its number.
    case CELLTYPE_BOOLEAN:
        return s.readBool(r, c, nullptr) ? theirs == "s " + hex(L"TRUE") || theirs == "n 1"
                                         : theirs == "s " + hex(L"FALSE") || theirs == "n 0";
    default: return theirs == cellText(s, r, c);
    }
}

// ---- the book we write ----

struct Written {
    BookPtr book;
    std::string path;
    // Cells carrying the formats, with what xlrd must find: bold, colour
    // index and number format.
    struct Styled {
        int sheet, row, col;
        int bold, colour;
        std::wstring numFormat;
    };
    std::vector<Styled> styled;
};

const wchar_t *const kSheetNames[] = {L"Kinds", L"Données", L"Лист данных", L"数据",
                                      L"Edges", L"Styles",  L"Empty"};

Written writeBook() {
    Written w;
    w.book = newBook();
    Book &b = *w.book;
    std::vector<Sheet *> sheets;
    for (const wchar_t *n : kSheetNames) sheets.push_back(b.addSheet(n, nullptr));
    for (Sheet *s : sheets)
        if (!s) return w;
    // Every kind of cell a book writes.
    Sheet &k = *sheets[0];
    const double numbers[] = {
        0, 1, -1, 0.1, 100.25, 1.0 / 3, -2.5e-7, 1e300, -1e-300, 123456789012345.0, 65536};
    for (int i = 0; i < int(sizeof numbers / sizeof numbers[0]); ++i)
        k.writeNum(i, 0, numbers[i], nullptr);
    const wchar_t *texts[] = {
        L"plain", L"with, comma", L"with \"quotes\"",        L"two\nlines", L"café",
        L"Ωμέγα", L"中文字符",    L" leading and trailing ", L"x"};
    for (int i = 0; i < int(sizeof texts / sizeof texts[0]); ++i)
        k.writeStr(i, 1, texts[i], nullptr);
    k.writeStr(20, 1, std::wstring(1000, L'a').c_str(), nullptr);
    k.writeBool(0, 2, true, nullptr);
    k.writeBool(1, 2, false, nullptr);
    k.writeBlank(2, 2, b.format(0));
    k.writeStr(3, 2, L"plain", nullptr); // a shared string used twice
    // Many cells across the other sheets.
    for (int sh = 1; sh <= 3; ++sh)
        for (int r = 0; r < 300; ++r)
            for (int c = 0; c < 6; ++c) {
                if ((r + c) % 2)
                    sheets[sh]->writeNum(r, c, r * 10.5 + c + sh, nullptr);
                else
                    sheets[sh]->writeStr(
                        r, c,
                        (std::wstring(kSheetNames[sh]) + L" " + std::to_wstring(r * 7 + c)).c_str(),
                        nullptr);
            }
    // The last row and the last column.
    Sheet &e = *sheets[4];
    e.writeNum(0, 0, 1, nullptr);
    e.writeStr(65535, 0, L"last row", nullptr);
    e.writeNum(0, 255, 255, nullptr);
    e.writeStr(65535, 255, L"IV65536", nullptr);
    // Formats.
    Sheet &st = *sheets[5];
    IFontT<wchar_t> *bold = b.addFont(nullptr);
    IFontT<wchar_t> *red = b.addFont(nullptr);
    IFormatT<wchar_t> *fBold = b.addFormat(nullptr);
    IFormatT<wchar_t> *fRed = b.addFormat(nullptr);
    IFormatT<wchar_t> *fPct = b.addFormat(nullptr);
    int pct = b.addCustomNumFormat(L"0.000%");
    if (!bold || !red || !fBold || !fRed || !fPct || !pct) return w;
    bold->setBold(true);
    red->setColor(COLOR_RED);
    fBold->setFont(bold);
    fRed->setFont(red);
    fPct->setNumFormat(pct);
    st.writeStr(0, 0, L"bold", fBold);
    st.writeStr(1, 0, L"red", fRed);
    st.writeNum(2, 0, 0.12345, fPct);
    st.writeNum(3, 0, 7, nullptr);
    w.styled = {{5, 0, 0, 1, -1, L""}, {5, 1, 0, 0, COLOR_RED, L""}, {5, 2, 0, 0, -1, L"0.000%"}};
    w.path = tmpPath("book_interop_written.xls");
    writeFile(w.path, saveRaw(b));
    return w;
}

// ---- the records we model, rewritten by a save; all others must stay ----

const std::set<uint16_t> kModelledGlobals = {
    2057, 10, 225,  193, 226, 92,   66,  353, 317, 156, 25,  18,   19,  431,
    444,  61, 64,   141, 34,  14,   439, 218, 352, 140, 449, 2147, 133, 448,
    96,   49, 1054, 224, 659, 2194, 146, 252, 255, 235, 60,  24,   23};

const std::set<uint16_t> kModelledSheet = {
    2057, 10,  6,   519, 1212, 545, 566, 12,  13,  15,  16,  17,  95,  42,  43,
    130,  129, 128, 549, 85,   94,  18,  19,  99,  221, 20,  21,  131, 132, 161,
    38,   39,  40,  41,  26,   27,  28,  29,  65,  125, 160, 189, 190, 215, 229,
    236,  93,  438, 60,  239,  253, 513, 515, 516, 517, 638, 512, 520, 523, 574};

// Compares the unmodelled records of each substream before and after a
// save; answers a description of the first difference.
std::string keptRecordsDiffer(const std::string &before, const std::string &after,
                              size_t &compared) {
    WalkedBook a = walkBook(before), b = walkBook(after);
    if (!a.error.empty() || !b.error.empty()) return "walk: " + a.error + " / " + b.error;
    if (a.substreams.size() != b.substreams.size())
        return "substreams " + std::to_string(a.substreams.size()) + " vs " +
               std::to_string(b.substreams.size());
    for (size_t i = 0; i < a.substreams.size(); ++i) {
        const Substream &x = a.substreams[i];
        // Chart and macro sheets are carried whole.
        static const std::set<uint16_t> none;
        const std::set<uint16_t> &modelled = i == 0       ? kModelledGlobals
                                             : x.dt == 16 ? kModelledSheet
                                                          : none;
        auto ka = keptRecords(x, modelled), kb = keptRecords(b.substreams[i], modelled);
        compared += ka.size();
        if (ka != kb)
            return "substream " + std::to_string(i) + " (type " + std::to_string(x.dt) +
                   "): " + describe(ka) + "| vs |" + describe(kb);
    }
    return "";
}

} // namespace

TEST(BookInterop, OurBooksReadTheSameInXlrd) {
    if (!has("xlrd")) GTEST_SKIP() << "python3-xlrd is not installed";
    Written w = writeBook();
    ASSERT_FALSE(w.path.empty()) << "the book could not be built";
    Lines ours = bookLines(*w.book);
    Lines theirs = xlrdCells(w.path);
    ASSERT_FALSE(failed(theirs)) << theirs[0];
    EXPECT_EQ(ours, theirs) << firstDifference(ours, theirs);
    EXPECT_EQ(std::count_if(ours.begin(), ours.end(),
                            [](const std::string &l) { return l.compare(0, 5, "SHEET") == 0; }),
              7);

    // Formats: bold, colour and the custom number format of the styled cells.
    Lines fmt = xlrdCells(w.path, "xlrd-format");
    ASSERT_FALSE(failed(fmt)) << fmt[0];
    std::map<std::string, std::string> bySheetCell;
    int sheet = -1;
    for (const std::string &l : fmt) {
        if (l.compare(0, 5, "SHEET") == 0) {
            ++sheet;
            continue;
        }
        std::istringstream is(l);
        int r, c;
        is >> r >> c;
        std::string rest;
        std::getline(is, rest);
        bySheetCell[std::to_string(sheet) + " " + std::to_string(r) + " " + std::to_string(c)] =
            rest;
    }
    for (const Written::Styled &s : w.styled) {
        std::string key =
            std::to_string(s.sheet) + " " + std::to_string(s.row) + " " + std::to_string(s.col);
        SCOPED_TRACE(key);
        ASSERT_EQ(bySheetCell.count(key), 1u);
        std::istringstream is(bySheetCell[key]);
        int bold = -1, colour = -1;
        std::string numFmt;
        is >> bold >> colour >> numFmt;
        EXPECT_EQ(bold, s.bold);
        if (s.colour >= 0) {
            EXPECT_EQ(colour, s.colour);
        }
        if (!s.numFormat.empty()) {
            EXPECT_EQ(numFmt, hex(s.numFormat.c_str()));
        }
    }
}

TEST(BookInterop, OurBooksReadTheSameInLibreOffice) {
    if (!has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    Written w = writeBook();
    ASSERT_FALSE(w.path.empty()) << "the book could not be built";
    Lines csv = dump("libreoffice", w.path);
    ASSERT_FALSE(failed(csv)) << "LibreOffice converted nothing";
    // "sheet-hex r c" -> "kind value"
    std::map<std::string, std::string> theirs;
    std::string sheet;
    for (const std::string &l : csv) {
        if (l.compare(0, 6, "SHEET ") == 0) {
            sheet = l.substr(6);
            continue;
        }
        size_t kind = l.find(' ', l.find(' ') + 1);
        theirs[sheet + " " + l.substr(0, kind)] = l.substr(kind + 1);
    }
    Book &b = *w.book;
    int compared = 0;
    for (int i = 0; i < b.sheetCount(); ++i) {
        Sheet *s = b.getSheet(i);
        ASSERT_NE(s, nullptr);
        std::string name = hex(s->name());
        SCOPED_TRACE(narrow(s->name()));
        for (int r = s->firstRow(); r < s->lastRow(); ++r)
            for (int c = s->firstCol(); c < s->lastCol(); ++c) {
                auto it = theirs.find(name + " " + std::to_string(r) + " " + std::to_string(c));
                std::string field = it == theirs.end() ? std::string() : it->second;
                if (!csvMatches(*s, r, c, field)) {
                    ADD_FAILURE() << "cell " << r << "," << c << ": '" << field << "' vs '"
                                  << cellText(*s, r, c) << "'";
                    return;
                }
                if (s->cellType(r, c) != CELLTYPE_EMPTY) ++compared;
            }
    }
    EXPECT_GT(compared, 3000);
}

TEST(BookInterop, ProducersFilesLoadSaveAndKeepTheirRecords) {
    if (!has("xlrd")) GTEST_SKIP() << "python3-xlrd is not installed";
    std::vector<std::string> fresh = freshProducersFiles("book_producers");
    std::vector<std::string> files = fresh;
    std::vector<std::string> corpus = corpusXlsFiles();
    files.insert(files.end(), corpus.begin(), corpus.end());
    if (files.empty()) GTEST_SKIP() << "neither a producer nor the corpus is here";
    RecordProperty("fresh producers' files", int(fresh.size()));
    int checked = 0;
    std::string refused;
    size_t keptCompared = 0;
    for (const std::string &path : files) {
        SCOPED_TRACE(path);
        Lines theirs = xlrdCells(path);
        std::string bytes = readFile(path);
        BookPtr b = newBook();
        ASSERT_TRUE(b);
        bool loaded = b->loadRaw(bytes.data(), unsigned(bytes.size()));
        if (failed(theirs)) continue; // broken on purpose: we only must not crash
        bool fromProducer = std::find(fresh.begin(), fresh.end(), path) != fresh.end();
        if (!loaded) {
            // Encrypted books are refused by design; anything else is a fault
            // in a just-written file, and noted for the corpus.
            std::string msg = narrow(b->errorMessage());
            if (msg == "workbook is encrypted") continue;
            if (fromProducer) ADD_FAILURE() << msg;
            // What xlrd reads we read too, but for the formats before 5.0
            // and containers whose header contradicts their tables.
            bool clear = false;
            for (const char *why :
                 {"a bare record stream of the binary formats before 5.0", "Xls::loadFat(): "})
                clear = clear || msg.compare(0, std::strlen(why), why) == 0;
            if (!clear) ADD_FAILURE() << msg;
            refused += path.substr(path.rfind('/') + 1) + ": " + msg + "; ";
            continue;
        }
        Lines ours = bookLines(*b);
        EXPECT_EQ(ours, theirs) << firstDifference(ours, theirs);

        std::string saved = saveRaw(*b);
        if (saved.empty()) {
            std::string msg = narrow(b->errorMessage());
            // The older format is read but not written.
            if (msg != "a workbook loaded from the BIFF5 format can't be saved")
                ADD_FAILURE() << msg;
            continue;
        }
        std::string out = tmpPath("book_interop_resaved.xls");
        writeFile(out, saved);
        Lines again = xlrdCells(out);
        EXPECT_EQ(again, theirs) << firstDifference(again, theirs);
        BookPtr b2 = newBook();
        ASSERT_TRUE(b2->loadRaw(saved.data(), unsigned(saved.size())))
            << narrow(b2->errorMessage());
        Lines ours2 = bookLines(*b2);
        EXPECT_EQ(ours2, ours) << firstDifference(ours2, ours);
        std::string diff = keptRecordsDiffer(bytes, saved, keptCompared);
        EXPECT_EQ(diff, "");
        ++checked;
    }
    if (!refused.empty()) RecordProperty("refused corpus files", refused);
    RecordProperty("kept records compared", int(keptCompared));
    EXPECT_GT(checked, 0);
    EXPECT_GT(keptCompared, 0u);
}

// Characters beyond the first 65,536 are written as surrogate pairs and
// come back whole to a wide caller.
TEST(BookInterop, TextsBeyondTheBasicPlaneKeepTheirCharacters) {
    if (!has("xlrd")) GTEST_SKIP() << "python3-xlrd is not installed";
    BookPtr b = newBook();
    Sheet *s = b->addSheet(L"Plane \U0001D11E", nullptr);
    ASSERT_NE(s, nullptr);
    s->writeStr(0, 0, L"smile \U0001F600", nullptr);
    s->writeStr(1, 0, L"\U00020000 and \U0010FFFD", nullptr);
    // Long texts of pairs cross CONTINUE records at every offset: a record
    // must never end between the two halves of a pair.
    std::wstring smiles;
    for (int i = 0; i < 3000; ++i) smiles += L"\U0001F600";
    for (int k = 0; k < 6; ++k)
        s->writeStr(2 + k, 0, (std::wstring(size_t(k), L'a') + smiles).c_str(), nullptr);
    // A name is cut at a whole character: the pair at units 31 and 32 goes.
    Sheet *cut = b->addSheet(L"abcdefghijklmnopqrstuvwxyz1234\U0001F600", nullptr);
    ASSERT_NE(cut, nullptr);
    EXPECT_STREQ(cut->name(), L"abcdefghijklmnopqrstuvwxyz1234");
    std::string path = tmpPath("book_interop_planes.xls");
    writeFile(path, saveRaw(*b));
    Lines theirs = xlrdCells(path), ours = bookLines(*b);
    EXPECT_EQ(ours, theirs) << firstDifference(ours, theirs);
    std::string bytes = readFile(path);
    BookPtr back = newBook();
    ASSERT_TRUE(back->loadRaw(bytes.data(), unsigned(bytes.size())));
    EXPECT_EQ(bookLines(*back), ours);
    Sheet *t = back->getSheet(0);
    ASSERT_NE(t, nullptr);
    EXPECT_STREQ(t->name(), L"Plane \U0001D11E");
    EXPECT_STREQ(t->readStr(0, 0, nullptr), L"smile \U0001F600");
    EXPECT_STREQ(t->readStr(1, 0, nullptr), L"\U00020000 and \U0010FFFD");
}
