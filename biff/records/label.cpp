#include "biff/records/label.h"
namespace tabrix {
void Label::read(XlsRecords &xls, uint16_t size, bool old, unsigned codePage) {
    if (size < 8) sizeError();
    unsigned short remaining = size;
    xls.readInt16(row, remaining);
    xls.readInt16(col, remaining);
    xls.readInt16(xf, remaining);
    // A record too short for its text keeps the record's own message.
    bool whole = false;
    try {
        whole = text.read(xls, old, false, *_pool, remaining);
    } catch (const tberror &) {}
    if (!whole) sizeError();
    // Some producers pad the record behind the text.
    uint8_t pad = 0;
    while (remaining > 0) xls.readWithContinueRecords(&pad, 1, remaining);
    if (old) text.fromCodePage(codePage, *_pool);
}

void Label::write(XlsRecords &xls) const {
    xls.write(kId, uint16_t(6 + text.size()));
    xls.writeInt16(row);
    xls.writeInt16(col);
    xls.writeInt16(xf);
    text.write(xls);
}

void Label::dumpTo(std::wostream &os) const {
    os << L" row=" << row << L" col=" << col << L" xf=" << xf << L" text="
       << (text.text ? text.text : L"");
}
} // namespace tabrix
