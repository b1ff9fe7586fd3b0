#include "biff/records/index.h"
namespace tabrix {
void Index::read(XlsRecords &xls, uint16_t size, uint16_t version) {
    bool shortRows = version < kFirst32BitVersion;
    unsigned fixed = shortRows ? 12u : 16u;
    if (size < fixed) sizeError();
    xls.readInt32(reserved1);
    if (shortRows) {
        uint16_t first = 0, last = 0;
        xls.readInt16(first);
        xls.readInt16(last);
        rwMic = first;
        rwMac = last;
    } else {
        xls.readInt32(rwMic);
        xls.readInt32(rwMac);
    }
    xls.readInt32(reserved2);
    unsigned rest = size - fixed;
    offsets.assign(rest / 4u, 0);
    for (uint32_t &o : offsets) xls.readInt32(o);
    uint8_t skip[4];
    if (rest % 4u) xls.read(skip, rest % 4u);
}

void Index::write(XlsRecords &xls) const {
    size_t n = offsets.size();
    if (n > (XlsRecords::kMaxRecordData - 16u) / 4u) n = (XlsRecords::kMaxRecordData - 16u) / 4u;
    xls.write(kId, uint16_t(16 + 4 * n));
    xls.writeInt32(reserved1);
    xls.writeInt32(rwMic);
    xls.writeInt32(rwMac);
    xls.writeInt32(reserved2);
    for (size_t i = 0; i < n; ++i) xls.writeInt32(offsets[i]);
}

void Index::dumpTo(std::wostream &os) const {
    os << L" rows=" << rwMic << L"-" << rwMac << L" offsets=" << offsets.size();
}
} // namespace tabrix
