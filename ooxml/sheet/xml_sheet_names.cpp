// Print area, print titles and named ranges of an Open XML sheet: defined
// names of the workbook whose formula cites this sheet.
#include "book/encoding.h"
#include "book/excel_util.h"
#include "book/str_util.h"
#include "book/text_result.h"
#include "ooxml/binding/parts/workbook_facades.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/sheet/sheet_limits.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

namespace {

const char *const kPrintArea = "_xlnm.Print_Area";
const char *const kPrintTitles = "_xlnm.Print_Titles";

std::wstring wideOf(std::string_view utf8) {
    std::wstring wide;
    utf8ToWide(std::string(utf8).c_str(), wide);
    return wide;
}

std::string utf8Of(const std::wstring &wide) {
    std::string utf8;
    wideToUtf8(wide.c_str(), utf8);
    return utf8;
}

bool scopeFits(binding::c_defined_name n, int scope, int sheetIndex) {
    if (scope == -1) return !n.isset_localSheetId();
    const int local = scope == -2 ? sheetIndex : scope;
    return n.isset_localSheetId() && n.get_localSheetId() == uint32_t(local);
}

// The cited sheet and the area of one reference "Sheet!$A$1:$B$2"; a
// missing row or column part answers -1.
struct Area {
    std::wstring sheet;
    int rowFirst = -1, rowLast = -1, colFirst = -1, colLast = -1;
};

Area areaOf(const std::wstring &reference) {
    Area a;
    std::wstring sheet, cells = reference;
    if (StrUtil::split(reference, L"!", sheet, cells)) a.sheet = StrUtil::unquote(sheet);
    std::wstring first = cells, last = cells, left, right;
    if (StrUtil::split(cells, L":", left, right)) {
        first = left;
        last = right;
    }
    ExcelUtil::addrToRowCol(first.c_str(), &a.rowFirst, &a.colFirst, nullptr, nullptr);
    ExcelUtil::addrToRowCol(last.c_str(), &a.rowLast, &a.colLast, nullptr, nullptr);
    return a;
}

// The parts of a formula separated by ",".
std::vector<std::wstring> partsOf(const std::wstring &formula) {
    std::vector<std::wstring> parts;
    std::wstring rest = formula, left, right;
    while (StrUtil::split(rest, L",", left, right)) {
        parts.push_back(left);
        rest = right;
    }
    parts.push_back(rest);
    return parts;
}

void setOut(int *out, int value) {
    if (out) *out = value;
}

} // namespace

template <class C> std::wstring XMLSheetImplT<C>::sheetName() {
    return wideOf(_owner->sheetEntry(this).attribute_or_default("name"));
}

template <class C>
bool XMLSheetImplT<C>::setNamedRange(const C *name, int rowFirst, int rowLast, int colFirst,
                                     int colLast, int scopeId) {
    std::wstring wide;
    wideText(name, this->book().utf8Mode(), wide);
    return defineName(wide, rowFirst, rowLast, colFirst, colLast, scopeId);
}

template <class C>
bool XMLSheetImplT<C>::defineName(const std::wstring &wide, int rowFirst, int rowLast, int colFirst,
                                  int colLast, int scopeId) {
    if (wide.find(L' ') != std::wstring::npos) throw tberror("space symbol isn't allowed");
    if (rowLast < rowFirst) throw tberror("rowLast must be greater than or equal to rowFirst");
    if (colLast < colFirst) throw tberror("colLast must be greater than or equal to colFirst");
    checkXmlRow(rowFirst);
    checkXmlRow(rowLast);
    checkXmlCol(colFirst);
    checkXmlCol(colLast);
    const int index = _owner->sheetIndexOf(this);
    if (index < 0) throw tberror("sheet doen't have relationship with book");
    const std::string text = utf8Of(wide);

    binding::c_defined_names names(&_owner->definedNames());
    binding::c_defined_name entry;
    for (size_t i = 0; i < names.size_definedName() && !entry; ++i)
        if (names.get_definedName(i).get_name() == text &&
            scopeFits(names.get_definedName(i), scopeId, index))
            entry = names.get_definedName(i);
    if (!entry) entry = names.append_definedName();

    std::wstring formula = StrUtil::quote(sheetName()) + L"!" +
                           ExcelUtil::rowColToAddr(rowFirst, colFirst, false, false);
    if (rowFirst != rowLast || colFirst != colLast)
        formula += L":" + ExcelUtil::rowColToAddr(rowLast, colLast, false, false);
    entry.set_name(text);
    if (scopeId == -1)
        entry.unset_localSheetId();
    else
        entry.set_localSheetId(uint32_t(scopeId == -2 ? index : scopeId));
    entry.set_value(utf8Of(formula));
    return true;
}

