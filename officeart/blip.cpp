#include "officeart/blip.h"

#include "officeart/md4.h"

namespace tabrix {

OfficeArtBlip::OfficeArtBlip(BlipKind kind, std::vector<uint8_t> image)
    : _kind(kind), _image(std::move(image)) {
    const BlipKindInfo &info = blipKindInfo(kind);
    _header = OfficeArtRecordHeader(0, info.oneUid, info.type, 0);
    _head.assign(16, 0);
    md4(_image.data(), _image.size(), _head.data());
    if (info.metafile) {
        uint32_t n = uint32_t(_image.size());
        putU32(_head, n);
        for (uint32_t v : {0u, 0u, 960u, 720u, 0u, 0u}) putU32(_head, v);
        putU32(_head, n);
        putU8(_head, 0xFE);
        putU8(_head, 0xFE);
    } else {
        putU8(_head, 0xFF);
    }
    _size = pictureSizeOf(kind, _image);
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtBlip::clone() const {
    return std::unique_ptr<OfficeArtRecordBase>(new OfficeArtBlip(*this));
}

bool OfficeArtBlip::isOneUid() const {
    const BlipKindInfo &info = blipKindInfo(_kind);
    uint16_t inst = _header.instance();
    if (inst == info.oneUid || (info.oneUidAlt && inst == info.oneUidAlt)) return true;
    if (inst == info.twoUid || (info.twoUidAlt && inst == info.twoUidAlt)) return false;
    throw tberror(error());
}

size_t OfficeArtBlip::headSize(bool oneUid) const {
    return (oneUid ? 16 : 32) + (blipKindInfo(_kind).metafile ? 34 : 1);
}

void OfficeArtBlip::readBody(ByteCursor &body) {
    _head = body.bytes(headSize(isOneUid()), error());
    _image = body.bytes(body.left(), error());
    try {
        _size = pictureSizeOf(_kind, _image);
    } catch (const tberror &) {
        _size = PictureSize(); // a stored image with a bad frame has no size
    }
}

void OfficeArtBlip::writeBody(std::vector<uint8_t> &out) const {
    putBytes(out, _head);
    putBytes(out, _image);
}

} // namespace tabrix
