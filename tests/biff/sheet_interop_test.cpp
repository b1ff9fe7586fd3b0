// Sheets of real producers' files: the first worksheet of each binary book
// of the public corpus is read by our sheet and by xlrd, and the cells must
// agree; the sheet saved and read again keeps the same cells.
#include "biff/records/sst.h"
#include "biff/support/biff_bytes.h"
#include "biff/support/fake_owner.h"
#include "biff/support/interop_tools.h"
#include "book/tberror.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

using namespace tabrix;
using namespace bifftest;

namespace {

const int kRows = 300;
const int kCols = 40;

// "r c kind value" for each cell of the first sheet in the window: kind n
// number (repr), s text (UTF-16LE hex), b boolean, e error code.  Blank
// cells are left out, as xlrd reads them as empty.
const char *kScript = R"(import sys
try:
    import xlrd
    bk = xlrd.open_workbook(sys.argv[1])
    sh = bk.sheet_by_index(0)
except Exception as e:
    print("ERROR", type(e).__name__)
    sys.exit(0)
print("SHEET")
h = lambda s: s.encode('utf-16-le', 'surrogatepass').hex() or '-'
for r in range(min(sh.nrows, 300)):
    for c in range(min(sh.ncols, 40)):
        t = sh.cell_type(r, c)
        v = sh.cell_value(r, c)
        if t in (xlrd.XL_CELL_NUMBER, xlrd.XL_CELL_DATE):
            print(r, c, 'n', repr(float(v)))
        elif t == xlrd.XL_CELL_TEXT:
            print(r, c, 's', h(v))
        elif t == xlrd.XL_CELL_BOOLEAN:
            print(r, c, 'b', int(v))
        elif t == xlrd.XL_CELL_ERROR:
            print(r, c, 'e', int(v))
)";

std::string fileBytes(const std::string &path) {
    std::ifstream f(path, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
}

// Reads the globals of a BIFF8 book for their shared strings, then sheet
// substreams until the first worksheet.  False when the book is of another
// format or has no worksheet.
bool readFirstWorksheet(const std::string &file, FakeOwner<wchar_t> &owner,
                        SheetImplT<wchar_t> &sheet) {
    std::stringstream ss(file);
    Xls<char> x;
    x.setStreamPtr(&ss);
    x.calcFileSize();
    unsigned total = 0;
    x.readHeader(total);
    bool first = true;
    for (;;) {
        uint16_t id = 0, size = 0;
        x.readInt16(id);
        x.readInt16(size);
        if (x.eof() || id == 0) return false;
        std::vector<uint8_t> data(size);
        if (first) {
            x.read(data.data(), size);
            if (id != 2057 || size < 4 || (data[0] | data[1] << 8) != 0x0600) return false;
            first = false;
            continue;
        }
        if (id == SST::kId) {
            owner.sst().read(x, size);
            continue;
        }
        x.read(data.data(), size);
        if (id == 10) break;
    }
    // Sheet substreams follow the globals, one after the other.
    for (int n = 0; n < 256; ++n) {
        if (x.eof() || x.peekInt16() != 2057) return false;
        sheet.read(x);
        if (sheet.docType() == 16) return true;
    }
    return false;
}

std::string save(SheetImplT<wchar_t> &sheet) {
    return writeBook([&](Xls<char> &x) { sheet.write(x); });
}

// Our view of the cells in the window, in the script's form.
std::map<std::pair<int, int>, std::string> ourCells(SheetImplT<wchar_t> &sheet) {
    std::map<std::pair<int, int>, std::string> cells;
    char buf[64];
    for (int r = 0; r < kRows; ++r)
        for (int c = 0; c < kCols; ++c) {
            std::string v;
            switch (sheet.cellType(r, c)) {
            case CELLTYPE_NUMBER:
                std::snprintf(buf, sizeof buf, "n %.17g", sheet.readNum(r, c, nullptr));
                v = buf;
                break;
            case CELLTYPE_STRING: v = "s " + hexUtf16(sheet.readStr(r, c, nullptr)); break;
            case CELLTYPE_BOOLEAN:
                v = std::string("b ") + (sheet.readBool(r, c, nullptr) ? "1" : "0");
                break;
            case CELLTYPE_ERROR: v = "e " + std::to_string(int(sheet.readError(r, c))); break;
            default: continue;
            }
            cells[{r, c}] = v;
        }
    return cells;
}

} // namespace

TEST(SheetInterop, FirstWorksheetsMatchXlrdAndSurviveASave) {
    if (!pythonHas("xlrd")) GTEST_SKIP() << "python3-xlrd is not installed";
    std::vector<std::string> files = corpusXlsFiles();
    if (files.empty()) GTEST_SKIP() << "corpus not present";
    int compared = 0, cells = 0;
    for (const std::string &path : files) {
        SCOPED_TRACE(path);
        FakeOwner<wchar_t> owner;
        SheetImplT<wchar_t> &sheet = owner.addSheet(L"First");
        bool found = false;
        try {
            found = readFirstWorksheet(fileBytes(path), owner, sheet);
        } catch (const tberror &) {
            continue; // a container or record we refuse, with its message
        }
        if (!found) continue;
        std::vector<std::string> lines = runPython("sheet_xlrd_dump.py", kScript, "'" + path + "'");
        if (lines.empty() || lines[0] != "SHEET") continue; // xlrd can't read it
        std::map<std::pair<int, int>, std::string> theirs;
        for (size_t i = 1; i < lines.size(); ++i) {
            std::istringstream is(lines[i]);
            int r = 0, c = 0;
            std::string kind, value;
            is >> r >> c >> kind >> value;
            if (kind == "n") {
                char buf[64];
                std::snprintf(buf, sizeof buf, "%.17g", std::strtod(value.c_str(), nullptr));
                value = buf;
            }
            theirs[{r, c}] = kind + " " + value;
        }
        std::map<std::pair<int, int>, std::string> ours = ourCells(sheet);
        unsigned diff = 0;
        for (auto &t : theirs) {
            auto it = ours.find(t.first);
            // A formula whose cached result is the empty marker: xlrd gives
            // an empty text, we a blank.
            if (it == ours.end() && t.second == "s -" &&
                sheet.isFormula(t.first.first, t.first.second) &&
                sheet.cellType(t.first.first, t.first.second) == CELLTYPE_BLANK)
                continue;
            if (it == ours.end() || it->second != t.second) {
                if (diff++ < 3)
                    ADD_FAILURE() << "cell " << t.first.first << "," << t.first.second << " xlrd "
                                  << t.second << " ours "
                                  << (it == ours.end() ? "none" : it->second);
            }
        }
        EXPECT_EQ(diff, 0u);
        ++compared;
        cells += int(theirs.size());

        // Saved and read again: the same cells.
        SheetImplT<wchar_t> &again = owner.addSheet(L"Again");
        Opened in(save(sheet));
        again.read(in.x);
        EXPECT_EQ(ourCells(again), ours);
    }
    std::printf("compared %d sheets, %d cells\n", compared, cells);
    EXPECT_GT(compared, 10);
    EXPECT_GT(cells, 1000);
}