template <class C>
bool XMLSheetImplT<C>::getNamedRange(const C *name, int *rowFirst, int *rowLast, int *colFirst,
                                     int *colLast, int scopeId, bool *hidden) {
    std::wstring wanted;
    wideText(name, this->book().utf8Mode(), wanted);
    const int index = _owner->sheetIndexOf(this);
    binding::c_workbook wb(&_owner->document().root());
    if (wb.isset_definedNames()) {
        binding::c_defined_names names = wb.get_definedNames();
        for (size_t i = 0; i < names.size_definedName(); ++i) {
            binding::c_defined_name n = names.get_definedName(i);
            if (sicmp(wideOf(n.get_name()), wanted) != 0 || !scopeFits(n, scopeId, index)) continue;
            const std::vector<std::wstring> parts = partsOf(wideOf(n.get_value()));
            const Area a = areaOf(parts.front());
            setOut(rowFirst, a.rowFirst);
            setOut(rowLast, a.rowLast);
            setOut(colFirst, a.colFirst);
            setOut(colLast, a.colLast);
            if (hidden) *hidden = n.get_hidden();
            if (parts.size() > 1) frameMessage().assign("warning: some parts were skipped");
            return true;
        }
    }
    throw tberror("named range is not found");
}

template <class C> bool XMLSheetImplT<C>::delNamedRange(const C *name, int scopeId) {
    std::wstring wide;
    wideText(name, this->book().utf8Mode(), wide);
    if (!_owner->clearDefinedName(_owner->sheetIndexOf(this), utf8Of(wide), scopeId))
        throw tberror("named range not found");
    return true;
}

template <class C> int XMLSheetImplT<C>::namedRangeSize() {
    int count = 0;
    binding::c_workbook wb(&_owner->document().root());
    if (!wb.isset_definedNames()) return 0;
    binding::c_defined_names names = wb.get_definedNames();
    const std::wstring self = sheetName();
    for (size_t i = 0; i < names.size_definedName(); ++i)
        count +=
            areaOf(partsOf(wideOf(names.get_definedName(i).get_value())).front()).sheet == self;
    return count;
}

template <class C>
const C *XMLSheetImplT<C>::namedRange(int index, int *rowFirst, int *rowLast, int *colFirst,
                                      int *colLast, int *scopeId, bool *hidden) {
    binding::c_workbook wb(&_owner->document().root());
    if (index < 0 || !wb.isset_definedNames()) throw tberror(kXmlIndexOutOfRange);
    binding::c_defined_names names = wb.get_definedNames();
    const std::wstring self = sheetName();
    for (size_t i = 0; i < names.size_definedName(); ++i) {
        binding::c_defined_name n = names.get_definedName(i);
        const std::vector<std::wstring> parts = partsOf(wideOf(n.get_value()));
        const Area a = areaOf(parts.front());
        if (a.sheet != self || index-- > 0) continue;
        setOut(rowFirst, a.rowFirst);
        setOut(rowLast, a.rowLast);
        setOut(colFirst, a.colFirst);
        setOut(colLast, a.colLast);
        setOut(scopeId, n.isset_localSheetId() ? int(n.get_localSheetId()) : -1);
        if (hidden) *hidden = n.get_hidden();
        return result(wideOf(n.get_name()));
    }
    throw tberror(kXmlIndexOutOfRange);
}

