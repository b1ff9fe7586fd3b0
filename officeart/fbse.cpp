#include "officeart/fbse.h"

#include <cstring>

namespace tabrix {

OfficeArtFBSE::OfficeArtFBSE(std::unique_ptr<OfficeArtBlip> blip) {
    const BlipKindInfo &info = blipKindInfo(blip->kind());
    _header = OfficeArtRecordHeader(2, info.fbseType, 0xF007, 0);
    _btWin32 = _btMacOS = info.fbseType;
    std::memcpy(_uid, blip->digest(), 16);
    _blipSize = blip->size();
    _embedded.push_back(std::move(blip));
}

OfficeArtFBSE::OfficeArtFBSE(const OfficeArtFBSE &other)
    : OfficeArtRecordBase(other), _depth(other._depth), _btWin32(other._btWin32),
      _btMacOS(other._btMacOS), _tag(other._tag), _blipSize(other._blipSize), _cRef(other._cRef),
      _foDelay(other._foDelay), _unused1(other._unused1), _cbName(other._cbName),
      _unused2(other._unused2), _unused3(other._unused3), _name(other._name), _tail(other._tail) {
    std::memcpy(_uid, other._uid, 16);
    for (const auto &r : other._embedded) _embedded.push_back(r->clone());
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtFBSE::clone() const {
    return std::unique_ptr<OfficeArtRecordBase>(new OfficeArtFBSE(*this));
}

void OfficeArtFBSE::readBody(ByteCursor &body) {
    const std::string e = error();
    body.need(kFixed, e);
    _btWin32 = body.u8(e);
    _btMacOS = body.u8(e);
    std::memcpy(_uid, body.bytes(16, e).data(), 16);
    _tag = body.u16(e);
    _blipSize = body.u32(e);
    _cRef = body.u32(e);
    _foDelay = body.u32(e);
    _unused1 = body.u8(e);
    _cbName = body.u8(e);
    _unused2 = body.u8(e);
    _unused3 = body.u8(e);
    _name = body.bytes(_cbName, e);
    _embedded.clear();
    readOfficeArtRecords(body, _embedded, _depth);
    _tail = body.bytes(body.left(), e);
}

void OfficeArtFBSE::writeBody(std::vector<uint8_t> &out) const {
    putU8(out, _btWin32);
    putU8(out, _btMacOS);
    out.insert(out.end(), _uid, _uid + 16);
    putU16(out, _tag);
    putU32(out, _blipSize);
    putU32(out, _cRef);
    putU32(out, _foDelay);
    for (uint8_t b : {_unused1, _cbName, _unused2, _unused3}) putU8(out, b);
    putBytes(out, _name);
    for (const auto &r : _embedded) r->write(out);
    putBytes(out, _tail);
}

uint32_t OfficeArtFBSE::bodySize() const {
    uint32_t n = uint32_t(kFixed + _name.size() + _tail.size());
    for (const auto &r : _embedded) n += r->size();
    return n;
}

const OfficeArtBlip *OfficeArtFBSE::blip() const {
    for (const auto &r : _embedded)
        if (auto *b = dynamic_cast<const OfficeArtBlip *>(r.get())) return b;
    return nullptr;
}

int OfficeArtFBSE::width() const { return blip() ? blip()->width() : 0; }
int OfficeArtFBSE::height() const { return blip() ? blip()->height() : 0; }

} // namespace tabrix
