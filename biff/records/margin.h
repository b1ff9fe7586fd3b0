// The four page margins of a sheet's printout, in inches as a 64-bit
// float: LeftMargin (id 38), RightMargin (39), TopMargin (40) and
// BottomMargin (41).  A new margin holds the printout's usual value.
#ifndef TABRIX_BIFF_RECORDS_MARGIN_H
#define TABRIX_BIFF_RECORDS_MARGIN_H
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {

template <uint16_t Id> class Margin : public Record<Margin<Id>> {
    static_assert(Id >= 38 && Id <= 41, "margin records are ids 38 to 41");

public:
    static constexpr uint16_t kId = Id;
    static constexpr const char *kName = Id == 38   ? "LeftMargin"
                                         : Id == 39 ? "RightMargin"
                                         : Id == 40 ? "TopMargin"
                                                    : "BottomMargin";
    // Left and right 0.75, top and bottom 1.0.
    static constexpr double kDefault = Id <= 39 ? 0.75 : 1.0;
    double value = kDefault;

    void reset() { value = kDefault; }
    void read(XlsRecords &xls, uint16_t size) {
        this->checkSize(size, 8);
        xls.readDouble(value);
    }
    void write(XlsRecords &xls) const {
        xls.write(kId, 8);
        xls.writeDouble(value);
    }
    void dumpTo(std::wostream &os) const { os << L" value=" << value; }
    using Record<Margin<Id>>::read;
};

using LeftMargin = Margin<38>;
using RightMargin = Margin<39>;
using TopMargin = Margin<40>;
using BottomMargin = Margin<41>;

} // namespace tabrix
#endif