template <class C>
void XMLSheetImplT<C>::setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) {
    defineName(wideOf(kPrintArea), rowFirst, rowLast, colFirst, colLast, -2);
}

template <class C> void XMLSheetImplT<C>::clearPrintArea() {
    _owner->clearDefinedName(_owner->sheetIndexOf(this), kPrintArea, -2);
}

template <class C> void XMLSheetImplT<C>::clearPrintRepeats() {
    _owner->clearDefinedName(_owner->sheetIndexOf(this), kPrintTitles, -2);
}

// The print titles are one name of up to two parts, rows "$1:$2" and
// columns "$A:$C"; setting one part keeps the other.
template <class C> void XMLSheetImplT<C>::setRepeat(bool rows, int first, int last) {
    checkXmlSpan(first, last, rows);
    const int index = _owner->sheetIndexOf(this);
    if (index < 0) throw tberror("sheet doen't have relationship with book");
    binding::c_defined_names names(&_owner->definedNames());
    binding::c_defined_name entry;
    for (size_t i = 0; i < names.size_definedName() && !entry; ++i)
        if (names.get_definedName(i).get_name() == kPrintTitles &&
            scopeFits(names.get_definedName(i), -2, index))
            entry = names.get_definedName(i);

    const std::wstring prefix = StrUtil::quote(sheetName()) + L"!";
    std::wstring rowPart, colPart;
    if (entry) {
        for (const std::wstring &part : partsOf(wideOf(entry.get_value()))) {
            const Area a = areaOf(part);
            (a.colFirst < 0 ? rowPart : colPart) = part;
        }
    } else {
        entry = names.append_definedName();
    }
    if (rows)
        rowPart = prefix + L"$" + std::to_wstring(first + 1) + L":$" + std::to_wstring(last + 1);
    else
        colPart = prefix + ExcelUtil::rowColToAddr(-1, first, false, false) + L":" +
                  ExcelUtil::rowColToAddr(-1, last, false, false);
    const std::wstring formula = colPart.empty()   ? rowPart
                                 : rowPart.empty() ? colPart
                                                   : colPart + L"," + rowPart;
    entry.set_name(kPrintTitles);
    entry.set_localSheetId(uint32_t(index));
    entry.set_value(utf8Of(formula));
}

template <class C> void XMLSheetImplT<C>::setPrintRepeatRows(int rowFirst, int rowLast) {
    setRepeat(true, rowFirst, rowLast);
}
template <class C> void XMLSheetImplT<C>::setPrintRepeatCols(int colFirst, int colLast) {
    setRepeat(false, colFirst, colLast);
}

#define TABRIX_XML_SHEET_NAMES(C)                                                                  \
    template std::wstring XMLSheetImplT<C>::sheetName();                                           \
    template bool XMLSheetImplT<C>::setNamedRange(const C *, int, int, int, int, int);             \
    template bool XMLSheetImplT<C>::defineName(const std::wstring &, int, int, int, int, int);     \
    template bool XMLSheetImplT<C>::getNamedRange(const C *, int *, int *, int *, int *, int,      \
                                                  bool *);                                         \
    template bool XMLSheetImplT<C>::delNamedRange(const C *, int);                                 \
    template int XMLSheetImplT<C>::namedRangeSize();                                               \
    template const C *XMLSheetImplT<C>::namedRange(int, int *, int *, int *, int *, int *,         \
                                                   bool *);                                        \
    template void XMLSheetImplT<C>::setPrintArea(int, int, int, int);                              \
    template void XMLSheetImplT<C>::clearPrintArea();                                              \
    template void XMLSheetImplT<C>::clearPrintRepeats();                                           \
    template void XMLSheetImplT<C>::setRepeat(bool, int, int);                                     \
    template void XMLSheetImplT<C>::setPrintRepeatRows(int, int);                                  \
    template void XMLSheetImplT<C>::setPrintRepeatCols(int, int);
TABRIX_XML_SHEET_NAMES(char)
TABRIX_XML_SHEET_NAMES(wchar_t)
#undef TABRIX_XML_SHEET_NAMES

} // namespace tabrix
