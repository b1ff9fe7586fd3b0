// Two targets in one, picked by the low bit of the first byte.
//
// Records: the rest is a sheet's record stream (bit 1 of the first byte
// reads it in the older format).  SheetSetup takes the records it owns; the
// others are skipped.  Whatever loads is saved, loaded again and saved
// again: both saves must be the same bytes.
//
// Names: the rest is a list of operations of six bytes (operation, four
// numbers, scope) on the names of a book of three sheets.  Afterwards every
// sheet's count of range names must match the names it can list.
#include "biff/sheet_names.h"
#include "biff/sheet_setup.h"
#include "book/tberror.h"

#include "support/workbook_input.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace tabrix;
using namespace fuzzinput;

namespace {

// Loads the records of `file` into `s`, skipping those it does not own;
// false when a record fails.
bool load(const std::string &file, SheetSetup &s, bool old) {
    return readFile(file, [&](Xls<char> &x) {
        s.beginRead();
        for (;;) {
            uint16_t id = 0, size = 0;
            x.readInt16(id);
            x.readInt16(size);
            if (x.eof() || id == 0) break;
            if (s.read(x, id, size, old)) continue;
            std::vector<uint8_t> skip(size);
            x.read(skip.data(), size);
        }
    });
}

std::string save(const SheetSetup &s) {
    return written([&](Xls<char> &x) {
        s.writePrintRowCol(x);
        s.writePrintGrid(x);
        s.writeWsBool(x);
        s.writeBreaks(x);
        s.writePageSetup(x);
        s.writeWindow2(x);
        s.writeScl(x);
        s.writePaneSelections(x);
    });
}

void records(const uint8_t *data, size_t size, bool old) {
    std::vector<uint8_t> wb(data, data + size);
    SheetSetup first(pool());
    if (!load(container(wb), first, old)) return;
    std::string once = save(first);
    SheetSetup second(pool());
    if (!load(once, second, false)) std::abort();
    if (save(second) != once) std::abort();
}

void names(const uint8_t *data, size_t size) {
    std::vector<Lbl> lbls;
    std::vector<SupBookBlock> supBooks;
    const wchar_t *const texts[] = {L"a", L"B", L"print_area", L"Print_Titles", L"a b", L""};
    for (size_t at = 0; at + 6 <= size && at < 6 * 300; at += 6) {
        const uint8_t *op = data + at;
        SheetNames s(lbls, supBooks, pool(), op[0] % 3, 3);
        int r1 = op[1] * 300, r2 = op[2] * 300, c1 = op[3], c2 = op[4];
        int scope = int(op[5] % 5) - 2;
        const wchar_t *text = texts[op[5] / 5 % 6];
        try {
            switch (op[0] / 3 % 8) {
            case 0: s.setPrintArea(r1, r2, c1, c2); break;
            case 1: s.clearPrintArea(); break;
            case 2: s.setPrintRepeatRows(r1, r2); break;
            case 3: s.setPrintRepeatCols(c1, c2); break;
            case 4: s.clearPrintRepeats(); break;
            case 5: s.setNamedRange(text, r1, r2, c1, c2, scope); break;
            case 6: s.delNamedRange(text, scope); break;
            default: s.updateNamedRange(r1, r2, op[5] & 1); break;
            }
        } catch (const tberror &) {}
    }
    for (int sheet = 0; sheet < 3; ++sheet) {
        SheetNames s(lbls, supBooks, pool(), sheet, 3);
        int n = s.namedRangeSize();
        for (int i = 0; i < n; ++i) {
            int r1 = 0, r2 = 0, c1 = 0, c2 = 0, scope = 0;
            bool hidden = false;
            std::wstring name = s.namedRange(i, &r1, &r2, &c1, &c2, &scope, &hidden);
            if (c1 > 255 || c2 > 255 || scope < -1 || scope > 2) std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (!data || size < 1) return 0;
    pool().free();
    if (size > 65536) size = 65536;
    if (data[0] & 1)
        names(data + 1, size - 1);
    else
        records(data + 1, size - 1, (data[0] & 2) != 0);
    return 0;
}
