// The flat sheet entry points, one per row of TB_SHEET_ENTRIES, and the two
// whose flags convert differently.
#include "tabrix.h"

#include "book/flat_call.h"
#include "tabrix/ISheetT.h"

using tabrix::ISheetT;

#define TB_DEFINE_SHEET_ENTRY(ret, Name, op, params, args)                                         \
    ret tbSheet##Name##A params {                                                                  \
        return tabrix::flatCall<ret>(&ISheetT<char>::op, TB_FLAT_ARGS args);                       \
    }

extern "C" {
TB_SHEET_ENTRIES(TB_DEFINE_SHEET_ENTRY)

// Either flag pointer may be null; the operation always gets real ones.
void tbSheetAddrToRowColA(TBSheet s, const char *addr, int *row, int *col, int *rowRelative,
                          int *colRelative) {
    tabrix::FlatBoolOut rowRel(rowRelative), colRel(colRelative);
    static_cast<ISheetT<char> *>(s)->addrToRowCol(addr, row, col, rowRel, colRel);
}

// Unlike every other flag, only a value above 0 is true here, so that -1
// means false.
const char *tbSheetRowColToAddrA(TBSheet s, int row, int col, int rowRelative, int colRelative) {
    return static_cast<ISheetT<char> *>(s)->rowColToAddr(row, col, rowRelative > 0,
                                                         colRelative > 0);
}
}
