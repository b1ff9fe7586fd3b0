#include "biff/records/pane.h"
namespace tabrix {
void Pane::read(XlsRecords &xls, uint16_t size) {
    if (size != 9 && size != 10) sizeError();
    reset();
    for (uint16_t *w : {&x, &y, &rwTop, &colLeft}) xls.readInt16(*w);
    xls.read(&pnnAct, 1);
    if (size == 10) xls.read(&reserved, 1);
    absent = false;
}

void Pane::write(XlsRecords &xls) const {
    if (absent) return;
    xls.write(kId, 10);
    for (uint16_t w : {x, y, rwTop, colLeft}) xls.writeInt16(w);
    xls.write(&pnnAct, 1);
    xls.write(&reserved, 1);
}

void Pane::dumpTo(std::wostream &os) const {
    os << L" x=" << x << L" y=" << y << L" rwTop=" << rwTop << L" colLeft=" << colLeft
       << L" pnnAct=" << int(pnnAct);
}
} // namespace tabrix
