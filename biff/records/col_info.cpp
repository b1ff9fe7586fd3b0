#include "biff/records/col_info.h"
namespace tabrix {
void ColInfo::read(XlsRecords &xls, uint16_t size) {
    if (size != 12 && size != 11) sizeError();
    xls.readInt16(colFirst);
    xls.readInt16(colLast);
    xls.readInt16(coldx);
    xls.readInt16(ixfe);
    xls.readInt16(flags);
    if (size == 12) {
        xls.readInt16(reserved);
    } else {
        uint8_t b = 0;
        xls.read(&b, 1);
        reserved = b;
    }
}

void ColInfo::write(XlsRecords &xls) const {
    xls.write(kId, 12);
    xls.writeInt16(colFirst);
    xls.writeInt16(colLast);
    xls.writeInt16(coldx);
    xls.writeInt16(ixfe);
    xls.writeInt16(flags);
    xls.writeInt16(reserved);
}

void ColInfo::dumpTo(std::wostream &os) const {
    os << L" cols=" << colFirst << L"-" << colLast << L" coldx=" << coldx << L" ixfe=" << ixfe
       << L" flags=" << flags;
}
} // namespace tabrix
