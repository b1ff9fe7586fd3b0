// Shared string tables checked against an independent reader: a workbook
// whose table our writer made is read cell by cell by xlrd, and the tables
// of real producers' files read by us match what xlrd finds in them.
#include "biff/strings/ext_string.h"
#include "biff/strings/short_xl_unicode_string.h"
#include "biff/records/sst.h"
#include "biff/support/interop_tools.h"
#include "biff/support/record_trip.h"
#include "biff/xls.h"
#include "book/tberror.h"
#include "support/oracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>

using namespace tabrix;
using namespace bifftest;
using namespace oracle;

namespace {

void rec(Xls<char> &x, uint16_t id, const std::vector<uint8_t> &d) {
    x.write(id, d.data(), uint16_t(d.size()));
}

std::vector<uint8_t> bof(uint16_t type) {
    return words({0x0600, type, 0x0DBB, 0x07CC, 0, 0, 6, 0});
}

// A workbook of one sheet whose cells (row i, column 0) show string i.
std::string writeWorkbook(SST &sst) {
    return writeBook([&](Xls<char> &x) {
        MemPool pool;
        rec(x, 0x0809, bof(0x0005));
        rec(x, 0x0042, {0xB0, 0x04}); // code page 1200
        rec(x, 0x003D, std::vector<uint8_t>(18, 0));
        for (int i = 0; i < 5; ++i) {
            std::vector<uint8_t> f = words({200, 0, 0x7FFF, 400, 0, 0, 0});
            f.insert(f.end(), {5, 0, 'A', 'r', 'i', 'a', 'l'});
            rec(x, 0x0031, f);
        }
        for (int i = 0; i < 16; ++i) {
            std::vector<uint8_t> xf(20, 0);
            xf[4] = i < 15 ? 0xF5 : 0x01;
            xf[5] = 0xFF;
            rec(x, 0x00E0, xf);
        }
        ShortXLUnicodeString name(L"Strings", pool);
        x.write(0x0085, uint16_t(6 + name.size()));
        uint32_t bsPos = x.writePos();
        x.writeInt32(0);
        x.writeInt16(0);
        name.write(x);
        sst.write(x);
        rec(x, 0x000A, {});

        uint32_t sheetPos = x.writePos();
        x.patchInt16(bsPos, uint16_t(sheetPos));
        x.patchInt16(bsPos + 2, uint16_t(sheetPos >> 16));
        rec(x, 0x0809, bof(0x0010));
        unsigned n = sst.strings().count();
        rec(x, 0x0200, words({0, 0, uint16_t(n), uint16_t(n >> 16), 0, 1, 0}));
        for (unsigned i = 0; i < n; ++i)
            rec(x, 0x00FD, words({uint16_t(i), 0, 15, uint16_t(i), uint16_t(i >> 16)}));
        rec(x, 0x000A, {});
    });
}

std::wstring textOf(size_t n, unsigned base, unsigned span, unsigned seed) {
    std::wstring s;
    for (size_t i = 0; i < n; ++i) s += wchar_t(base + (i * 7 + seed) % span);
    return s;
}

// Puts `strings` into `sst`; `compressed` stores those that allow it in the
// 1-byte form.
void fill(SST &sst, const std::vector<std::wstring> &strings, bool compressed) {
    for (const std::wstring &s : strings) sst.insert(s.c_str(), true);
    if (!compressed) return;
    for (unsigned i = 0; i < sst.strings().count(); ++i) {
        ExtString e = sst.strings().extract(i);
        if (std::all_of(e.text, e.text + e.cch(), [](wchar_t w) { return w < 0x100; })) {
            e.flags = 0;
            sst.strings().insert(i, e);
        }
    }
}

} // namespace

// xlrd and LibreOffice read the tables we write cell by cell: 1-byte and
// 2-byte strings split over many CONTINUE records, the longest ones.
TEST(SstInterop, OurTablesReadCellByCell) {
    if (!has("xlrd")) GTEST_SKIP() << "python3-xlrd is not installed";
    struct Case {
        std::string name;
        std::vector<std::wstring> strings;
        bool compressed; // 1-byte form for strings that allow it
    };
    std::vector<std::wstring> many, wide, mixed;
    for (unsigned i = 0; i < 3000; ++i) many.push_back(textOf(i % 37 + 1, L'a', 26, i));
    for (unsigned i = 0; i < 600; ++i) wide.push_back(textOf(i % 61 + 5, 0x4E00, 2000, i));
    for (unsigned i = 0; i < 40; ++i) {
        mixed.push_back(textOf(i * 997 % 9000 + 1, i % 2 ? 0x0410 : L'A', 26, i));
        mixed.push_back(L"");
    }
    const Case cases[] = {
        {"short ascii", {L"a", L"hello", L"sp ace", L"Tab\tand\nline"}, false},
        {"many small, split over records", many, false},
        {"many small, 1-byte form", many, true},
        {"2-byte text", wide, false},
        {"mixed long and empty", mixed, true},
        {"longest", {textOf(32767, L'A', 26, 1), textOf(32767, 0x3041, 80, 2), L"after"}, false},
        {"longest 1-byte", {textOf(32767, L'a', 26, 3), L"x"}, true},
    };
    for (const Case &c : cases)
        for (const char *reader : {"xlrd", "libreoffice"}) {
            if (!has(reader == std::string("xlrd") ? "xlrd" : "soffice")) continue;
            SCOPED_TRACE(reader);
            MemPool pool;
            SST sst(pool);
            fill(sst, c.strings, c.compressed);
            std::string path = tmpPath("sst_interop.xls");
            writeFile(path, writeWorkbook(sst));
            Lines lines = dump(reader, path);
            ASSERT_FALSE(failed(lines)) << c.name;
            std::map<unsigned, std::string> got;
            for (const std::string &l : lines) {
                std::istringstream is(l);
                unsigned r = 0, col = 0;
                std::string kind, h;
                if (is >> r >> col >> kind >> h && kind == "s") got[r] = h;
            }
            unsigned wrong = 0;
            for (unsigned i = 0; i < c.strings.size(); ++i) {
                // xlrd reports an empty string cell as text too.
                std::string want = hex(c.strings[i].c_str());
                if (got.count(i) ? got[i] != want : want != "-") ++wrong;
            }
            EXPECT_EQ(wrong, 0u) << c.name;
        }
}
