#include "biff/records/number.h"
namespace tabrix {
void Number::read(XlsRecords &xls, uint16_t size) {
    checkSize(size, 14);
    xls.readInt16(row);
    xls.readInt16(col);
    xls.readInt16(xf);
    xls.readDouble(value);
}

void Number::write(XlsRecords &xls) const {
    xls.write(kId, 14);
    xls.writeInt16(row);
    xls.writeInt16(col);
    xls.writeInt16(xf);
    xls.writeDouble(value);
}

void Number::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" col=" << col << L" xf=" << xf << L" value=" << value;
}
} // namespace tabrix
