#include "biff/sheet_header.h"

namespace tabrix {

namespace {
void put16(std::vector<uint8_t> &d, size_t at, uint16_t v) {
    d[at] = uint8_t(v);
    d[at + 1] = uint8_t(v >> 8);
}
void put32(std::vector<uint8_t> &d, size_t at, uint32_t v) {
    put16(d, at, uint16_t(v));
    put16(d, at + 2, uint16_t(v >> 16));
}
} // namespace

SubstreamHeader::SubstreamHeader() {
    raw.id = kId;
    raw.data.assign(16, 0);
    put16(raw.data, 0, vers);
    put16(raw.data, 2, dt);
    put16(raw.data, 4, 8346);  // rupBuild
    put16(raw.data, 6, 1997);  // rupYear
    put32(raw.data, 8, 49353); // fields1
    put32(raw.data, 12, 774);  // fields2
}

void SubstreamHeader::read(XlsRecords &xls, uint16_t size) {
    if (size < 4) throw tberror("BOF size is incorrect");
    raw.id = kId;
    raw.data.clear();
    raw.read(xls, size);
    if (raw.data.size() != size) throw tberror("BOF size is incorrect");
    vers = uint16_t(raw.data[0] | raw.data[1] << 8);
    dt = uint16_t(raw.data[2] | raw.data[3] << 8);
}

} // namespace tabrix
