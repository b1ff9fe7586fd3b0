// SheetProtection: the protection records of a sheet, read and written as
// one group in this order: Protect (18), ScenarioProtect (221), ObjProtect
// (99), Password (19).  Each is written only when present.  A new sheet has
// none of them.
#ifndef TABRIX_BIFF_RECORDS_SHEET_PROTECTION_H
#define TABRIX_BIFF_RECORDS_SHEET_PROTECTION_H
#include "biff/records/obj_protect.h"
#include "biff/records/password.h"
#include "biff/records/protect.h"
#include "biff/records/scenario_protect.h"
#include <cstdint>
namespace tabrix {
class SheetProtection {
public:
    bool hasProtect = false;
    bool hasScenarioProtect = false;
    bool hasObjProtect = false;
    bool hasPassword = false;
    Protect protectRecord;
    ScenarioProtect scenarioProtect;
    ObjProtect objProtect;
    Password password;

    void reset() { *this = SheetProtection(); }
    static bool checkBegin(uint16_t id);
    // Entered with the header of one of the four records just read; reads
    // it and those that follow, and leaves the stream in front of the first
    // other record.  Records that claim more bytes than the file has fail
    // with "SheetProtection: file is corrupt".
    void read(XlsRecords &xls, uint16_t id, uint16_t size);
    void write(XlsRecords &xls) const;
    void dump() const;

    // The Protect word when the record is there, else false.
    bool protect() const { return hasProtect && protectRecord.protect(); }
    // Sets a present Protect record; makes one only to switch protection
    // on.  The other three records keep what they hold.
    void setProtect(bool on);
};
} // namespace tabrix
#endif
