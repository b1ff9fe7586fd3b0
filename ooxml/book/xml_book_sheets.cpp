// The sheets of an Open XML book: the workbook's sheet entries, their parts,
// overrides and relations, and the book's view of which sheet is active.
#include <cwctype>
#include <memory>

#include "book/encoding.h"
#include "book/tberror.h"
#include "book/text_result.h"
#include "ooxml/binding/parts/workbook_facades.h"
#include "ooxml/book/part_generator.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/package_names.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

namespace {

const char *const kOutOfRange = "index is out of range";
const size_t kMaxNameLength = 31;

// The number before ".xml" at the end of a target; 0 when there is none.
unsigned numberBeforeExtension(const std::wstring &target) {
    if (target.size() < 5) return 0;
    const size_t end = target.size() - 4;
    size_t begin = end;
    while (begin > 0 && iswdigit(target[begin - 1])) --begin;
    if (begin == end || end - begin > 9) return 0;
    return unsigned(std::stoul(target.substr(begin, end - begin)));
}

} // namespace

template <class C> binding::c_node &XMLBookImplT<C>::sheets() {
    return *binding::c_workbook(&document().root()).get_sheets().node();
}

template <class C> int XMLBookImplT<C>::sheetCount() { return int(sheets().count("sheet")); }

template <class C> std::wstring XMLBookImplT<C>::sheetPath(int index) {
    if (index < 0 || index >= sheetCount()) throw tberror(kOutOfRange);
    const std::string id(sheets().child("sheet", size_t(index))->attribute_or_default("id"));
    const std::wstring target = _workbookRels->target(packageWide(id));
    if (target.empty()) return std::wstring();
    return FileUtil::resolveTarget(_workbookPart, target);
}

template <class C> int XMLBookImplT<C>::sheetIndexOf(const XFile *sheet) {
    const std::wstring name = getFileName(sheet);
    if (name.empty()) return -1;
    for (int i = 0, n = sheetCount(); i < n; ++i)
        if (sicmp(sheetPath(i), name) == 0) return i;
    return -1;
}

template <class C> binding::c_node &XMLBookImplT<C>::sheetEntry(const XFile *sheet) {
    const int index = sheetIndexOf(sheet);
    if (index < 0) throw tberror("sheet doen't have relationship with book");
    return *sheets().child("sheet", size_t(index));
}

// The caller's name as the library's wide text, cut to 31 units (never
// half a surrogate pair).
template <class C> std::wstring XMLBookImplT<C>::sheetName(const C *name, bool &cut) {
    std::wstring wide;
    if (!name) throw tberror("sheet's name is empty");
    if (!wideText(name, _utf8, wide)) throw tberror("sheet's name doesn't convert in this locale");
    if (wide.empty()) throw tberror("sheet's name is empty");
    cut = wide.size() > kMaxNameLength;
    if (cut) {
        size_t keep = kMaxNameLength;
        const auto last = uint32_t(wide[keep - 1]);
        if (last >= 0xD800 && last < 0xDC00) --keep;
        wide.resize(keep);
    }
    return wide;
}

template <class C>
void XMLBookImplT<C>::checkUniqueName(const std::wstring &wide, const binding::c_node *except) {
    binding::c_node &list = sheets();
    for (size_t i = 0, n = list.count("sheet"); i < n; ++i) {
        const binding::c_node *s = list.child("sheet", i);
        if (s == except) continue;
        std::wstring other;
        utf8ToWide(std::string(s->attribute_or_default("name")).c_str(), other);
        if (sicmp(other, wide) == 0) throw tberror("book already contains such sheet name");
    }
}

// "sheet" + one more than the highest number of a worksheet target, in the
// workbook's folder, skipping names the package already holds.
template <class C> std::wstring XMLBookImplT<C>::makeSheetPath() {
    unsigned n = 1;
    for (const Relationships::Entry &r : _workbookRels->entries()) {
        if (r.type != relType(L"worksheet") &&
            r.type.compare(r.type.size() < 10 ? 0 : r.type.size() - 10, 10, L"/worksheet") != 0)
            continue;
        const unsigned number = numberBeforeExtension(r.target);
        if (number >= n) n = number + 1;
    }
    const std::wstring dir = FileUtil::getDir(_workbookPart) + L"/worksheets/sheet";
    while (_parts.count(dir + std::to_wstring(n) + L".xml")) ++n;
    return dir + std::to_wstring(n) + L".xml";
}

