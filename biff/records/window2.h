// Window2 (id 574): how a sheet shows in its window.  Nine 16-bit words:
// flags, top row and left column of the view, gridline colour index, and
// the zoom of the page-break preview and of the normal view.  Flag bits:
// 1 display gridlines, 3 frozen panes, 6 right to left, 8 frozen with no
// split, 9 selected.
#ifndef TABRIX_BIFF_RECORDS_WINDOW2_H
#define TABRIX_BIFF_RECORDS_WINDOW2_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
class Window2 : public Record<Window2> {
public:
    static constexpr uint16_t kId = rid::Window2;
    static constexpr const char *kName = "Window2";
    static constexpr uint16_t kGridlines = 0x0002;
    static constexpr uint16_t kFrozen = 0x0008;
    static constexpr uint16_t kRightToLeft = 0x0040;
    static constexpr uint16_t kFrozenNoSplit = 0x0100;
    static constexpr uint16_t kSelected = 0x0200;

    uint16_t flags = 0x04B6;
    uint16_t rwTop = 0;
    uint16_t colLeft = 0;
    uint16_t icvHdr = 64;
    uint16_t reserved1 = 0;
    uint16_t wScaleSLV = 0;
    uint16_t wScaleNormal = 0;
    uint16_t reserved2 = 0;
    uint16_t reserved3 = 0;

    void reset() { *this = Window2(); }
    bool flag(uint16_t bit) const { return flags & bit; }
    void setFlag(uint16_t bit, bool on) { flags = uint16_t(on ? flags | bit : flags & ~bit); }
    bool displayGridlines() const { return flag(kGridlines); }
    void setDisplayGridlines(bool on) { setFlag(kGridlines, on); }
    bool frozenRt() const { return flag(kFrozen); }
    void setFrozenRt(bool on) { setFlag(kFrozen, on); }
    bool rightToLeft() const { return flag(kRightToLeft); }
    void setRightToLeft(bool on) { setFlag(kRightToLeft, on); }
    bool selected() const { return flag(kSelected); }
    void setSelected(bool on) { setFlag(kSelected, on); }

    // 18 bytes, or the short form of 10 (the first five words).  `old`: the
    // older form of 10 bytes, flags, top row, left column and a 32-bit
    // gridline colour, which is dropped.
    void read(XlsRecords &xls, uint16_t size, bool old = false);
    // 18 bytes; 10 for a record read in the short form.
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Window2>::read;

private:
    bool _short = false;
};
} // namespace tabrix
#endif
