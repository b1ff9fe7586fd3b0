#include "biff/biff_record.h"

namespace tabrix {

void Biff::read(XlsRecords &xls, uint16_t size) {
    if (size == 0) return;
    data.assign(size, 0);
    size_t got = xls.read(data.data(), size);
    if (got < size) data.resize(got);
}

void Biff::write(XlsRecords &xls) const {
    uint16_t size = uint16_t(data.size());
    xls.write(id, size);
    if (size) xls.write(data.data(), size_t(size));
}

} // namespace tabrix
