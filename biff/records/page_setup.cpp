#include "biff/records/page_setup.h"

namespace tabrix {

PageSetup::PageSetup(const PageSetup &src, MemPool &pool)
    : hasLeftMargin(src.hasLeftMargin), hasRightMargin(src.hasRightMargin),
      hasTopMargin(src.hasTopMargin), hasBottomMargin(src.hasBottomMargin), hasPls(src.hasPls),
      header(src.header), footer(src.footer), hCenter(src.hCenter), vCenter(src.vCenter),
      leftMargin(src.leftMargin), rightMargin(src.rightMargin), topMargin(src.topMargin),
      bottomMargin(src.bottomMargin), pls(src.pls), setup(src.setup) {
    header.rebind(pool);
    footer.rebind(pool);
}

void PageSetup::reset() {
    hasLeftMargin = hasRightMargin = hasTopMargin = hasBottomMargin = hasPls = false;
    header.reset();
    footer.reset();
    hCenter.reset();
    vCenter.reset();
    leftMargin.reset();
    rightMargin.reset();
    topMargin.reset();
    bottomMargin.reset();
    pls.reset();
    setup.reset();
}

bool PageSetup::checkBegin(uint16_t id) {
    switch (id) {
    case Header::kId:
    case Footer::kId:
    case HCenter::kId:
    case VCenter::kId:
    case 38:
    case 39:
    case 40:
    case 41:
    case Pls::kId:
    case SetupBIFF::kId: return true;
    default: return false;
    }
}

void PageSetup::readOne(XlsRecords &xls, uint16_t id, uint16_t size, bool old) {
    switch (id) {
    case Header::kId: header.read(xls, size, old); break;
    case Footer::kId: footer.read(xls, size, old); break;
    case HCenter::kId: hCenter.read(xls, size); break;
    case VCenter::kId: vCenter.read(xls, size); break;
    case 38:
        leftMargin.read(xls, size);
        hasLeftMargin = true;
        break;
    case 39:
        rightMargin.read(xls, size);
        hasRightMargin = true;
        break;
    case 40:
        topMargin.read(xls, size);
        hasTopMargin = true;
        break;
    case 41:
        bottomMargin.read(xls, size);
        hasBottomMargin = true;
        break;
    case Pls::kId:
        pls.read(xls, size);
        hasPls = true;
        break;
    default: setup.read(xls, size); break;
    }
}

void PageSetup::read(XlsRecords &xls, uint16_t id, uint16_t size, bool old) {
    while (accepts(id)) {
        readOne(xls, id, size, old);
        xls.setCheckPoint(0);
        xls.readInt16(id);
        xls.readInt16(size);
        if (xls.eof()) break;
    }
    xls.restoreCheckPoint();
}

void PageSetup::write(XlsRecords &xls) const {
    header.write(xls);
    footer.write(xls);
    hCenter.write(xls);
    vCenter.write(xls);
    if (hasLeftMargin) leftMargin.write(xls);
    if (hasRightMargin) rightMargin.write(xls);
    if (hasTopMargin) topMargin.write(xls);
    if (hasBottomMargin) bottomMargin.write(xls);
    if (hasPls) pls.write(xls);
    setup.write(xls);
}

void PageSetup::dump() const {
    header.dump();
    footer.dump();
    hCenter.dump();
    vCenter.dump();
    if (hasLeftMargin) leftMargin.dump();
    if (hasRightMargin) rightMargin.dump();
    if (hasTopMargin) topMargin.dump();
    if (hasBottomMargin) bottomMargin.dump();
    if (hasPls) pls.dump();
    setup.dump();
}

} // namespace tabrix
