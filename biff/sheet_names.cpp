#include "biff/sheet_names.h"

#include "book/tberror.h"

#include <algorithm>
#include <cwchar>

namespace tabrix {

namespace {

const uint8_t kPtgArea3d = 0x3B;
const uint8_t kPtgRef3d = 0x3A;
const uint8_t kPtgMemFunc = 0x29;
const uint8_t kPtgUnion = 0x10;
const size_t kAreaSize = 11;
const size_t kCellSize = 7;
const size_t kUnionSize = 26;
// Offsets of the two areas inside the union form.
const size_t kUnionRows = 3;
const size_t kUnionCols = 14;
const uint16_t kLastRow = 65535;
const uint16_t kLastCol = 255;
// The flag bits of a column word; the column is the rest.
const uint16_t kColMask = 0x3FFF;

uint16_t get16(const std::vector<uint8_t> &v, size_t at) {
    return uint16_t(v[at] | (v[at + 1] << 8));
}

void set16(std::vector<uint8_t> &v, size_t at, int x) {
    v[at] = uint8_t(x);
    v[at + 1] = uint8_t(unsigned(x) >> 8);
}

bool isArea(const std::vector<uint8_t> &f) { return f.size() == kAreaSize && f[0] == kPtgArea3d; }
bool isCell(const std::vector<uint8_t> &f) { return f.size() == kCellSize && f[0] == kPtgRef3d; }
bool isRange(const std::vector<uint8_t> &f) { return isArea(f) || isCell(f); }
bool isUnion(const std::vector<uint8_t> &f) {
    return f.size() == kUnionSize && f[0] == kPtgMemFunc && get16(f, 1) == 23 &&
           f[kUnionRows] == kPtgArea3d && f[kUnionCols] == kPtgArea3d && f[25] == kPtgUnion;
}

// An area reference at `at` of `f`: token, ixti, rows, columns.
void putArea(std::vector<uint8_t> &f, size_t at, uint16_t ixti, int rowFirst, int rowLast,
             int colFirst, int colLast) {
    f[at] = kPtgArea3d;
    set16(f, at + 1, ixti);
    set16(f, at + 3, rowFirst);
    set16(f, at + 5, rowLast);
    set16(f, at + 7, colFirst);
    set16(f, at + 9, colLast);
}

std::vector<uint8_t> areaForm(uint16_t ixti, int rowFirst, int rowLast, int colFirst, int colLast) {
    std::vector<uint8_t> f(kAreaSize);
    putArea(f, 0, ixti, rowFirst, rowLast, colFirst, colLast);
    return f;
}

std::vector<uint8_t> cellForm(uint16_t ixti, int row, int col) {
    std::vector<uint8_t> f(kCellSize);
    f[0] = kPtgRef3d;
    set16(f, 1, ixti);
    set16(f, 3, row);
    set16(f, 5, col);
    return f;
}

// Rows over all columns, then columns over all rows, as one union.
std::vector<uint8_t> unionForm(uint16_t ixti, int rowFirst, int rowLast, int colFirst,
                               int colLast) {
    std::vector<uint8_t> f(kUnionSize);
    f[0] = kPtgMemFunc;
    set16(f, 1, 23);
    putArea(f, kUnionRows, ixti, rowFirst, rowLast, 0, kLastCol);
    putArea(f, kUnionCols, ixti, 0, kLastRow, colFirst, colLast);
    f[25] = kPtgUnion;
    return f;
}

void checkRow(int row) {
    if (unsigned(row) > kLastRow) throw tberror("row must be in range 0-65535");
}

void checkCol(int col) {
    if (unsigned(col) > kLastCol) throw tberror("col must be in range 0-255");
}

void checkRows(int first, int last) {
    checkRow(first);
    checkRow(last);
    if (last < first) throw tberror("rowLast must be greater than or equal to rowFirst");
}

void checkCols(int first, int last) {
    checkCol(first);
    checkCol(last);
    if (last < first) throw tberror("colLast must be greater than or equal to colFirst");
}

void checkArea(int rowFirst, int rowLast, int colFirst, int colLast) {
    checkRows(rowFirst, rowLast);
    checkCols(colFirst, colLast);
}

// The range of a name in one of the two forms; a cell gives its row and
// column twice.
void rangeOf(const Lbl &lbl, int *rowFirst, int *rowLast, int *colFirst, int *colLast) {
    const std::vector<uint8_t> &f = lbl.rgce;
    int r1 = get16(f, 3), r2 = r1, c1 = 0, c2 = 0;
    if (isArea(f)) {
        r2 = get16(f, 5);
        c1 = get16(f, 7) & kColMask;
        c2 = get16(f, 9) & kColMask;
    } else {
        c1 = c2 = get16(f, 5) & kColMask;
    }
    if (rowFirst) *rowFirst = r1;
    if (rowLast) *rowLast = r2;
    if (colFirst) *colFirst = c1;
    if (colLast) *colLast = c2;
}

void setFormula(Lbl &lbl, std::vector<uint8_t> rgce) {
    lbl.rgce = std::move(rgce);
    lbl.cce = uint16_t(lbl.rgce.size());
}

} // namespace

SheetNames::SheetNames(std::vector<Lbl> &names, std::vector<SupBookBlock> &supBooks, MemPool &pool,
                       int sheetIndex, int sheetCount)
    : _names(names), _supBooks(supBooks), _pool(pool), _sheet(sheetIndex), _sheetCount(sheetCount) {
}

// ---- the self-reference ----

SupBookBlock *SheetNames::externSheetBlock(std::vector<SupBookBlock> &supBooks) {
    for (SupBookBlock &b : supBooks)
        if (b.hasExternSheet) return &b;
    return nullptr;
}

const SupBookBlock *SheetNames::externSheetBlock(const std::vector<SupBookBlock> &supBooks) {
    for (const SupBookBlock &b : supBooks)
        if (b.hasExternSheet) return &b;
    return nullptr;
}

uint16_t SheetNames::addSheetRef() { return sheetRef(_sheet, _sheet, false); }

uint16_t SheetNames::sheetRef(int first, int last, bool reuse) {
    auto self = std::find_if(_supBooks.begin(), _supBooks.end(),
                             [](const SupBookBlock &b) { return b.isSelfRef(); });
    if (self == _supBooks.end()) {
        // The self-reference goes first, so that the ExternSheet, which the
        // file keeps behind the last SupBook, stays where it was; XTIs that
        // pointed at the other blocks move on by one.
        SupBookBlock block;
        uint16_t count = uint16_t(std::max(_sheetCount, 0));
        block.supBook.data = {uint8_t(count), uint8_t(count >> 8), 1, 4};
        if (SupBookBlock *ext = externSheetBlock(_supBooks))
            for (XTI &x : ext->externSheet.rgXTI) ++x.iSupBook;
        _supBooks.insert(_supBooks.begin(), block);
        self = _supBooks.begin();
    }
    SupBookBlock *ext = externSheetBlock(_supBooks);
    if (!ext) {
        // No block holds the list yet: it goes with the last one, as the
        // file keeps it behind the last SupBook.
        ext = &_supBooks.back();
        ext->hasExternSheet = true;
    }
    std::vector<XTI> &list = ext->externSheet.rgXTI;
    const XTI xti(uint16_t(self - _supBooks.begin()), uint16_t(first), uint16_t(last));
    if (reuse)
        for (size_t i = 0; i < list.size(); ++i)
            if (list[i] == xti) return uint16_t(i);
    if (list.size() >= 0xFFFF) throw tberror("too many references to sheets");
    uint16_t index = uint16_t(list.size());
    list.push_back(xti);
    return index;
}

const XTI *SheetNames::xtiOf(const Lbl &lbl) const {
    if (lbl.rgce.size() < 3) return nullptr;
    const SupBookBlock *ext = externSheetBlock(_supBooks);
    if (!ext) return nullptr;
    uint16_t ixti = get16(lbl.rgce, 1);
    if (ixti >= ext->externSheet.rgXTI.size()) return nullptr;
    const XTI &x = ext->externSheet.rgXTI[ixti];
    if (x.iSupBook >= _supBooks.size() || !_supBooks[x.iSupBook].isSelfRef()) return nullptr;
    return &x;
}

bool SheetNames::spansThisSheet(const Lbl &lbl) const {
    const XTI *x = xtiOf(lbl);
    return x && _sheet >= x->itabFirst && _sheet <= x->itabLast;
}

bool SheetNames::isNamedRangeFoundInSheet(size_t index) const {
    return index < _names.size() && isRange(_names[index].rgce) && spansThisSheet(_names[index]);
}

bool SheetNames::scopeMatches(const Lbl &lbl, int scope) const {
    if (scope == kScopeThisSheet) return true;
    if (scope == kScopeBook) return lbl.itab == 0;
    return lbl.itab != 0 && lbl.itab - 1 == scope;
}

// ---- print area and titles ----

int SheetNames::findBuiltin(wchar_t code) const {
    for (size_t i = 0; i < _names.size(); ++i) {
        const Lbl &l = _names[i];
        if (l.builtin() && l.itab == _sheet + 1 && l.name.cch == 1 && l.name.text &&
            l.name.text[0] == code)
            return int(i);
    }
    return -1;
}

void SheetNames::eraseBuiltin(wchar_t code) {
    for (int i = findBuiltin(code); i >= 0; i = findBuiltin(code)) _names.erase(_names.begin() + i);
}

Lbl &SheetNames::addBuiltin(wchar_t code, const std::vector<uint8_t> &rgce) {
    Lbl l;
    wchar_t text[2] = {code, 0};
    l.setBuiltin(true);
    l.name.setString(text, _pool);
    l.cch = 1;
    l.itab = uint16_t(_sheet + 1);
    setFormula(l, rgce);
    _names.push_back(l);
    return _names.back();
}

void SheetNames::setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) {
    checkArea(rowFirst, rowLast, colFirst, colLast);
    int found = findBuiltin(kPrintArea);
    if (found < 0) {
        addBuiltin(kPrintArea, areaForm(addSheetRef(), rowFirst, rowLast, colFirst, colLast));
        return;
    }
    Lbl &l = _names[size_t(found)];
    uint16_t ixti = isArea(l.rgce) ? get16(l.rgce, 1) : addSheetRef();
    setFormula(l, areaForm(ixti, rowFirst, rowLast, colFirst, colLast));
}

