// FormulaBlock: everything that belongs to one formula cell in a sheet's
// record stream — the Formula itself, the records that may follow it (a
// shared formula definition, an array or table record, the String record
// with the cached text and its CONTINUE records) and an optional record
// kept from before it.
#ifndef TABRIX_BIFF_RUNS_FORMULA_BLOCK_H
#define TABRIX_BIFF_RUNS_FORMULA_BLOCK_H
#include "biff/biff_record.h"
#include "biff/records/formula.h"
#include "book/mem_pool.h"
#include <vector>
namespace tabrix {
class FormulaBlock {
public:
    static constexpr uint16_t kShrFmlaId = 1212;
    static constexpr uint16_t kArrayId = 545;
    static constexpr uint16_t kTableId = 566;
    static constexpr uint16_t kStringId = 519;

    Formula formula;
    bool hasPreceding = false;
    Biff preceding;
    bool hasSharedFormula = false;
    Biff shrFmla;
    bool hasFollowing = false;
    Biff following;
    bool hasString = false;
    Biff string;
    std::vector<Biff> continues;
    // The cached text of the String record, pool-owned; null without one.
    const wchar_t *cachedText = nullptr;

    // The Formula whose header was read (`size` bytes of data), then every
    // follower that belongs to it.
    void read(XlsRecords &xls, uint16_t size, MemPool &pool);
    void write(XlsRecords &xls) const;
    // The ref of a shared formula definition: first row, last row, first
    // column, last column; false without one.
    bool sharedRange(int &rowFirst, int &rowLast, int &colFirst, int &colLast) const;
};
// The text of a String record (cch, flags, characters, with the characters
// going on in CONTINUE records that each restart with a flags byte).  A
// record too short for its count gives the characters present.
const wchar_t *decodeStringRecord(const Biff &record, const std::vector<Biff> &continues,
                                  MemPool &pool);
} // namespace tabrix
#endif
