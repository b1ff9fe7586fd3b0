// HorizontalPageBreaks (id 27) and VerticalPageBreaks (id 26): the manual
// page breaks of a sheet, a count and one entry per break: the row (or
// column) the new page starts at, and the first and last column (or row)
// the break spans.  A new break spans 0 to 0xFFFF.
#ifndef TABRIX_BIFF_RECORDS_PAGE_BREAKS_H
#define TABRIX_BIFF_RECORDS_PAGE_BREAKS_H
#include "biff/biff_record.h"
#include <cstdint>
#include <vector>
namespace tabrix {

struct PageBreak {
    uint16_t position = 0;
    uint16_t start = 0;
    uint16_t end = 0xFFFF;
};

template <uint16_t Id> class PageBreaks : public Record<PageBreaks<Id>> {
public:
    static constexpr uint16_t kId = Id;
    static constexpr const char *kName = Id == 27 ? "HorizontalPageBreaks" : "VerticalPageBreaks";
    // Breaks in one direction at most.
    static constexpr size_t kMaxBreaks = 1026;

    std::vector<PageBreak> breaks;

    void reset() { breaks.clear(); }
    // Index of the break at `position`, -1 when there is none.
    int find(int position) const;
    // The size must be 2 plus 6 for each break that the count states.
    void read(XlsRecords &xls, uint16_t size);
    // Sorted by position; at most kMaxBreaks of them.
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<PageBreaks<Id>>::read;
};

using HorizontalPageBreaks = PageBreaks<27>;
using VerticalPageBreaks = PageBreaks<26>;

extern template class PageBreaks<27>;
extern template class PageBreaks<26>;

} // namespace tabrix
#endif
