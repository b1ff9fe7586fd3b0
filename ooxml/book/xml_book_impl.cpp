#include "ooxml/book/xml_book_impl.h"

#include <clocale>
#include <cstdlib>
#include <cstring>

#include "book/date_serial.h"
#include "book/tberror.h"
#include "ooxml/binding/parts/workbook_facades.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/package_names.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

int libraryVersion();

template <class C>
XMLBookImplT<C>::XMLBookImplT(binding::e_edition edition)
    : XmlFile(edition, binding::PART_WORKBOOK) {
    setLocale("");
    newBook();
}

template <class C> XMLBookImplT<C>::~XMLBookImplT() { clear(); }

// Every part goes but the book itself; the workbook tree starts over.
template <class C> void XMLBookImplT<C>::clear() {
    for (auto &p : _parts)
        if (p.second != this) delete p.second;
    _parts.clear();
    _pictures.clear();
    std::free(_rawBuffer);
    _rawBuffer = nullptr;
    _workbookRels = nullptr;
    _contentTypes = nullptr;
    _sharedStrings = nullptr;
    _styles = nullptr;
    _workbookPart.clear();
    _r1c1 = -1;
    reset();
}

template <class C> void XMLBookImplT<C>::newBook() {
    _workbookRels = new Relationships();
    storePart(pkg::kWorkbookRels, _workbookRels);
    auto *packageRels = new Relationships();
    storePart(pkg::kPackageRels, packageRels);
    packageRels->addRelation(relType(L"officeDocument"), pkg::kWorkbookTarget);
    _workbookPart = pkg::kWorkbookPart;
    _parts[_workbookPart] = this;
    _contentTypes = new ContentTypes();
    storePart(pkg::kContentTypesPart, _contentTypes);
    _contentTypes->addDefault(L"rels", pkg::kCtRelationships);
    _contentTypes->addDefault(L"xml", pkg::kCtXml);
    _contentTypes->addOverride(pkg::kWorkbookPart, pkg::kCtWorkbook);
    styles();
    binding::c_workbook wb(&document().root());
    wb.get_workbookPr();
    wb.get_bookViews().append_workbookView();
    wb.get_sheets();
}

template <class C> void XMLBookImplT<C>::storePart(const std::wstring &name, XFile *file) {
    auto it = _parts.find(name);
    if (it != _parts.end()) {
        if (it->second != this && it->second != file) delete it->second;
        it->second = file;
    } else {
        _parts.emplace(name, file);
    }
}

// The workbook, its relationships and the content types stay whatever a
// package's relations say; an image part leaves the picture list with it.
template <class C> void XMLBookImplT<C>::erasePart(const std::wstring &name) {
    auto it = _parts.find(name);
    if (it == _parts.end()) return;
    if (it->second == this || it->second == _contentTypes || it->second == _workbookRels) return;
    for (size_t i = _pictures.size(); i-- > 0;)
        if (_pictures[i].file == it->second) _pictures.erase(_pictures.begin() + std::ptrdiff_t(i));
    if (it->second == _sharedStrings) _sharedStrings = nullptr;
    if (it->second == _styles) _styles = nullptr;
    if (it->second != this) delete it->second;
    _parts.erase(it);
}

template <class C> std::wstring XMLBookImplT<C>::relType(const wchar_t *kind) const {
    std::wstring root =
        edition() == binding::STRICT
            ? L"http://purl.oclc.org/ooxml/officeDocument/relationships/"
            : L"http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
    return root + kind;
}

template <class C> std::wstring XMLBookImplT<C>::findTarget(const wchar_t *kind) {
    if (!_workbookRels) return std::wstring();
    const std::wstring types[] = {
        std::wstring(L"http://schemas.openxmlformats.org/officeDocument/2006/relationships/") +
            kind,
        std::wstring(L"http://purl.oclc.org/ooxml/officeDocument/relationships/") + kind};
    for (const std::wstring &type : types) {
        const std::wstring target = _workbookRels->firstTargetByType(type);
        if (!target.empty()) return FileUtil::resolveTarget(_workbookPart, target);
    }
    return std::wstring();
}

// Made on first use: the part, its override and the workbook's relation.
template <class C> SharedStrings &XMLBookImplT<C>::sharedStrings() {
    if (_sharedStrings) return *_sharedStrings;
    auto part = std::make_unique<SharedStrings>(edition());
    const std::wstring dir = FileUtil::getDir(_workbookPart);
    std::wstring name = dir + L"/sharedStrings.xml";
    if (_parts.count(name))
        name = addFile(part.get(), dir + L"/sharedStrings", L"xml");
    else
        storePart(name, part.get());
    _sharedStrings = part.release();
    _contentTypes->addOverride(name, pkg::kCtSharedStrings);
    _workbookRels->addRelation(relType(L"sharedStrings"), name.substr(dir.size() + 1));
    return *_sharedStrings;
}

