#include "book/excel_util.h"

#include "book/tberror.h"

#include <cwchar>

namespace tabrix {

std::wstring ExcelUtil::makeCol(int col) {
    std::wstring letters;
    for (long c = long(col) + 1; c > 0; c = (c - 1) / 26)
        letters.insert(letters.begin(), wchar_t(L'A' + (c - 1) % 26));
    return letters;
}

std::wstring ExcelUtil::rowColToAddr(int row, int col, bool rowRelative, bool colRelative) {
    // Unsigned on purpose: row -1 becomes 0 and passes, for whole columns.
    if (unsigned(row) + 1u > 0x100000u) throw tberror("row must be in range 0-1048575");
    if (col < 0 || col >= 16384) throw tberror("col must be in range 0-16383");
    std::wstring out;
    if (!colRelative) out += L'$';
    out += makeCol(col);
    if (row != -1) {
        if (!rowRelative) out += L'$';
        out += std::to_wstring(row + 1);
    }
    return out;
}

void ExcelUtil::addrToRowCol(const wchar_t *addr, int *row, int *col, bool *rowRelative,
                             bool *colRelative) {
    if (!addr) addr = L"";
    size_t len = std::wcslen(addr);
    size_t rowStart = 0;
    while (rowStart < len && !(addr[rowStart] >= L'1' && addr[rowStart] <= L'9')) ++rowStart;
    bool rowRel = true, colRel = true;

    long long sum = 0, weight = 1;
    for (size_t i = rowStart; i-- > 0;) {
        if (addr[i] == L'$') {
            if (i == 0) colRel = false;
            continue;
        }
        sum += (long long)(addr[i] - 64) * weight;
        // Columns longer than any sheet allows stop counting rather than overflow.
        if (weight < (1LL << 40)) weight *= 26;
    }
    int c = int(sum - 1);
    if (sum > 0x7FFFFFFFLL || sum < -0x7FFFFFFFLL) c = -1;

    int r = -1;
    if (rowStart < len) {
        if (rowStart > 0 && addr[rowStart - 1] == L'$') rowRel = false;
        long long v = 0;
        for (size_t i = rowStart; i < len && addr[i] >= L'0' && addr[i] <= L'9'; ++i) {
            v = v * 10 + (addr[i] - L'0');
            if (v > 0x7FFFFFFFLL) v = 0x7FFFFFFFLL;
        }
        r = int(v - 1);
    }
    if (row) *row = r;
    if (col) *col = c;
    if (rowRelative) *rowRelative = rowRel;
    if (colRelative) *colRelative = colRel;
}

} // namespace tabrix