template <class C> uint32_t XMLBookImplT<C>::makeSheetId() {
    uint32_t id = 1;
    binding::c_sheets list(&sheets());
    for (size_t i = 0; i < list.size_sheet(); ++i) {
        const uint32_t s = list.get_sheet(i).get_sheetId();
        if (s >= id) id = s + 1;
    }
    return id;
}

template <class C> ISheetT<C> *XMLBookImplT<C>::addSheet(const C *name, ISheetT<C> *initSheet) {
    return insertSheet(sheetCount(), name, initSheet);
}

template <class C>
ISheetT<C> *XMLBookImplT<C>::insertSheet(int index, const C *name, ISheetT<C> *initSheet) {
    if (index < 0 || index > sheetCount()) throw tberror(kOutOfRange);
    bool cut = false;
    const std::wstring wide = sheetName(name, cut);
    checkUniqueName(wide, nullptr);

    XMLSheetImplT<C> *source = nullptr;
    if (initSheet) {
        source = dynamic_cast<XMLSheetImplT<C> *>(initSheet);
        if (!source) throw tberror("a sheet can only be copied from an Open XML book");
        if (source->owner().edition() != edition())
            throw tberror("a sheet can only be copied between books of the same edition");
    }
    std::unique_ptr<XMLSheetImplT<C>> sheet(
        source ? new FramedSheetT<XMLSheetImplT<C>>(*source, *this)
               : new FramedSheetT<XMLSheetImplT<C>>(*this, edition()));

    const std::wstring path = makeSheetPath();
    const std::wstring dir = FileUtil::getDir(_workbookPart);
    storePart(path, sheet.get());
    XMLSheetImplT<C> *added = sheet.release();
    _contentTypes->addOverride(path, pkg::kCtWorksheet);
    const std::wstring id =
        _workbookRels->addRelation(relType(L"worksheet"), path.substr(dir.size() + 1));

    binding::c_node &list = sheets();
    binding::c_node *entry = list.append("sheet");
    // append puts the entry last; move it to its index.
    auto &children = list._children;
    size_t at = 0, seen = 0;
    for (; at < children.size(); ++at)
        if (children[at].node && children[at].node.get() != entry && seen++ == size_t(index)) break;
    for (size_t last = children.size() - 1; last > at; --last)
        std::swap(children[last], children[last - 1]);
    std::string utf8Name;
    wideToUtf8(wide.c_str(), utf8Name);
    entry->set_attribute("name", utf8Name);
    entry->set_attribute("sheetId", std::to_string(makeSheetId()));
    entry->set_attribute("id", packageNarrow(id));

    // The copy refers to the same parts as its source.
    if (source && &source->owner() == this)
        if (Relationships *rels = getRelationships(source)) {
            auto *copy = new Relationships(*rels);
            copy->fillMap();
            storePart(relationPath(path, false), copy);
        }
    added->setSelected(false);

    const int count = sheetCount();
    if (count == 1)
        setActiveSheet(0);
    else if (index <= activeSheet())
        setActiveSheet(activeSheet() + 1);
    binding::c_defined_names names = binding::c_workbook(&document().root()).get_definedNames();
    for (size_t i = 0; i < names.size_definedName(); ++i) {
        binding::c_defined_name n = names.get_definedName(i);
        if (n.isset_localSheetId() && n.get_localSheetId() >= uint32_t(index))
            n.set_localSheetId(n.get_localSheetId() + 1);
    }
    if (names.size_definedName() == 0) binding::c_workbook(&document().root()).unset_definedNames();
    if (cut) _message.assign("warning: sheet's name is cut to 31 characters");
    return added;
}

