#include "biff/records/label_sst.h"
namespace tabrix {
void LabelSst::read(XlsRecords &xls, uint16_t size) {
    checkSize(size, 10);
    xls.readInt16(row);
    xls.readInt16(col);
    xls.readInt16(xf);
    xls.readInt32(sst);
}

void LabelSst::write(XlsRecords &xls) const {
    xls.write(kId, 10);
    xls.writeInt16(row);
    xls.writeInt16(col);
    xls.writeInt16(xf);
    xls.writeInt32(sst);
}

void LabelSst::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" col=" << col << L" xf=" << xf << L" sst=" << sst;
}
} // namespace tabrix
