#include "biff/records/sheet_protection.h"

#include "book/tberror.h"

namespace tabrix {

bool SheetProtection::checkBegin(uint16_t id) {
    return Protect::checkBegin(id) || ScenarioProtect::checkBegin(id) ||
           ObjProtect::checkBegin(id) || Password::checkBegin(id);
}

void SheetProtection::read(XlsRecords &xls, uint16_t id, uint16_t size) {
    uint64_t total = 0;
    while (checkBegin(id)) {
        total += 4u + size;
        if (total > xls.fileSize()) throw tberror("SheetProtection: file is corrupt");
        switch (id) {
        case Protect::kId:
            protectRecord.read(xls, size);
            hasProtect = true;
            break;
        case ScenarioProtect::kId:
            scenarioProtect.read(xls, size);
            hasScenarioProtect = true;
            break;
        case ObjProtect::kId:
            objProtect.read(xls, size);
            hasObjProtect = true;
            break;
        default:
            password.read(xls, size);
            hasPassword = true;
            break;
        }
        xls.setCheckPoint(0);
        xls.readInt16(id);
        xls.readInt16(size);
        if (xls.eof()) break;
    }
    xls.restoreCheckPoint();
}

void SheetProtection::write(XlsRecords &xls) const {
    if (hasProtect) protectRecord.write(xls);
    if (hasScenarioProtect) scenarioProtect.write(xls);
    if (hasObjProtect) objProtect.write(xls);
    if (hasPassword) password.write(xls);
}

void SheetProtection::dump() const {
    if (hasProtect) protectRecord.dump();
    if (hasScenarioProtect) scenarioProtect.dump();
    if (hasObjProtect) objProtect.dump();
    if (hasPassword) password.dump();
}

void SheetProtection::setProtect(bool on) {
    if (!hasProtect && !on) return;
    hasProtect = true;
    protectRecord.setProtect(on);
}

} // namespace tabrix