template <class C> ISheetT<C> *XMLBookImplT<C>::getSheet(int index) {
    const std::wstring path = sheetPath(index);
    auto *sheet = getXml<XMLSheetImplT<C>>(path);
    if (!sheet) throw tberror("sheet not found");
    return sheet;
}

template <class C> SheetType XMLBookImplT<C>::sheetType(int index) {
    const std::wstring path = sheetPath(index);
    auto it = _parts.find(path);
    if (it == _parts.end()) throw tberror("sheet not found");
    if (dynamic_cast<XMLSheetImplT<C> *>(it->second)) return SHEETTYPE_SHEET;
    if (dynamic_cast<XMLChartSheet *>(it->second)) return SHEETTYPE_CHART;
    return SHEETTYPE_UNKNOWN;
}

// The sheet goes with its part, its relationships part, its override and
// the workbook's relation to it, so that the package never names a part it
// lacks.  Names that mention the sheet go; names of later sheets move down.
template <class C> bool XMLBookImplT<C>::delSheet(int index) {
    const int count = sheetCount();
    if (index < 0 || index >= count) throw tberror(kOutOfRange);
    if (count == 1) throw tberror("can't remove the last sheet in workbook");
    binding::c_node &list = sheets();
    binding::c_node *entry = list.child("sheet", size_t(index));
    const std::string sheetName(entry->attribute_or_default("name"));
    const std::wstring id = packageWide(std::string(entry->attribute_or_default("id")));
    const std::wstring path = sheetPath(index);
    auto it = _parts.find(path);
    if (it == _parts.end()) return false;
    const std::wstring stored = it->first;

    binding::c_workbook wb(&document().root());
    if (wb.isset_definedNames()) {
        binding::c_defined_names names = wb.get_definedNames();
        for (size_t i = names.size_definedName(); i-- > 0;) {
            binding::c_defined_name n = names.get_definedName(i);
            if (n.get_value().find(sheetName) != std::string::npos)
                names.delete_definedName(i);
            else if (n.isset_localSheetId() && n.get_localSheetId() > uint32_t(index))
                n.set_localSheetId(n.get_localSheetId() - 1);
        }
        if (names.size_definedName() == 0) wb.unset_definedNames();
    }
    const std::wstring rels = relationPath(stored, true);
    if (!rels.empty()) erasePart(rels);
    list.remove("sheet", size_t(index));
    for (const auto &e : std::vector<ContentTypes::Entry>(_contentTypes->entries()))
        if (!e.isDefault && sicmp(e.key, stored) == 0) _contentTypes->delOverride(e.key);
    _workbookRels->delRelation(id);
    erasePart(stored);
    if (activeSheet() >= sheetCount()) setActiveSheet(sheetCount() - 1);
    return true;
}

template <class C> int XMLBookImplT<C>::activeSheet() {
    const binding::c_node *views = document().root().child("bookViews");
    const binding::c_node *view = views ? views->child("workbookView") : nullptr;
    if (!view) return 0;
    return int(binding::c_book_view(const_cast<binding::c_node *>(view)).get_activeTab());
}

template <class C> void XMLBookImplT<C>::unselectAll() {
    for (auto &p : _parts)
        if (auto *sheet = dynamic_cast<XMLSheetImplT<C> *>(p.second)) sheet->setSelected(false);
}

// No sheet is left selected; the caller selects what it wants shown.
template <class C> void XMLBookImplT<C>::setActiveSheet(int index) {
    if (index < 0 || index >= sheetCount()) throw tberror(kOutOfRange);
    binding::c_book_views views = binding::c_workbook(&document().root()).get_bookViews();
    if (views.size_workbookView() == 0) views.append_workbookView();
    views.get_workbookView(0).set_activeTab(uint32_t(index));
    unselectAll();
}

template <class C> SheetState XMLBookImplT<C>::sheetState(const XFile *sheet) {
    const std::string_view state = sheetEntry(sheet).attribute_or_default("state");
    if (state == "hidden") return SHEETSTATE_HIDDEN;
    if (state == "veryHidden") return SHEETSTATE_VERYHIDDEN;
    return SHEETSTATE_VISIBLE;
}