void SheetNames::clearPrintArea() { eraseBuiltin(kPrintArea); }

void SheetNames::setPrintRepeatRows(int rowFirst, int rowLast) {
    checkRows(rowFirst, rowLast);
    setPrintTitles(rowFirst, rowLast, true);
}

void SheetNames::setPrintRepeatCols(int colFirst, int colLast) {
    checkCols(colFirst, colLast);
    setPrintTitles(colFirst, colLast, false);
}

void SheetNames::setPrintTitles(int first, int last, bool rows) {
    // The titles alone: these rows over all columns, or these columns over
    // all rows.
    auto alone = [&](uint16_t ixti) {
        return rows ? areaForm(ixti, first, last, 0, kLastCol)
                    : areaForm(ixti, 0, kLastRow, first, last);
    };
    int found = findBuiltin(kPrintTitles);
    if (found < 0) {
        addBuiltin(kPrintTitles, alone(addSheetRef()));
        return;
    }
    Lbl &l = _names[size_t(found)];
    std::vector<uint8_t> f = l.rgce;
    if (isUnion(f)) {
        if (rows) {
            set16(f, kUnionRows + 3, first);
            set16(f, kUnionRows + 5, last);
        } else {
            set16(f, kUnionCols + 7, first);
            set16(f, kUnionCols + 9, last);
        }
    } else if (isArea(f)) {
        uint16_t ixti = get16(f, 1);
        int r1 = get16(f, 3), r2 = get16(f, 5);
        int c1 = get16(f, 7) & kColMask, c2 = get16(f, 9) & kColMask;
        bool wholeCols = r1 == 0 && r2 == kLastRow;
        bool wholeRows = c1 == 0 && c2 == kLastCol;
        if (rows && wholeCols && !wholeRows)
            f = unionForm(ixti, first, last, c1, c2);
        else if (!rows && wholeRows && !wholeCols)
            f = unionForm(ixti, r1, r2, first, last);
        else
            f = alone(ixti);
    } else {
        f = alone(addSheetRef());
    }
    setFormula(l, f);
}

