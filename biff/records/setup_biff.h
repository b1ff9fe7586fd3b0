// SetupBIFF (id 161, the Setup record): paper, scale, fit-to-page counts,
// orientation and header and footer margins of a sheet's printout, 34
// bytes.  In the flags, bit 1 is portrait and bit 2 says that the printer
// settings are not valid (noPls), in which case readers take the paper,
// scale and orientation as their defaults.
#ifndef TABRIX_BIFF_RECORDS_SETUP_BIFF_H
#define TABRIX_BIFF_RECORDS_SETUP_BIFF_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class SetupBIFF : public Record<SetupBIFF> {
public:
    static constexpr uint16_t kId = rid::Setup;
    static constexpr const char *kName = "Setup";
    static constexpr uint16_t kSize = 34;
    static constexpr uint16_t kPortrait = 0x0002;
    static constexpr uint16_t kNoPls = 0x0004;

    uint16_t paperSize = 0;
    uint16_t scale = 100;
    uint16_t pageStart = 1;
    uint16_t printFitWidth = 1;
    uint16_t printFitHeight = 1;
    uint16_t flags = kPortrait | kNoPls;
    uint16_t resolution = 0;
    uint16_t verticalResolution = 0;
    double headerMargin = 0.5;
    double footerMargin = 0.5;
    uint16_t copies = 0;

    void reset() { *this = SetupBIFF(); }
    bool portrait() const { return flags & kPortrait; }
    void setPortrait(bool on) { setFlag(kPortrait, on); }
    bool noPls() const { return flags & kNoPls; }
    void setNoPls(bool on) { setFlag(kNoPls, on); }

    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<SetupBIFF>::read;

private:
    void setFlag(uint16_t bit, bool on) { flags = uint16_t(on ? flags | bit : flags & ~bit); }
};
} // namespace tabrix
#endif
