#include "biff/records/label.h"
namespace tabrix {
void Label::read(XlsRecords &xls, uint16_t size) {
    if (size < 9) sizeError();
    unsigned short remaining = size;
    xls.readInt16(row, remaining);
    xls.readInt16(col, remaining);
    xls.readInt16(xf, remaining);
    text.read(xls, false, false, *pool_, remaining);
    if (remaining != 0 || 6u + text.size() != size) sizeError();
}

void Label::write(XlsRecords &xls) const {
    xls.write(kId, uint16_t(6 + text.size()));
    xls.writeInt16(row);
    xls.writeInt16(col);
    xls.writeInt16(xf);
    text.write(xls);
}

void Label::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" col=" << col << L" xf=" << xf << L" text=" << (text.text ? text.text : L"");
}
} // namespace tabrix