void SheetNames::clearPrintRepeats() { eraseBuiltin(kPrintTitles); }

// ---- named ranges ----

void SheetNames::setNamedRange(const wchar_t *name, int rowFirst, int rowLast, int colFirst,
                               int colLast, int scope) {
    if (!name || !*name) throw tberror("name is empty");
    if (std::wcschr(name, L' ')) throw tberror("space symbol isn't allowed");
    if (std::wcslen(name) > 255) throw tberror("string is too long");
    checkArea(rowFirst, rowLast, colFirst, colLast);
    for (Lbl &l : _names) {
        if (l.nameText() != name || !scopeMatches(l, scope)) continue;
        if (isArea(l.rgce)) {
            set16(l.rgce, 3, rowFirst);
            set16(l.rgce, 5, rowLast);
            set16(l.rgce, 7, colFirst);
            set16(l.rgce, 9, colLast);
        } else if (isCell(l.rgce)) {
            set16(l.rgce, 3, rowFirst);
            set16(l.rgce, 5, colFirst);
        } else {
            // A name of some other formula becomes a reference to the range.
            uint16_t ixti = addSheetRef();
            setFormula(l, rowFirst == rowLast && colFirst == colLast
                              ? cellForm(ixti, rowFirst, colFirst)
                              : areaForm(ixti, rowFirst, rowLast, colFirst, colLast));
        }
        return;
    }
    Lbl l;
    l.name.setString(name, _pool);
    l.cch = uint8_t(l.name.cch);
    l.itab = scope == kScopeThisSheet ? uint16_t(_sheet + 1)
             : scope == kScopeBook    ? 0
                                      : uint16_t(scope + 1);
    uint16_t ixti = addSheetRef();
    setFormula(l, rowFirst == rowLast && colFirst == colLast
                      ? cellForm(ixti, rowFirst, colFirst)
                      : areaForm(ixti, rowFirst, rowLast, colFirst, colLast));
    _names.push_back(l);
}

