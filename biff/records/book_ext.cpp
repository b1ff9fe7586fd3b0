#include "biff/records/book_ext.h"

namespace tabrix {

uint16_t BookExt::size() const {
    if (cb < kMinSize) return kMinSize;
    if (cb > kMaxSize) return kMaxSize;
    return uint16_t(cb);
}

void BookExt::read(XlsRecords &xls, uint16_t size) {
    if (size < kMinSize || size > kMaxSize) sizeError();
    reset();
    xls.readInt16(rt);
    xls.readInt16(grbitFrt);
    xls.read(reserved, sizeof reserved);
    xls.readInt32(cb);
    xls.readInt32(flags);
    grbit1 = grbit2 = 0;
    if (size >= 21) xls.read(&grbit1, 1);
    if (size >= 22) xls.read(&grbit2, 1);
}

void BookExt::write(XlsRecords &xls) const {
    uint16_t n = size();
    xls.write(kId, n);
    xls.writeInt16(rt);
    xls.writeInt16(grbitFrt);
    xls.write(reserved, sizeof reserved);
    xls.writeInt32(cb);
    xls.writeInt32(flags);
    if (n >= 21) xls.write(&grbit1, 1);
    if (n >= 22) xls.write(&grbit2, 1);
}

void BookExt::dumpTo(std::wostream &os) const {
    os << L" rt=" << rt << L" grbitFrt=" << grbitFrt << L" reserved=(";
    for (size_t i = 0; i < sizeof reserved; ++i) os << (i ? L" " : L"") << unsigned(reserved[i]);
    os << L") cb=" << cb << L" flags=" << flags << L" grbit1=" << unsigned(grbit1) << L" grbit2="
       << unsigned(grbit2);
}

} // namespace tabrix