template <class C> void XMLBookImplT<C>::setSheetState(const XFile *sheet, SheetState state) {
    static const char *const kStates[] = {"visible", "hidden", "veryHidden"};
    if (int(state) < 0 || int(state) > 2) throw tberror("hidden is out of range");
    binding::c_node &entry = sheetEntry(sheet);
    if (state != SHEETSTATE_VISIBLE && sheetState(sheet) == SHEETSTATE_VISIBLE) {
        int visible = 0;
        binding::c_node &list = sheets();
        for (size_t i = 0, n = list.count("sheet"); i < n; ++i) {
            const std::string_view s = list.child("sheet", i)->attribute_or_default("state");
            if (s.empty() || s == "visible") ++visible;
        }
        if (visible < 2) throw tberror("a workbook must contain at least one visible worksheet");
    }
    if (state == SHEETSTATE_VISIBLE)
        entry.unset_attribute("state");
    else
        entry.set_attribute("state", kStates[state]);
    calcActiveSheet();
}

// A hidden sheet can't be the active one: the next visible sheet takes over.
template <class C> void XMLBookImplT<C>::calcActiveSheet() {
    const int count = sheetCount();
    const int active = activeSheet();
    binding::c_node &list = sheets();
    for (int step = 0; step < count; ++step) {
        const int i = (active + step) % count;
        const std::string_view s = list.child("sheet", size_t(i))->attribute_or_default("state");
        if (s.empty() || s == "visible") {
            if (i != active) setActiveSheet(i);
            return;
        }
    }
}

template <class C> bool XMLBookImplT<C>::renameSheet(const XFile *sheet, const C *name) {
    binding::c_node &entry = sheetEntry(sheet);
    bool cut = false;
    const std::wstring wide = sheetName(name, cut);
    checkUniqueName(wide, &entry);
    std::string utf8Name;
    wideToUtf8(wide.c_str(), utf8Name);
    entry.set_attribute("name", utf8Name);
    return cut;
}

#define TABRIX_XML_BOOK_SHEETS(C)                                                                  \
    template binding::c_node &XMLBookImplT<C>::sheets();                                           \
    template int XMLBookImplT<C>::sheetCount();                                                    \
    template std::wstring XMLBookImplT<C>::sheetPath(int);                                         \
    template int XMLBookImplT<C>::sheetIndexOf(const XFile *);                                     \
    template binding::c_node &XMLBookImplT<C>::sheetEntry(const XFile *);                          \
    template std::wstring XMLBookImplT<C>::sheetName(const C *, bool &);                           \
    template void XMLBookImplT<C>::checkUniqueName(const std::wstring &, const binding::c_node *); \
    template std::wstring XMLBookImplT<C>::makeSheetPath();                                        \
    template uint32_t XMLBookImplT<C>::makeSheetId();                                              \
    template ISheetT<C> *XMLBookImplT<C>::addSheet(const C *, ISheetT<C> *);                       \
    template ISheetT<C> *XMLBookImplT<C>::insertSheet(int, const C *, ISheetT<C> *);               \
    template ISheetT<C> *XMLBookImplT<C>::getSheet(int);                                           \
    template SheetType XMLBookImplT<C>::sheetType(int);                                            \
    template bool XMLBookImplT<C>::delSheet(int);                                                  \
    template int XMLBookImplT<C>::activeSheet();                                                   \
    template void XMLBookImplT<C>::unselectAll();                                                  \
    template void XMLBookImplT<C>::setActiveSheet(int);                                            \
    template SheetState XMLBookImplT<C>::sheetState(const XFile *);                                \
    template void XMLBookImplT<C>::setSheetState(const XFile *, SheetState);                       \
    template void XMLBookImplT<C>::calcActiveSheet();                                              \
    template bool XMLBookImplT<C>::renameSheet(const XFile *, const C *);
TABRIX_XML_BOOK_SHEETS(char)
TABRIX_XML_BOOK_SHEETS(wchar_t)
#undef TABRIX_XML_BOOK_SHEETS

} // namespace tabrix
