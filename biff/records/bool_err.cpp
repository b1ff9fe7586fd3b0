#include "biff/records/bool_err.h"
namespace tabrix {
void BoolErr::read(XlsRecords &xls, uint16_t size) {
    checkMinSize(size, 8);
    xls.readInt16(row);
    xls.readInt16(col);
    xls.readInt16(xf);
    uint8_t b[2] = {0, 0};
    if (xls.read(b, 2) != 2) sizeError();
    value = b[0];
    isError = b[1];
    skipExtra(xls, size, 8);
}

void BoolErr::write(XlsRecords &xls) const {
    xls.write(kId, 8);
    xls.writeInt16(row);
    xls.writeInt16(col);
    xls.writeInt16(xf);
    uint8_t b[2] = {value, isError};
    xls.XlsCore::write(b, 2);
}

void BoolErr::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" col=" << col << L" xf=" << xf << L" value=" << int(value)
       << L" isError=" << int(isError);
}
} // namespace tabrix
