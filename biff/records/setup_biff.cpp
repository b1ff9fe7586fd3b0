#include "biff/records/setup_biff.h"
namespace tabrix {
void SetupBIFF::read(XlsRecords &xls, uint16_t size) {
    checkSize(size, kSize);
    for (uint16_t *w : {&paperSize, &scale, &pageStart, &printFitWidth, &printFitHeight, &flags,
                        &resolution, &verticalResolution})
        xls.readInt16(*w);
    xls.readDouble(headerMargin);
    xls.readDouble(footerMargin);
    xls.readInt16(copies);
}

void SetupBIFF::write(XlsRecords &xls) const {
    xls.write(kId, kSize);
    for (uint16_t w : {paperSize, scale, pageStart, printFitWidth, printFitHeight, flags,
                       resolution, verticalResolution})
        xls.writeInt16(w);
    xls.writeDouble(headerMargin);
    xls.writeDouble(footerMargin);
    xls.writeInt16(copies);
}

void SetupBIFF::dumpTo(std::wostream &os) const {
    os << L" paperSize=" << paperSize << L" scale=" << scale << L" pageStart=" << pageStart
       << L" printFitWidth=" << printFitWidth << L" printFitHeight=" << printFitHeight << L" flags="
       << flags << L" resolution=" << resolution << L" verticalResolution=" << verticalResolution
       << L" headerMargin=" << headerMargin << L" footerMargin=" << footerMargin << L" copies="
       << copies;
}
} // namespace tabrix