template <class C> Styles<C> &XMLBookImplT<C>::styles() {
    if (_styles) return *_styles;
    auto part = std::make_unique<Styles<C>>(edition(), _utf8);
    part->reportTo(_message);
    const std::wstring dir = FileUtil::getDir(_workbookPart);
    std::wstring name = dir + L"/styles.xml";
    if (_parts.count(name))
        name = addFile(part.get(), dir + L"/styles", L"xml");
    else
        storePart(name, part.get());
    _styles = part.release();
    if (_contentTypes) _contentTypes->addOverride(name, pkg::kCtStyles);
    if (_workbookRels) _workbookRels->addRelation(relType(L"styles"), name.substr(dir.size() + 1));
    return *_styles;
}

// A null text and an id without a text are refused as the binary book
// refuses them.
template <class C> int XMLBookImplT<C>::addCustomNumFormat(const C *text) {
    if (!text) throw tberror("custom number format mustn't be NULL");
    return styles().addCustomNumFormat(text);
}

template <class C> const C *XMLBookImplT<C>::customNumFormat(int fmt) {
    const C *text = styles().customNumFormat(fmt);
    if (!text) throw tberror("custom number format not found");
    return text;
}

template <class C> std::wstring XMLBookImplT<C>::getFileName(const XFile *file) const {
    for (const auto &p : _parts)
        if (p.second == file) return p.first;
    return std::wstring();
}

template <class C>
std::wstring XMLBookImplT<C>::relationPath(const std::wstring &partName, bool mustExist) const {
    const std::wstring path = FileUtil::relsPartOf(partName);
    if (!mustExist) return path;
    auto it = _parts.find(path);
    return it == _parts.end() ? std::wstring() : it->first;
}

template <class C> Relationships *XMLBookImplT<C>::getRelationships(const XFile *file) {
    const std::wstring name = getFileName(file);
    if (name.empty()) return nullptr;
    return getXml<Relationships>(relationPath(name, false));
}

template <class C>
std::wstring XMLBookImplT<C>::addFile(XFile *file, const std::wstring &prefix,
                                      const std::wstring &extension) {
    for (unsigned n = 1;; ++n) {
        std::wstring name = prefix + std::to_wstring(n) + L"." + extension;
        if (_parts.count(name)) continue;
        _parts.emplace(name, file);
        return name;
    }
}

template <class C> int XMLBookImplT<C>::picIndex(const std::wstring &imagePath) const {
    for (size_t i = 0; i < _pictures.size(); ++i)
        if (_pictures[i].path == imagePath) return int(i);
    return -1;
}

// ---- settings ----

template <class C>
double XMLBookImplT<C>::datePack(int year, int month, int day, int hour, int min, int sec,
                                 int msec) {
    return tabrix::datePack(isDate1904(), year, month, day, hour, min, sec, msec);
}

template <class C>
bool XMLBookImplT<C>::dateUnpack(double value, int *year, int *month, int *day, int *hour, int *min,
                                 int *sec, int *msec) {
    return tabrix::dateUnpack(isDate1904(), value, year, month, day, hour, min, sec, msec);
}

template <class C> bool XMLBookImplT<C>::refR1C1() { return r1c1Mode(); }

// Sheets ask at every formula: the answer is kept until the mode is set or
// the book starts over.
template <class C> bool XMLBookImplT<C>::r1c1Mode() {
    if (_r1c1 < 0) {
        const binding::c_node *calc = document().root().child("calcPr");
        _r1c1 = calc && calc->attribute_or_default("refMode") == "R1C1";
    }
    return _r1c1 > 0;
}

template <class C> void XMLBookImplT<C>::setRefR1C1(bool refR1C1) {
    binding::c_workbook(&document().root()).get_calcPr().set_refMode(refR1C1 ? "R1C1" : "A1");
    _r1c1 = refR1C1;
}

template <class C> int XMLBookImplT<C>::version() { return libraryVersion(); }

template <class C> bool XMLBookImplT<C>::isDate1904() {
    const binding::c_node *pr = document().root().child("workbookPr");
    return pr && binding::c_workbook_pr(const_cast<binding::c_node *>(pr)).get_date1904();
}

template <class C> void XMLBookImplT<C>::setDate1904(bool date1904) {
    binding::c_workbook_pr pr = binding::c_workbook(&document().root()).get_workbookPr();
    if (date1904 || pr.isset_date1904()) pr.set_date1904(date1904);
}

template <class C> bool XMLBookImplT<C>::isTemplate() {
    return _contentTypes && _contentTypes->contentType(_workbookPart) == pkg::kCtTemplate;
}

template <class C> void XMLBookImplT<C>::setTemplate(bool tmpl) {
    _contentTypes->addOverride(_workbookPart, tmpl ? pkg::kCtTemplate : pkg::kCtWorkbook);
}

// "UTF-8" selects UTF-8 text; any other name is the process's C locale.
template <class C> bool XMLBookImplT<C>::setLocale(const char *locale) {
    if (locale && std::strcmp(locale, "UTF-8") == 0) {
        _utf8 = true;
        if (_styles) _styles->setUtf8Mode(true);
        return true;
    }
    _utf8 = false;
    if (_styles) _styles->setUtf8Mode(false);
    const char *set = locale ? std::setlocale(LC_ALL, locale) : nullptr;
    if (!set) throw tberror("setlocale error");
    _localeName = set;
    return true;
}

template class XMLBookImplT<char>;
template class XMLBookImplT<wchar_t>;

} // namespace tabrix
