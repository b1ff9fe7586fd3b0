#include "officeart/property_table.h"

namespace tabrix {

namespace {
const char *const kTableError = "error in record OfficeArtRGFOPTE";
}

OfficeArtFOPTEOPID::OfficeArtFOPTEOPID(unsigned opid, bool fBid, bool fComplex) {
    if (opid >= 16384) throw tberror("error in OfficeArtFOPTEOPID");
    _raw = uint16_t(opid | (fBid ? 0x4000 : 0) | (fComplex ? 0x8000 : 0));
}

OfficeArtRGFOPTE::OfficeArtRGFOPTE(int32_t pictureId) {
    addProperty({OfficeArtFOPTEOPID(260, true, false), pictureId}, {});
    addProperty({OfficeArtFOPTEOPID(261, false, true), 4}, {'3', 0, 0, 0});
}

void OfficeArtRGFOPTE::read(ByteCursor &in, unsigned count, uint32_t bodyLength) {
    if (uint64_t(count) * 6 > bodyLength) throw tberror(kTableError);
    _entries.assign(count, OfficeArtFOPTE());
    for (OfficeArtFOPTE &e : _entries) {
        e.id = OfficeArtFOPTEOPID(in.u16(kTableError));
        e.op = int32_t(in.u32(kTableError));
    }
    _complex = in.bytes(bodyLength - 6 * count, kTableError);
}

void OfficeArtRGFOPTE::write(std::vector<uint8_t> &out) const {
    for (const OfficeArtFOPTE &e : _entries) {
        putU16(out, e.id.raw());
        putU32(out, uint32_t(e.op));
    }
    putBytes(out, _complex);
}

uint32_t OfficeArtRGFOPTE::addProperty(const OfficeArtFOPTE &entry,
                                       const std::vector<uint8_t> &complexBytes) {
    _entries.push_back(entry);
    putBytes(_complex, complexBytes);
    return uint32_t(6 + complexBytes.size());
}

OfficeArtFOPT::OfficeArtFOPT(uint16_t type) { _header = OfficeArtRecordHeader(3, 0, type, 0); }

std::unique_ptr<OfficeArtRecordBase> OfficeArtFOPT::clone() const {
    return std::unique_ptr<OfficeArtRecordBase>(new OfficeArtFOPT(*this));
}

void OfficeArtFOPT::readBody(ByteCursor &body) {
    _table.read(body, _header.instance(), uint32_t(body.left()));
}

void OfficeArtFOPT::addProperty(const OfficeArtFOPTE &entry,
                                const std::vector<uint8_t> &complexBytes) {
    _table.addProperty(entry, complexBytes);
    _header.setInstance(uint16_t(_header.instance() + 1));
    _absent = false;
    _dirty = true;
}

void OfficeArtFOPT::clearProperties() {
    _table.clear();
    _header.setInstance(0);
    _dirty = true;
}

} // namespace tabrix
