#include "biff/records/db_cell.h"
namespace tabrix {
void DBCell::read(XlsRecords &xls, uint16_t size) {
    if (size < 4 || (size - 4u) % 2u) sizeError();
    xls.readInt32(dbRtrw);
    offsets.assign((size - 4u) / 2u, 0);
    for (uint16_t &o : offsets) xls.readInt16(o);
}

void DBCell::write(XlsRecords &xls) const {
    xls.write(kId, uint16_t(4 + 2 * offsets.size()));
    xls.writeInt32(dbRtrw);
    for (uint16_t o : offsets) xls.writeInt16(o);
}

void DBCell::dumpTo(std::wostream &os) const {
    os << L" dbRtrw=" << dbRtrw << L" offsets=" << offsets.size();
}
} // namespace tabrix