void SheetNames::getNamedRange(const wchar_t *name, int *rowFirst, int *rowLast, int *colFirst,
                               int *colLast, int scope, bool *hidden) const {
    for (size_t i = 0; i < _names.size(); ++i) {
        const Lbl &l = _names[i];
        if (!isNamedRangeFoundInSheet(i) || !l.isContains(name) || !scopeMatches(l, scope))
            continue;
        rangeOf(l, rowFirst, rowLast, colFirst, colLast);
        if (hidden) *hidden = l.hidden();
        return;
    }
    throw tberror("named range is not found");
}

void SheetNames::delNamedRange(const wchar_t *name, int scope) {
    size_t before = _names.size();
    _names.erase(std::remove_if(_names.begin(), _names.end(),
                                [&](const Lbl &l) {
                                    if (!isRange(l.rgce) || !l.isContains(name)) return false;
                                    if (scope == kScopeThisSheet) return spansThisSheet(l);
                                    if (scope == kScopeBook) return l.itab == 0;
                                    return l.itab != 0 && l.itab - 1 == scope;
                                }),
                 _names.end());
    if (_names.size() == before) throw tberror("named range is not found");
}

int SheetNames::namedRangeSize() const {
    int n = 0;
    for (size_t i = 0; i < _names.size(); ++i)
        if (isNamedRangeFoundInSheet(i)) ++n;
    return n;
}

std::wstring SheetNames::namedRange(int index, int *rowFirst, int *rowLast, int *colFirst,
                                    int *colLast, int *scope, bool *hidden) const {
    int n = 0;
    for (size_t i = 0; i < _names.size() && index >= 0; ++i) {
        if (!isNamedRangeFoundInSheet(i) || n++ != index) continue;
        const Lbl &l = _names[i];
        rangeOf(l, rowFirst, rowLast, colFirst, colLast);
        if (scope) *scope = l.itab == 0 ? kScopeBook : int(l.itab) - 1;
        if (hidden) *hidden = l.hidden();
        return l.nameText();
    }
    throw tberror("index is out of range");
}

void SheetNames::updateNamedRange(int first, int last, bool insert) {
    int n = last - first + 1;
    if (n < 1) return;
    for (Lbl &l : _names) {
        if (!spansThisSheet(l)) continue;
        std::vector<uint8_t> &f = l.rgce;
        if (isArea(f)) {
            if (!insert || (get16(f, 3) == 0 && get16(f, 5) == kLastRow)) continue;
            for (size_t at : {size_t(3), size_t(5)}) {
                int row = get16(f, at);
                if (row >= first) set16(f, at, std::min(row + n, int(kLastRow)));
            }
        } else if (isCell(f)) {
            int row = get16(f, 3);
            if (row >= first) set16(f, 3, std::min(row + n, int(kLastRow)));
        }
    }
}

} // namespace tabrix
