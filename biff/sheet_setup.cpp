#include "biff/sheet_setup.h"

#include "book/tberror.h"

#include <string>

namespace tabrix {

namespace {

uint16_t readWord(XlsRecords &xls, uint16_t size, const char *name) {
    if (size != 2) throw tberror(std::string(name) + " size is incorrect");
    uint16_t v = 0;
    xls.readInt16(v);
    return v;
}

void writeWord(XlsRecords &xls, uint16_t id, uint16_t value) {
    xls.write(id, 2);
    xls.writeInt16(value);
}

void checkRow(int row) {
    if (unsigned(row) > 65535u) throw tberror("row must be in range 0-65535");
}

void checkCol(int col) {
    if (unsigned(col) > 255u) throw tberror("col must be in range 0-255");
}

template <class Breaks> int breakAt(const Breaks &b, int index) {
    if (index < 0 || size_t(index) >= b.breaks.size()) throw tberror("index is out of range");
    return b.breaks[size_t(index)].position;
}

template <class Breaks> void setBreak(Breaks &b, int position, bool on) {
    int found = b.find(position);
    if (found >= 0) {
        if (on) throw tberror("pagebreak already exists");
        b.breaks.erase(b.breaks.begin() + found);
        return;
    }
    if (!on) throw tberror("pagebreak not found");
    if (b.breaks.size() >= Breaks::kMaxBreaks)
        throw tberror("number of pagebreaks is exceed limit");
    PageBreak brk;
    brk.position = uint16_t(position);
    b.breaks.push_back(brk);
}

} // namespace

SheetSetup::SheetSetup(MemPool &pool) : _pageSetup(pool), _selections(1) {}

SheetSetup::SheetSetup(const SheetSetup &src, MemPool &pool)
    : _printRowCol(src._printRowCol), _printGrid(src._printGrid), _wsBool(src._wsBool),
      _pageSetup(src._pageSetup, pool), _protection(src._protection), _horBreaks(src._horBreaks),
      _verBreaks(src._verBreaks), _window2(src._window2), _selections(src._selections),
      _scl(src._scl), _pane(src._pane) {}

void SheetSetup::reset() {
    _printRowCol = 0;
    _printGrid = 0;
    _wsBool = kNewWsBool;
    _pageSetup.reset();
    _protection.reset();
    _horBreaks.reset();
    _verBreaks.reset();
    _window2.reset();
    _selections.assign(1, Selection());
    _scl.reset();
    _pane.reset();
}

void SheetSetup::beginRead() {
    reset();
    _selections.clear();
}

bool SheetSetup::owns(uint16_t id) {
    switch (id) {
    case kPrintRowColId:
    case kPrintGridId:
    case kWsBoolId:
    case HorizontalPageBreaks::kId:
    case VerticalPageBreaks::kId:
    case Selection::kId:
    case Pane::kId:
    case Scl::kId:
    case Window2::kId: return true;
    default: return PageSetup::checkBegin(id) || SheetProtection::checkBegin(id);
    }
}

bool SheetSetup::read(XlsRecords &xls, uint16_t id, uint16_t size, bool old) {
    switch (id) {
    case kPrintRowColId: _printRowCol = readWord(xls, size, "PrintRowCol"); return true;
    case kPrintGridId: _printGrid = readWord(xls, size, "PrintGrid"); return true;
    case kWsBoolId: _wsBool = readWord(xls, size, "WsBool"); return true;
    case HorizontalPageBreaks::kId: _horBreaks.read(xls, size); return true;
    case VerticalPageBreaks::kId: _verBreaks.read(xls, size); return true;
    case Selection::kId:
        _selections.emplace_back();
        _selections.back().read(xls, size);
        return true;
    case Pane::kId: _pane.read(xls, size); return true;
    case Scl::kId: _scl.read(xls, size); return true;
    case Window2::kId: _window2.read(xls, size, old); return true;
    default: break;
    }
    if (_pageSetup.accepts(id)) {
        _pageSetup.read(xls, id, size, old);
        return true;
    }
    if (SheetProtection::checkBegin(id)) {
        _protection.read(xls, id, size);
        return true;
    }
    return false;
}

void SheetSetup::writePrintRowCol(XlsRecords &xls) const {
    writeWord(xls, kPrintRowColId, _printRowCol);
}
void SheetSetup::writePrintGrid(XlsRecords &xls) const { writeWord(xls, kPrintGridId, _printGrid); }
void SheetSetup::writeWsBool(XlsRecords &xls) const { writeWord(xls, kWsBoolId, _wsBool); }

void SheetSetup::writeBreaks(XlsRecords &xls) const {
    if (!_horBreaks.breaks.empty()) _horBreaks.write(xls);
    if (!_verBreaks.breaks.empty()) _verBreaks.write(xls);
}

void SheetSetup::writePageSetup(XlsRecords &xls) const {
    _pageSetup.write(xls);
    _protection.write(xls);
}

void SheetSetup::writeWindow2(XlsRecords &xls) const { _window2.write(xls); }

void SheetSetup::writeScl(XlsRecords &xls) const {
    if (_scl.zoom() != 100) _scl.write(xls);
}

void SheetSetup::writePaneSelections(XlsRecords &xls) const {
    _pane.write(xls);
    for (const Selection &s : _selections) s.write(xls);
}

bool SheetSetup::landscape() const {
    const SetupBIFF &s = _pageSetup.setup;
    return !s.noPls() && !s.portrait();
}

void SheetSetup::setLandscape(bool landscape) {
    _pageSetup.setup.setPortrait(!landscape);
    _pageSetup.setup.setNoPls(false);
}

Paper SheetSetup::paper() const {
    const SetupBIFF &s = _pageSetup.setup;
    return s.noPls() ? PAPER_DEFAULT : Paper(s.paperSize);
}

void SheetSetup::setPaper(Paper paper) {
    _pageSetup.setup.paperSize = uint16_t(paper);
    _pageSetup.setup.setNoPls(false);
}

int SheetSetup::printZoom() const {
    const SetupBIFF &s = _pageSetup.setup;
    return s.noPls() ? 100 : s.scale;
}

void SheetSetup::setPrintZoom(int zoom) {
    _pageSetup.setup.scale = uint16_t(zoom);
    _pageSetup.setup.setNoPls(false);
    setWsBool(kFitToPage, false);
}

bool SheetSetup::getPrintFit(int *wPages, int *hPages) const {
    if (wPages) *wPages = _pageSetup.setup.printFitWidth;
    if (hPages) *hPages = _pageSetup.setup.printFitHeight;
    return _wsBool & kFitToPage;
}

void SheetSetup::setPrintFit(int wPages, int hPages) {
    _pageSetup.setup.printFitWidth = uint16_t(wPages);
    _pageSetup.setup.printFitHeight = uint16_t(hPages);
    setWsBool(kFitToPage, true);
}

void SheetSetup::setMarginLeft(double margin) {
    _pageSetup.leftMargin.value = margin;
    _pageSetup.hasLeftMargin = true;
}

void SheetSetup::setMarginRight(double margin) {
    _pageSetup.rightMargin.value = margin;
    _pageSetup.hasRightMargin = true;
}

void SheetSetup::setMarginTop(double margin) {
    _pageSetup.topMargin.value = margin;
    _pageSetup.hasTopMargin = true;
}

void SheetSetup::setMarginBottom(double margin) {
    _pageSetup.bottomMargin.value = margin;
    _pageSetup.hasBottomMargin = true;
}

void SheetSetup::setHeader(const char *text, double margin, bool utf8) {
    _pageSetup.header.setString(text, utf8);
    _pageSetup.setup.headerMargin = margin;
}

void SheetSetup::setHeader(const wchar_t *text, double margin) {
    _pageSetup.header.setString(text);
    _pageSetup.setup.headerMargin = margin;
}

void SheetSetup::setFooter(const char *text, double margin, bool utf8) {
    _pageSetup.footer.setString(text, utf8);
    _pageSetup.setup.footerMargin = margin;
}

void SheetSetup::setFooter(const wchar_t *text, double margin) {
    _pageSetup.footer.setString(text);
    _pageSetup.setup.footerMargin = margin;
}

void SheetSetup::setPrintGridlines(bool print) {
    _printGrid = uint16_t(print ? _printGrid | 1u : _printGrid & ~1u);
}

void SheetSetup::getTopLeftView(int *row, int *col) const {
    if (row) *row = _window2.rwTop;
    if (col) *col = _window2.colLeft;
}

void SheetSetup::setTopLeftView(int row, int col) {
    checkRow(row);
    checkCol(col);
    _window2.rwTop = uint16_t(row);
    _window2.colLeft = uint16_t(col);
}

void SheetSetup::split(int row, int col) {
    checkRow(row);
    checkCol(col);
    _pane.x = uint16_t(col);
    _pane.y = uint16_t(row);
    _pane.rwTop = uint16_t(row);
    _pane.colLeft = uint16_t(col);
    _pane.pnnAct = row && col ? 0 : col ? 1 : row ? 2 : 3;
    _pane.absent = false;
    _window2.setFrozenRt(true);
}

int SheetSetup::horPageBreak(int index) const { return breakAt(_horBreaks, index); }
int SheetSetup::verPageBreak(int index) const { return breakAt(_verBreaks, index); }

void SheetSetup::setHorPageBreak(int row, bool on) {
    checkRow(row);
    setBreak(_horBreaks, row, on);
}

void SheetSetup::setVerPageBreak(int col, bool on) {
    checkCol(col);
    setBreak(_verBreaks, col, on);
}

} // namespace tabrix
