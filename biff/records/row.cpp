#include "biff/records/row.h"
namespace tabrix {
uint16_t *Row::field(int i) {
    uint16_t *f[8] = {&row, &firstCol, &lastCol, &height, &reserved1, &reserved2, &flags, &xf};
    return f[i];
}

void Row::read(XlsRecords &xls, uint16_t size) {
    checkSize(size, 16);
    for (int i = 0; i < 8; ++i) xls.readInt16(*field(i));
}

void Row::write(XlsRecords &xls) const {
    xls.write(kId, 16);
    Row copy = *this;
    for (int i = 0; i < 8; ++i) xls.writeInt16(*copy.field(i));
}

void Row::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" cols=" << firstCol << L"-" << lastCol << L" height=" << height
       << L" flags=" << flags << L" xf=" << xf;
}
} // namespace tabrix
