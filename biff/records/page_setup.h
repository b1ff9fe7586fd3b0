// PageSetup: the run of records that describes a sheet's printout, read and
// written as one group in this order: Header, Footer, HCenter, VCenter, the
// four margins, Pls, SetupBIFF.  The margins and Pls are written only when
// present, that is after a setter or after being read; the others always.
#ifndef TABRIX_BIFF_RECORDS_PAGE_SETUP_H
#define TABRIX_BIFF_RECORDS_PAGE_SETUP_H
#include "biff/records/center.h"
#include "biff/records/header_footer.h"
#include "biff/records/margin.h"
#include "biff/records/pls.h"
#include "biff/records/setup_biff.h"
#include "book/mem_pool.h"
#include <cstdint>
namespace tabrix {
class PageSetup {
public:
    bool hasLeftMargin = false;
    bool hasRightMargin = false;
    bool hasTopMargin = false;
    bool hasBottomMargin = false;
    bool hasPls = false;
    Header header;
    Footer footer;
    HCenter hCenter;
    VCenter vCenter;
    Margin<38> leftMargin;
    Margin<39> rightMargin;
    Margin<40> topMargin;
    Margin<41> bottomMargin;
    Pls pls;
    SetupBIFF setup;

    // Texts live in `pool`.
    explicit PageSetup(MemPool &pool) : header(pool), footer(pool) {}
    // A copy whose texts live in `pool`.
    PageSetup(const PageSetup &src, MemPool &pool);
    PageSetup(const PageSetup &) = delete;
    PageSetup &operator=(const PageSetup &) = delete;

    void reset();
    // True for the ids of the run: 20, 21, 131, 132, 38 to 41, 77, 161.
    static bool checkBegin(uint16_t id);
    // Whether a record of `id` goes into this run: one of its ids, except a
    // second Pls, which the run has no place for and its reader keeps raw.
    bool accepts(uint16_t id) const { return checkBegin(id) && !(id == Pls::kId && hasPls); }
    // Entered with the header of a record of the run just read; reads it and
    // every record of the run that follows, and leaves the stream in front
    // of the first record it does not accept.  `old`: texts of the older
    // form.
    void read(XlsRecords &xls, uint16_t id, uint16_t size, bool old = false);
    void write(XlsRecords &xls) const;
    void dump() const;

private:
    void readOne(XlsRecords &xls, uint16_t id, uint16_t size, bool old);
};
} // namespace tabrix
#endif
