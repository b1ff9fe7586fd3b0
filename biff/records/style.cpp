#include "biff/records/style.h"
#include "book/tberror.h"
namespace tabrix {
namespace {
const char *const kStyleSize = "Style size is incorrect";
}

void Style::read(XlsRecords &xls, uint16_t size, bool oldFormat, MemPool &pool) {
    if (size < 2) throw tberror(kStyleSize);
    unsigned short remaining = size;
    xls.readInt16(ixfe, remaining);
    if (builtIn()) {
        if (remaining < 2) throw tberror(kStyleSize);
        uint8_t b[2] = {0, 0};
        xls.readWithContinueRecords(b, 2, remaining);
        builtInStyle = b[0];
        level = b[1];
    } else {
        if (remaining == 0) throw tberror(kStyleSize);
        name.read(xls, oldFormat, oldFormat, pool, remaining);
    }
    if (remaining == 1) {
        uint8_t drop = 0;
        xls.readWithContinueRecords(&drop, 1, remaining);
    }
    if (remaining != 0) throw tberror(kStyleSize);
}

void Style::write(XlsRecords &xls) const {
    if (builtIn()) {
        xls.write(kId, 4);
        xls.writeInt16(ixfe);
        uint8_t b[2] = {builtInStyle, level};
        xls.write(b, 2);
        return;
    }
    xls.write(kId, uint16_t(2 + name.size()));
    xls.writeInt16(ixfe);
    name.write(xls);
}

void StyleExt::read(XlsRecords &xls) {
    uint16_t id = 0, size = 0;
    xls.readInt16(id);
    if (id != kId) throw tberror("StyleExt: unexpected record");
    xls.readInt16(size);
    data.assign(size, 0);
    if (size && xls.read(data.data(), size) != size) throw tberror("StyleExt: unexpected record");
}

void StyleExt::write(XlsRecords &xls) const { xls.write(kId, data.data(), uint16_t(data.size())); }

void StyleBlock::read(XlsRecords &xls, uint16_t size, bool oldFormat, MemPool &pool) {
    style.read(xls, size, oldFormat, pool);
    hasExt = false;
    if (!xls.eof() && xls.peekInt16() == StyleExt::kId) {
        ext.read(xls);
        hasExt = true;
    }
}

void StyleBlock::write(XlsRecords &xls) const {
    style.write(xls);
    if (hasExt) ext.write(xls);
}
} // namespace tabrix
