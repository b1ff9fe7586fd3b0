#include "biff/records/page_breaks.h"

#include <algorithm>

namespace tabrix {

template <uint16_t Id> int PageBreaks<Id>::find(int position) const {
    for (size_t i = 0; i < breaks.size(); ++i)
        if (breaks[i].position == position) return int(i);
    return -1;
}

template <uint16_t Id> void PageBreaks<Id>::read(XlsRecords &xls, uint16_t size) {
    if (size < 2) this->sizeError();
    uint16_t count = 0;
    xls.readInt16(count);
    if (size != 2u + 6u * count) this->sizeError();
    breaks.assign(count, PageBreak());
    for (PageBreak &b : breaks) {
        xls.readInt16(b.position);
        xls.readInt16(b.start);
        xls.readInt16(b.end);
    }
}

template <uint16_t Id> void PageBreaks<Id>::write(XlsRecords &xls) const {
    std::vector<PageBreak> sorted = breaks;
    std::stable_sort(sorted.begin(), sorted.end(), [](const PageBreak &a, const PageBreak &b) {
        return a.position < b.position;
    });
    if (sorted.size() > kMaxBreaks) sorted.resize(kMaxBreaks);
    xls.write(kId, uint16_t(2 + 6 * sorted.size()));
    xls.writeInt16(uint16_t(sorted.size()));
    for (const PageBreak &b : sorted) {
        xls.writeInt16(b.position);
        xls.writeInt16(b.start);
        xls.writeInt16(b.end);
    }
}

template <uint16_t Id> void PageBreaks<Id>::dumpTo(std::wostream &os) const {
    os << L" count=" << breaks.size() << L" rgbrk=(";
    for (const PageBreak &b : breaks)
        os << L"{" << b.position << L" " << b.start << L"-" << b.end << L"}";
    os << L")";
}

template class PageBreaks<27>;
template class PageBreaks<26>;

} // namespace tabrix
