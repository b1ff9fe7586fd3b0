#include "biff/records/formula.h"

#include <algorithm>
#include <cstring>

namespace tabrix {

namespace {
// The fixed part: row, col, xf, value, grbit, chn, and cce.
const uint16_t kFixedSize = 22;
const uint8_t kPtgExp = 0x01;
const uint16_t kAlwaysCalc = 0x0001;
} // namespace

double Formula::doubleValue() const {
    double v = 0;
    std::memcpy(&v, value, sizeof v);
    return v;
}

void Formula::setDoubleValue(double v) { std::memcpy(value, &v, sizeof v); }

void Formula::setResult(uint8_t kind, uint8_t byte) {
    std::memset(value, 0, sizeof value);
    value[0] = kind;
    value[2] = byte;
    value[6] = value[7] = 0xFF;
}

int Formula::cellType() const {
    if (isNumber()) return 1;
    switch (value[0]) {
    case kString: return 2;
    case kBool: return 3;
    case kError: return 5;
    case kBlank: return 4;
    default: return 0;
    }
}

bool Formula::isExp(int *anchorRow, int *anchorCol) const {
    // cce 5: PtgExp, row u16, col u16.
    if (expression.size() < 7 || expression[0] != 5 || expression[1] != 0 ||
        expression[2] != kPtgExp)
        return false;
    if (anchorRow) *anchorRow = expression[3] | expression[4] << 8;
    if (anchorCol) *anchorCol = expression[5] | expression[6] << 8;
    return true;
}

void Formula::setExp(int anchorRow, int anchorCol) {
    if (!isExp()) return;
    expression[3] = uint8_t(anchorRow);
    expression[4] = uint8_t(anchorRow >> 8);
    expression[5] = uint8_t(anchorCol);
    expression[6] = uint8_t(anchorCol >> 8);
}

void Formula::setTokens(const std::vector<uint8_t> &rgce) {
    std::memset(value, 0, sizeof value);
    grbit = kAlwaysCalc;
    chn = 0;
    expression.resize(2 + rgce.size());
    expression[0] = uint8_t(rgce.size());
    expression[1] = uint8_t(rgce.size() >> 8);
    std::copy(rgce.begin(), rgce.end(), expression.begin() + 2);
}

const uint8_t *Formula::tokens(size_t &count) const {
    count = 0;
    if (expression.size() < 2) return nullptr;
    count = std::min<size_t>(size_t(expression[0] | expression[1] << 8), expression.size() - 2);
    return expression.data() + 2;
}

void Formula::read(XlsRecords &xls, uint16_t size) {
    if (size < kFixedSize) sizeError();
    xls.readInt16(rw);
    xls.readInt16(colIndex);
    xls.readInt16(xf);
    if (xls.read(value, sizeof value) < sizeof value) sizeError();
    xls.readInt16(grbit);
    xls.readInt32(chn);
    expression.assign(size - 20u, 0);
    if (xls.read(expression.data(), expression.size()) < expression.size()) sizeError();
}

void Formula::write(XlsRecords &xls) const {
    std::vector<uint8_t> expr = expression;
    if (expr.size() < 2) expr.assign(2, 0);
    xls.write(kId, uint16_t(20 + expr.size()));
    xls.writeInt16(rw);
    xls.writeInt16(colIndex);
    xls.writeInt16(xf);
    xls.write(value, sizeof value);
    xls.writeInt16(grbit);
    xls.writeInt32(chn);
    xls.write(expr.data(), expr.size());
}

void Formula::dumpTo(std::wostream &os) const {
    os << L" row=" << rw << L" col=" << colIndex << L" xf=" << xf << L" type=" << cellType()
       << L" cce=" << (expression.size() >= 2 ? (expression[0] | expression[1] << 8) : 0);
}

} // namespace tabrix
