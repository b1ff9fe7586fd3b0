#include "biff/records/mul_rk.h"
namespace tabrix {
std::vector<RK> MulRk::expand() const {
    std::vector<RK> out;
    out.reserve(cells.size());
    for (size_t i = 0; i < cells.size(); ++i) {
        RK r;
        r.row = row;
        r.col = uint16_t(firstCol + i);
        r.xf = cells[i].xf;
        r.rk = cells[i].rk;
        out.push_back(r);
    }
    return out;
}

void MulRk::read(XlsRecords &xls, uint16_t size) {
    // row, first col, last col and at least one 6-byte pair.
    if (size < 12 || (size - 6) % 6 != 0) sizeError();
    cells.assign((size - 6) / 6, Cell());
    xls.readInt16(row);
    xls.readInt16(firstCol);
    for (Cell &c : cells) {
        xls.readInt16(c.xf);
        xls.readInt32(c.rk);
    }
    xls.readInt16(lastCol);
}

void MulRk::write(XlsRecords &xls) const {
    xls.write(kId, uint16_t(6 + 6 * cells.size()));
    xls.writeInt16(row);
    xls.writeInt16(firstCol);
    for (const Cell &c : cells) {
        xls.writeInt16(c.xf);
        xls.writeInt32(c.rk);
    }
    xls.writeInt16(lastCol);
}

void MulRk::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" cols=" << firstCol << L"-" << lastCol << L" n=" << cells.size();
}
} // namespace tabrix
