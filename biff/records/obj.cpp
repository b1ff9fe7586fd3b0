#include "biff/records/obj.h"

#include "biff/record_ids.h"
#include "officeart/byte_cursor.h"

namespace tabrix {

namespace {

const uint16_t kCommonType = 21, kCommonLen = 18;

Biff common(uint16_t ot, uint16_t id, uint16_t flags) {
    Biff b;
    b.id = rid::Obj;
    putU16(b.data, kCommonType);
    putU16(b.data, kCommonLen);
    putU16(b.data, ot);
    putU16(b.data, id);
    putU16(b.data, flags);
    for (int i = 0; i < 3; ++i) putU32(b.data, 0);
    return b;
}

void end(Biff &b) { putU32(b.data, 0); }

} // namespace

bool ObjCommon::read(const Biff &record) {
    if (record.data.size() < 4u + kCommonLen) return false;
    ByteCursor in(record.data.data(), record.data.size());
    const char *e = "error in record Obj";
    if (in.u16(e) != kCommonType || in.u16(e) < 6) return false;
    ot = in.u16(e);
    id = in.u16(e);
    flags = in.u16(e);
    return true;
}

Biff pictureObj(uint16_t id) {
    Biff b = common(ObjCommon::kPicture, id, 0x6011);
    for (uint16_t v : {7, 2, 0xFFFF, 8, 2, 1}) putU16(b.data, v);
    end(b);
    return b;
}

Biff noteObj(uint16_t id) {
    static const uint8_t kGuid[16] = {0xFC, 0x53, 0x24, 0xBA, 0x0A, 0xC7, 0x3E, 0x43,
                                      0xB3, 0x4B, 0xA4, 0xE0, 0xCB, 0xE0, 0xAC, 0x98};
    Biff b = common(ObjCommon::kNote, id, 0x4011);
    putU16(b.data, 13);
    putU16(b.data, 22);
    b.data.insert(b.data.end(), kGuid, kGuid + 16);
    putU16(b.data, 0);
    putU32(b.data, 16);
    end(b);
    return b;
}

} // namespace tabrix
