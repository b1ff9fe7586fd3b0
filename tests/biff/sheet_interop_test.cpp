// Sheets of real producers' files: the first worksheet of each binary book
// of the public corpus is read by our sheet and by xlrd, and the cells must
// agree; the sheet saved and read again keeps the same cells.
#include "biff/records/sst.h"
#include "biff/support/biff_bytes.h"
#include "biff/support/fake_owner.h"
#include "biff/support/interop_tools.h"
#include "book/tberror.h"
#include "support/oracle.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

using namespace tabrix;
using namespace bifftest;
using namespace oracle;

namespace {

const int kRows = 300;
const int kCols = 40;

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

// xlrd's dump of the first worksheet, in the window.
Lines xlrdFirstSheet(const std::string &path) {
    Lines all = dump("xlrd", path), out;
    if (failed(all)) return all;
    for (size_t i = 1; i < all.size() && all[i].compare(0, 5, "SHEET") != 0; ++i) {
        int r = 0, c = 0;
        if (std::sscanf(all[i].c_str(), "%d %d", &r, &c) == 2 && r < kRows && c < kCols)
            out.push_back(all[i]);
    }
    return out;
}

} // namespace

TEST(SheetInterop, FirstWorksheetsMatchXlrdAndSurviveASave) {
    if (!has("xlrd")) GTEST_SKIP() << "python3-xlrd is not installed";
    std::vector<std::string> files = corpusXlsFiles();
    if (files.empty()) GTEST_SKIP() << "corpus not present";
    int compared = 0, cells = 0;
    for (const std::string &path : files) {
        SCOPED_TRACE(path);
        FakeOwner<wchar_t> owner;
        SheetImplT<wchar_t> &sheet = owner.addSheet(L"First");
        bool found = false;
        try {
            found = readFirstWorksheet(readFile(path), owner, sheet);
        } catch (const tberror &) {
            continue; // a container or record we refuse, with its message
        }
        if (!found) continue;
        Lines theirs = xlrdFirstSheet(path);
        if (failed(theirs)) continue; // xlrd can't read it
        Lines ours = sheetLines(sheet, kRows, kCols);
        EXPECT_EQ(ours, theirs) << firstDifference(ours, theirs);
        ++compared;
        cells += int(theirs.size());

        // Saved and read again: the same cells.
        SheetImplT<wchar_t> &again = owner.addSheet(L"Again");
        Opened in(save(sheet));
        again.read(in.x);
        EXPECT_EQ(sheetLines(again, kRows, kCols), ours);
    }
    std::printf("compared %d sheets, %d cells\n", compared, cells);
    EXPECT_GT(compared, 10);
    EXPECT_GT(cells, 1000);
}
