#include "biff/records/format.h"
#include "book/tberror.h"
namespace tabrix {
void Format::read(XlsRecords &xls, uint16_t size, bool oldFormat, MemPool &pool) {
    if (size < 3) throw tberror("Format size is incorrect");
    unsigned short remaining = size;
    xls.readInt16(ifmt, remaining);
    code.read(xls, oldFormat, oldFormat, pool, remaining);
    uint8_t skip = 0;
    while (remaining) xls.readWithContinueRecords(&skip, 1, remaining);
}

void Format::write(XlsRecords &xls) const {
    // An empty code still has its count and flags byte: a record of only
    // the id is read by no one.
    XLUnicodeString out = code;
    if (!out.text) out.cch = 0;
    xls.write(kId, uint16_t(2 + out.size()));
    xls.writeInt16(ifmt);
    out.write(xls);
}
} // namespace tabrix
