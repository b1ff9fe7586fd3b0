#include "biff/records/window2.h"
namespace tabrix {
void Window2::read(XlsRecords &xls, uint16_t size, bool old) {
    reset();
    if (old) {
        checkSize(size, 10);
        xls.readInt16(flags);
        xls.readInt16(rwTop);
        xls.readInt16(colLeft);
        uint32_t colour = 0;
        xls.readInt32(colour);
        return;
    }
    if (size != 10 && size != 18) sizeError();
    _short = size == 10;
    for (uint16_t *w : {&flags, &rwTop, &colLeft, &icvHdr, &reserved1}) xls.readInt16(*w);
    if (_short) return;
    for (uint16_t *w : {&wScaleSLV, &wScaleNormal, &reserved2, &reserved3}) xls.readInt16(*w);
}

void Window2::write(XlsRecords &xls) const {
    xls.write(kId, _short ? 10 : 18);
    for (uint16_t w : {flags, rwTop, colLeft, icvHdr, reserved1}) xls.writeInt16(w);
    if (_short) return;
    for (uint16_t w : {wScaleSLV, wScaleNormal, reserved2, reserved3}) xls.writeInt16(w);
}

void Window2::dumpTo(std::wostream &os) const {
    os << L" flags=" << flags << L" rwTop=" << rwTop << L" colLeft=" << colLeft << L" icvHdr="
       << icvHdr << L" wScaleSLV=" << wScaleSLV << L" wScaleNormal=" << wScaleNormal;
}
} // namespace tabrix
