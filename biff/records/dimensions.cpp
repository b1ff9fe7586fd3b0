#include "biff/records/dimensions.h"
namespace tabrix {
void Dimensions::update(uint32_t row, uint16_t col) {
    if (firstRow == lastRow || row < firstRow) firstRow = row;
    if (row >= lastRow) lastRow = row + 1;
    if (firstCol == lastCol || col < firstCol) firstCol = col;
    if (col >= lastCol) lastCol = uint16_t(col + 1);
}

void Dimensions::read(XlsRecords &xls, uint16_t size) {
    checkMinSize(size, 14);
    xls.readInt32(firstRow);
    xls.readInt32(lastRow);
    xls.readInt16(firstCol);
    xls.readInt16(lastCol);
    xls.readInt16(reserved);
    skipExtra(xls, size, 14);
}

void Dimensions::write(XlsRecords &xls) const {
    xls.write(kId, 14);
    xls.writeInt32(firstRow);
    xls.writeInt32(lastRow);
    xls.writeInt16(firstCol);
    xls.writeInt16(lastCol);
    xls.writeInt16(reserved);
}

void Dimensions::dumpTo(std::wostream &os) const {
    os << L" rows=" << firstRow << L"-" << lastRow << L" cols=" << firstCol << L"-" << lastCol;
}
} // namespace tabrix
