#include "biff/records/note_sh.h"

#include "biff/record_ids.h"
#include "officeart/byte_cursor.h"

#include <algorithm>

namespace tabrix {

namespace {
// Room for the author in one record.
const size_t kMaxAuthor = 4000;
} // namespace

void NoteSh::read(const Biff &record, bool oldFormat) {
    const char *e = "NoteSh size is incorrect";
    ByteCursor in(record.data.data(), record.data.size());
    row = in.u16(e);
    col = in.u16(e);
    author.clear();
    oldText.clear();
    if (oldFormat) {
        flags = objId = 0;
        uint16_t cch = in.u16(e);
        std::vector<uint8_t> bytes = in.bytes(std::min<size_t>(cch, in.left()), e);
        oldText.assign(bytes.begin(), bytes.end());
        return;
    }
    flags = in.u16(e);
    objId = in.u16(e);
    uint16_t cch = in.u16(e);
    bool wide = (in.u8(e) & 1) != 0;
    for (uint16_t i = 0; i < cch; ++i) author += wchar_t(wide ? in.u16(e) : in.u8(e));
}

Biff NoteSh::record() const {
    Biff b;
    b.id = rid::Note;
    putU16(b.data, row);
    putU16(b.data, col);
    putU16(b.data, flags);
    putU16(b.data, objId);
    // UTF-16 units, as many as one record holds.
    std::vector<uint16_t> units;
    for (wchar_t c : author) {
        uint32_t u = uint32_t(c);
        if (u > 0xFFFF) {
            units.push_back(uint16_t(0xD800 + ((u - 0x10000) >> 10)));
            units.push_back(uint16_t(0xDC00 + (u & 0x3FF)));
        } else {
            units.push_back(uint16_t(u));
        }
    }
    if (units.size() > kMaxAuthor) units.resize(kMaxAuthor);
    bool wide = false;
    for (uint16_t u : units) wide = wide || u > 0xFF;
    putU16(b.data, uint16_t(units.size()));
    putU8(b.data, wide ? 1 : 0);
    for (uint16_t u : units) wide ? putU16(b.data, u) : putU8(b.data, uint8_t(u));
    putU8(b.data, 0);
    return b;
}

} // namespace tabrix
