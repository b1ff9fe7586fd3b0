// Defined names of an Open XML workbook, as the sheets edit them.
#include <cwctype>

#include "book/encoding.h"
#include "book/str_util.h"
#include "ooxml/binding/parts/workbook_facades.h"
#include "ooxml/book/xml_book_impl.h"

namespace tabrix {

namespace {

// The sheet a name's formula cites: its text before "!", unquoted.
std::wstring citedSheet(const std::string &formula) {
    std::wstring wide, left, right;
    utf8ToWide(formula.c_str(), wide);
    if (!StrUtil::split(wide, L"!", left, right)) return std::wstring();
    return StrUtil::unquote(left);
}

// Replaces each "Name!" that starts a reference: one that follows the start
// of the formula or an operator, so that "Sheet1!" leaves "MySheet1!" alone.
bool replaceSheetPrefix(std::wstring &formula, const std::wstring &from, const std::wstring &to) {
    bool changed = false;
    for (size_t at = formula.find(from); at != std::wstring::npos; at = formula.find(from, at)) {
        const wchar_t before = at ? formula[at - 1] : L',';
        if (std::iswalnum(before) || before == L'_' || before == L'.' || before == L'\'') {
            at += from.size();
            continue;
        }
        formula.replace(at, from.size(), to);
        at += to.size();
        changed = true;
    }
    return changed;
}

} // namespace

template <class C> binding::c_node &XMLBookImplT<C>::definedNames() {
    return *binding::c_workbook(&document().root()).get_definedNames().node();
}

template <class C>
bool XMLBookImplT<C>::clearDefinedName(int sheetIndex, const std::string &name, int scope) {
    binding::c_workbook wb(&document().root());
    if (!wb.isset_definedNames()) return false;
    std::wstring sheetName;
    utf8ToWide(
        std::string(sheets().child("sheet", size_t(sheetIndex))->attribute_or_default("name"))
            .c_str(),
        sheetName);
    binding::c_defined_names names = wb.get_definedNames();
    bool removed = false;
    for (size_t i = names.size_definedName(); i-- > 0;) {
        binding::c_defined_name n = names.get_definedName(i);
        const bool fits =
            scope == -2 || (scope == -1 && !n.isset_localSheetId()) ||
            (scope >= 0 && n.isset_localSheetId() && n.get_localSheetId() == uint32_t(scope));
        if (fits && n.get_name() == name && citedSheet(n.get_value()) == sheetName) {
            names.delete_definedName(i);
            removed = true;
        }
    }
    if (names.size_definedName() == 0) wb.unset_definedNames();
    return removed;
}

template <class C>
void XMLBookImplT<C>::changeDependencies(const std::wstring &oldName, const std::wstring &newName) {
    binding::c_workbook wb(&document().root());
    if (!wb.isset_definedNames() || oldName == newName) return;
    const std::wstring from = StrUtil::quote(oldName) + L"!", to = StrUtil::quote(newName) + L"!";
    binding::c_defined_names names = wb.get_definedNames();
    for (size_t i = 0; i < names.size_definedName(); ++i) {
        binding::c_defined_name n = names.get_definedName(i);
        std::wstring formula;
        utf8ToWide(n.get_value().c_str(), formula);
        if (!replaceSheetPrefix(formula, from, to)) continue;
        std::string utf8;
        wideToUtf8(formula.c_str(), utf8);
        n.set_value(std::move(utf8));
    }
}

#define TABRIX_XML_BOOK_NAMES(C)                                                                   \
    template binding::c_node &XMLBookImplT<C>::definedNames();                                     \
    template bool XMLBookImplT<C>::clearDefinedName(int, const std::string &, int);                \
    template void XMLBookImplT<C>::changeDependencies(const std::wstring &, const std::wstring &);
TABRIX_XML_BOOK_NAMES(char)
TABRIX_XML_BOOK_NAMES(wchar_t)
#undef TABRIX_XML_BOOK_NAMES

} // namespace tabrix
