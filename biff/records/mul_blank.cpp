#include "biff/records/mul_blank.h"
namespace tabrix {
std::vector<Blank> MulBlank::expand() const {
    std::vector<Blank> out;
    out.reserve(xfs.size());
    for (size_t i = 0; i < xfs.size(); ++i) {
        Blank b;
        b.row = row;
        b.col = uint16_t(firstCol + i);
        b.xf = xfs[i];
        out.push_back(b);
    }
    return out;
}

void MulBlank::read(XlsRecords &xls, uint16_t size) {
    // row, first col, last col and at least one xf.
    if (size < 8 || size % 2 != 0) sizeError();
    xfs.assign((size - 6) / 2, 0);
    xls.readInt16(row);
    xls.readInt16(firstCol);
    for (uint16_t &xf : xfs) xls.readInt16(xf);
    xls.readInt16(lastCol);
}

void MulBlank::write(XlsRecords &xls) const {
    xls.write(kId, uint16_t(6 + 2 * xfs.size()));
    xls.writeInt16(row);
    xls.writeInt16(firstCol);
    for (uint16_t xf : xfs) xls.writeInt16(xf);
    xls.writeInt16(lastCol);
}

void MulBlank::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" cols=" << firstCol << L"-" << lastCol << L" n=" << xfs.size();
}
} // namespace tabrix
