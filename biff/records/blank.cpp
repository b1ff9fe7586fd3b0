#include "biff/records/blank.h"
namespace tabrix {
void Blank::read(XlsRecords &xls, uint16_t size) {
    checkSize(size, 6);
    xls.readInt16(row);
    xls.readInt16(col);
    xls.readInt16(xf);
}

void Blank::write(XlsRecords &xls) const {
    xls.write(kId, 6);
    xls.writeInt16(row);
    xls.writeInt16(col);
    xls.writeInt16(xf);
}

void Blank::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" col=" << col << L" xf=" << xf;
}
} // namespace tabrix
