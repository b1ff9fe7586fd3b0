// SheetSetup: what a binary worksheet knows about its printout and its
// window besides the cells: page setup, protection, page breaks, the
// window's flags, zoom, panes and selections, and the PrintRowCol,
// PrintGrid and WsBool words.  It reads the records of these kinds during a
// sheet's load and writes them at their places in the sheet's save order;
// the operations of the sheet's interface map onto its getters and setters.
// Failures throw tberror with the texts the sheet reports.
#ifndef TABRIX_BIFF_SHEET_SETUP_H
#define TABRIX_BIFF_SHEET_SETUP_H

#include "biff/records/page_breaks.h"
#include "biff/records/page_setup.h"
#include "biff/records/pane.h"
#include "biff/records/scl.h"
#include "biff/records/selection.h"
#include "biff/records/sheet_protection.h"
#include "biff/records/window2.h"
#include "book/mem_pool.h"
#include "tabrix/enums.h"

#include <cstdint>
#include <vector>

namespace tabrix {

class SheetSetup {
public:
    static constexpr uint16_t kPrintRowColId = 42;
    static constexpr uint16_t kPrintGridId = 43;
    static constexpr uint16_t kWsBoolId = 129;
    // WsBool bits: 6 summary rows below detail, 7 summary columns right of
    // detail, 8 fit the printout to pages.
    static constexpr uint16_t kSummaryBelow = 0x0040;
    static constexpr uint16_t kSummaryRight = 0x0080;
    static constexpr uint16_t kFitToPage = 0x0100;
    static constexpr uint16_t kNewWsBool = 0x04C1;

    // A new worksheet's settings; header and footer texts live in `pool`.
    explicit SheetSetup(MemPool &pool);
    // A copy of `src` whose texts live in `pool`.
    SheetSetup(const SheetSetup &src, MemPool &pool);
    SheetSetup(const SheetSetup &) = delete;
    SheetSetup &operator=(const SheetSetup &) = delete;

    // Back to a new worksheet's settings.
    void reset();
    // Before a sheet's records are read: a new worksheet's settings without
    // its selection, so that only the file's selections are kept.
    void beginRead();
    // Reads the record whose header was just read when its id is one of
    // this class's (42, 43, 129; the page setup run 20, 21, 38-41, 77, 131,
    // 132, 161; protection 18, 19, 99, 221; breaks 26, 27; Selection 29,
    // Pane 65, Scl 160, Window2 574) and answers true; false for any other
    // id, with nothing read.  `old`: the older format's texts and Window2.
    bool read(XlsRecords &xls, uint16_t id, uint16_t size, bool old = false);
    static bool owns(uint16_t id);

    // ---- writing, one call for each place in the sheet's save order ----
    void writePrintRowCol(XlsRecords &xls) const;
    void writePrintGrid(XlsRecords &xls) const;
    void writeWsBool(XlsRecords &xls) const;
    // Horizontal page breaks if any, then vertical ones if any.
    void writeBreaks(XlsRecords &xls) const;
    // The page setup run, then the protection records.
    void writePageSetup(XlsRecords &xls) const;
    void writeWindow2(XlsRecords &xls) const;
    // Only when the zoom is not 100.
    void writeScl(XlsRecords &xls) const;
    // The Pane when present, then each Selection.
    void writePaneSelections(XlsRecords &xls) const;

    // ---- printout ----
    // With the printer settings marked invalid (as in a new sheet) the
    // orientation reads as portrait, the paper as 0 and the scale as 100.
    bool landscape() const;
    void setLandscape(bool landscape);
    Paper paper() const;
    void setPaper(Paper paper);
    int printZoom() const;
    // Stores the scale and turns fitting to pages off.
    void setPrintZoom(int zoom);
    // The page counts; answers whether fitting to pages is on.
    bool getPrintFit(int *wPages, int *hPages) const;
    // Stores the page counts and turns fitting to pages on.
    void setPrintFit(int wPages, int hPages);

    double marginLeft() const { return _pageSetup.leftMargin.value; }
    double marginRight() const { return _pageSetup.rightMargin.value; }
    double marginTop() const { return _pageSetup.topMargin.value; }
    double marginBottom() const { return _pageSetup.bottomMargin.value; }
    void setMarginLeft(double margin);
    void setMarginRight(double margin);
    void setMarginTop(double margin);
    void setMarginBottom(double margin);

