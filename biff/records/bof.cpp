#include "biff/records/bof.h"

namespace tabrix {

namespace {
// Byte offsets at which a short record may end.
bool atFieldEnd(uint16_t size) {
    static const uint16_t kEnds[] = {0, 2, 4, 6, 8, 12, 16};
    for (uint16_t e : kEnds)
        if (size == e) return true;
    return size > Bof::kSize;
}
} // namespace

void Bof::read(XlsRecords &xls, uint16_t size) {
    if (!atFieldEnd(size)) sizeError();
    *this = Bof();
    vers = dt = rupBuild = rupYear = 0;
    fields1 = fields2 = 0;
    unsigned short remaining = size;
    if (remaining >= 2) xls.readInt16(vers, remaining);
    if (remaining >= 2) xls.readInt16(dt, remaining);
    if (remaining >= 2) xls.readInt16(rupBuild, remaining);
    if (remaining >= 2) xls.readInt16(rupYear, remaining);
    if (remaining >= 4) xls.readInt32(fields1, remaining);
    if (remaining >= 4) xls.readInt32(fields2, remaining);
    uint8_t skip[64];
    while (remaining > 0) {
        unsigned short n = remaining < sizeof skip ? remaining : sizeof skip;
        xls.readWithContinueRecords(skip, n, remaining);
        if (xls.eof()) break;
    }
}

void Bof::write(XlsRecords &xls) const {
    xls.write(kId, kSize);
    xls.writeInt16(vers);
    xls.writeInt16(dt);
    xls.writeInt16(rupBuild);
    xls.writeInt16(rupYear);
    xls.writeInt32(fields1);
    xls.writeInt32(fields2);
}

void Bof::dumpTo(std::wostream &os) const {
    os << std::dec << L" vers=" << vers << L" dt=" << dt << L" rupBuild=" << rupBuild
       << L" rupYear=" << rupYear << L" fields1=" << fields1 << L" fields2=" << fields2;
}

void Bof::dumpOn(std::wostream &os) const {
    std::ios::fmtflags saved = os.flags();
    os << L"[BOF";
    dumpTo(os);
    os << L"]" << std::endl;
    os.flags(saved);
}

std::wstring Bof::dumpText() const {
    std::wostringstream os;
    dumpOn(os);
    return os.str();
}

} // namespace tabrix
