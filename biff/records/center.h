// HCenter (id 131) and VCenter (id 132): whether a sheet's printout is
// centred between the left and right, or the top and bottom margins.  One
// 16-bit flag each, 0 in a new sheet.
#ifndef TABRIX_BIFF_RECORDS_CENTER_H
#define TABRIX_BIFF_RECORDS_CENTER_H
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {

template <uint16_t Id> class Center : public Record<Center<Id>> {
public:
    static constexpr uint16_t kId = Id;
    static constexpr const char *kName = Id == 131 ? "HCenter" : "VCenter";
    uint16_t value = 0;

    void reset() { value = 0; }
    bool center() const { return value != 0; }
    void setCenter(bool on) { value = on ? 1 : 0; }
    void read(XlsRecords &xls, uint16_t size) {
        this->checkSize(size, 2);
        xls.readInt16(value);
    }
    void write(XlsRecords &xls) const {
        xls.write(kId, 2);
        xls.writeInt16(value);
    }
    void dumpTo(std::wostream &os) const { os << L" value=" << value; }
    using Record<Center<Id>>::read;
};

using HCenter = Center<131>;
using VCenter = Center<132>;

} // namespace tabrix
#endif