    const wchar_t *header() const { return _pageSetup.header.string(); }
    const wchar_t *footer() const { return _pageSetup.footer.string(); }
    double headerMargin() const { return _pageSetup.setup.headerMargin; }
    double footerMargin() const { return _pageSetup.setup.footerMargin; }
    // The text (null keeps the present one) and the margin.  A text over
    // 65535 characters fails with "string is too long" and changes nothing.
    void setHeader(const char *text, double margin, bool utf8);
    void setHeader(const wchar_t *text, double margin);
    void setFooter(const char *text, double margin, bool utf8);
    void setFooter(const wchar_t *text, double margin);

    bool hCenter() const { return _pageSetup.hCenter.center(); }
    void setHCenter(bool center) { _pageSetup.hCenter.setCenter(center); }
    bool vCenter() const { return _pageSetup.vCenter.center(); }
    void setVCenter(bool center) { _pageSetup.vCenter.setCenter(center); }

    bool printGridlines() const { return _printGrid & 1u; }
    void setPrintGridlines(bool print);
    bool printRowCol() const { return _printRowCol != 0; }
    void setPrintRowCol(bool print) { _printRowCol = print ? 1 : 0; }

    bool groupSummaryBelow() const { return _wsBool & kSummaryBelow; }
    void setGroupSummaryBelow(bool below) { setWsBool(kSummaryBelow, below); }
    bool groupSummaryRight() const { return _wsBool & kSummaryRight; }
    void setGroupSummaryRight(bool right) { setWsBool(kSummaryRight, right); }

    // ---- window ----
    bool displayGridlines() const { return _window2.displayGridlines(); }
    void setDisplayGridlines(bool show) { _window2.setDisplayGridlines(show); }
    int zoom() const { return _scl.zoom(); }
    void setZoom(int zoom) { _scl.setZoom(zoom); }
    bool selected() const { return _window2.selected(); }
    void setSelected(bool selected) { _window2.setSelected(selected); }
    bool rightToLeft() const { return _window2.rightToLeft(); }
    void setRightToLeft(bool rightToLeft) { _window2.setRightToLeft(rightToLeft); }
    void getTopLeftView(int *row, int *col) const;
    // Rows 0-65535, columns 0-255, else the range messages.
    void setTopLeftView(int row, int col);
    // Frozen panes at (row, col): the Pane's split and first visible cell,
    // its active pane (0 both, 1 only col, 2 only row, 3 neither non-zero).
    void split(int row, int col);

    // ---- protection ----
    bool protect() const { return _protection.protect(); }
    void setProtect(bool protect) { _protection.setProtect(protect); }

    // ---- page breaks ----
    // Bad index: "index is out of range".
    int horPageBreak(int index) const;
    int verPageBreak(int index) const;
    int horPageBreakSize() const { return int(_horBreaks.breaks.size()); }
    int verPageBreakSize() const { return int(_verBreaks.breaks.size()); }
    // Adds (on) or removes (off) the break in front of `row`: "pagebreak
    // already exists", "pagebreak not found", "number of pagebreaks is
    // exceed limit" past 1026 breaks, or the range message.
    void setHorPageBreak(int row, bool on);
    void setVerPageBreak(int col, bool on);

    // ---- the records, for the sheet's other work and for tests ----
    PageSetup &pageSetup() { return _pageSetup; }
    const PageSetup &pageSetup() const { return _pageSetup; }
    SheetProtection &protection() { return _protection; }
    Window2 &window2() { return _window2; }
    const Window2 &window2() const { return _window2; }
    Scl &scl() { return _scl; }
    Pane &pane() { return _pane; }
    const Pane &pane() const { return _pane; }
    std::vector<Selection> &selections() { return _selections; }
    HorizontalPageBreaks &horBreaks() { return _horBreaks; }
    VerticalPageBreaks &verBreaks() { return _verBreaks; }
    uint16_t printRowColWord() const { return _printRowCol; }
    uint16_t printGridWord() const { return _printGrid; }
    uint16_t wsBool() const { return _wsBool; }
    void setWsBoolWord(uint16_t word) { _wsBool = word; }

private:
    void setWsBool(uint16_t bit, bool on) {
        _wsBool = uint16_t(on ? _wsBool | bit : _wsBool & ~bit);
    }

    uint16_t _printRowCol = 0;
    uint16_t _printGrid = 0;
    uint16_t _wsBool = kNewWsBool;
    PageSetup _pageSetup;
    SheetProtection _protection;
    HorizontalPageBreaks _horBreaks;
    VerticalPageBreaks _verBreaks;
    Window2 _window2;
    std::vector<Selection> _selections;
    Scl _scl;
    Pane _pane;
};

} // namespace tabrix

#endif
