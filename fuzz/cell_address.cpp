// Arbitrary text through the address scanner under every caller's rules.
// The scan must stay inside the text, its parts must lie in order, and a
// whole address that passed must print back to the same column and row.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tabrix/cell_address.h"

using namespace tabrix;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (!data) return 0;
    const char *text = reinterpret_cast<const char *>(data);
    std::wstring wide(text, text + size);
    for (ColumnText rule : {ColumnText::Upper, ColumnText::AnyCase, ColumnText::BeforeRowDigit})
        for (bool dollars : {false, true}) {
            AddressRules rules;
            rules.columnText = rule;
            rules.dollars = dollars;
            CellAddress a = scanCellAddress(text, size, rules);
            CellAddress w = scanCellAddress(wide.data(), wide.size(), rules);
            if (a.end > size || a.lettersBegin > a.lettersEnd || a.digitsBegin > a.digitsEnd ||
                a.digitsEnd > a.end)
                std::abort();
            if (rule == ColumnText::BeforeRowDigit)
                continue; // bytes above 0x7F read differently as wide text
            if (w.status != a.status || w.end != a.end || w.column != a.column || w.row != a.row)
                std::abort();
            if (a.status != CellAddress::Ok || a.end != size || !a.hasColumn()) continue;
            if (a.column > rules.maxColumn || a.row > rules.maxRow) std::abort();
            std::string again = columnLetters<char>(long(a.column - 1));
            CellAddress b = scanCellAddress(again.data(), again.size(), rules);
            if (b.status != CellAddress::Ok || b.column != a.column) std::abort();
        }
    return 0;
}
