// Loading and saving the package of an Open XML book.
#include <cstdlib>
#include <cstring>
#include <memory>

#include "book/tberror.h"
#include "book/text_result.h"
#include "ooxml/lmx/lmx_error.h"
#include "ooxml/binding/parts/workbook_facades.h"
#include "ooxml/book/part_generator.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/package_names.h"
#include "ooxml/package/zip_package.h"
#include "ooxml/sheet/xml_sheet_impl.h"

namespace tabrix {

namespace {

// An entry's bytes, freed when done.
struct EntryBytes {
    char *bytes = nullptr;
    size_t size = 0;
    EntryBytes(ZipReader &zip, size_t index) { zip.data(index, bytes, size); }
    ~EntryBytes() { std::free(bytes); }
    EntryBytes(const EntryBytes &) = delete;
    EntryBytes &operator=(const EntryBytes &) = delete;
};

template <class C> std::wstring widePath(const C *name, bool utf8) {
    std::wstring wide;
    if (!name || !wideText(name, utf8, wide) || wide.empty()) throw tberror("can't open file");
    return wide;
}

// The workbook's main type for a file name's extension; null for others.
const wchar_t *mainTypeOfName(const std::wstring &path) {
    if (path.size() < 6) return nullptr;
    const std::wstring ext = path.substr(path.size() - 5);
    if (sicmp(ext, L".xlsx") == 0) return pkg::kCtWorkbook;
    if (sicmp(ext, L".xltx") == 0) return pkg::kCtTemplate;
    if (sicmp(ext, L".xlsm") == 0) return pkg::kCtWorkbookMacro;
    return nullptr;
}

} // namespace

template <class C> bool XMLBookImplT<C>::load(const C *filename) {
    ZipReader zip(widePath(filename, _utf8));
    loadPackage(zip);
    return true;
}

template <class C> bool XMLBookImplT<C>::loadRaw(const char *data, unsigned size) {
    if (!data || size == 0) throw tberror("data is empty");
    ZipReader zip(data, size);
    loadPackage(zip);
    return true;
}

template <class C> void XMLBookImplT<C>::loadPackage(ZipReader &zip) {
    _loadProgress = 0;
    try {
        readPackage(zip);
    } catch (const std::exception &e) {
        // A root of the other edition fails with "element not found".
        if (std::strcmp(e.what(), lmx::get_error_description(lmx::ELMX_ELEMENT_NOT_FOUND)) != 0)
            ++_loadProgress;
        // What was read so far may lack the parts every operation needs;
        // the book goes on as a new one.
        clear();
        newBook();
        throw;
    }
}

template <class C> void XMLBookImplT<C>::readPackage(ZipReader &zip) {
    clear();
    const size_t count = zip.size();
    size_t typesIndex = count;
    for (size_t i = 0; i < count && typesIndex == count; ++i)
        if (sicmp(zip.name(i), pkg::kContentTypesPart) == 0) typesIndex = i;
    if (typesIndex == count) throw tberror("content types not found");
    {
        EntryBytes e(zip, typesIndex);
        _contentTypes = new ContentTypes(e.bytes, e.size);
        storePart(zip.name(typesIndex), _contentTypes);
    }
    for (size_t i = 0; i < count; ++i) {
        if (i == typesIndex) continue;
        const std::wstring name = zip.name(i);
        const std::wstring type = _contentTypes->contentType(name);
        // Of entries whose names differ only in case the first one counts.
        if (type.empty() || _parts.count(name)) continue;
        EntryBytes e(zip, i);
        if (XGenerator<C>::isWorkbookType(type)) {
            read(e.bytes, e.size);
            _parts[name] = this;
            _workbookPart = name;
            _loadProgress += 2;
            continue;
        }
        std::unique_ptr<XFile> part(XGenerator<C>::create(*this, e.bytes, e.size, type));
        XFile *stored = part.release();
        storePart(name, stored);
        _loadProgress += 2;
        if (type.compare(0, 5, L"image") == 0)
            if (auto *bin = dynamic_cast<BinaryFile *>(stored)) addPictureInfo(name, bin);
    }
    const std::wstring rels =
        _workbookPart.empty() ? std::wstring() : relationPath(_workbookPart, true);
    _workbookRels = rels.empty() ? nullptr : getXml<Relationships>(rels);
    if (!_workbookRels) throw tberror("workbook relationships not found");
    _sharedStrings = getXml<SharedStrings>(findTarget(L"sharedStrings"));
    _styles = getXml<Styles<C>>(findTarget(L"styles"));
    if (_styles) _styles->reportTo(_message);
}

// The calculation chain names cells that an edit may have moved; it never
// survives a save, and the saved book recalculates when opened.
template <class C> void XMLBookImplT<C>::removeCalcChains() {
    const std::wstring name = findTarget(L"calcChain");
    const std::wstring path = name.empty() ? std::wstring(pkg::kCalcChainPart) : name;
    for (const auto &e : std::vector<ContentTypes::Entry>(_contentTypes->entries()))
        if (!e.isDefault && sicmp(e.key, path) == 0) _contentTypes->delOverride(e.key);
    for (const auto &r : std::vector<Relationships::Entry>(_workbookRels->entries()))
        if (sicmp(FileUtil::resolveTarget(_workbookPart, r.target), path) == 0)
            _workbookRels->delRelation(r.id);
    erasePart(path);
}

template <class C> void XMLBookImplT<C>::addFullCalcOnLoad() {
    binding::c_workbook(&document().root()).get_calcPr().set_fullCalcOnLoad(true);
}

template <class C>
void XMLBookImplT<C>::savePackage(const std::wstring *path, char **bytes, size_t *size) {
    if (!_contentTypes || !_workbookRels) throw tberror("workbook relationships not found");
    removeCalcChains();
    addFullCalcOnLoad();
    if (path)
        if (const wchar_t *type = mainTypeOfName(*path))
            _contentTypes->addOverride(_workbookPart, type);
    std::unique_ptr<ZipWriter> zip(path ? new ZipWriter(*path) : new ZipWriter());
    std::string buffer;
    for (const auto &p : _parts) {
        buffer.clear();
        p.second->save(buffer);
        zip->add(p.first, buffer.data(), buffer.size());
    }
    zip->close();
    if (bytes) zip->getRaw(*bytes, *size);
}

template <class C> bool XMLBookImplT<C>::save(const C *filename) {
    const std::wstring path = widePath(filename, _utf8);
    savePackage(&path, nullptr, nullptr);
    return true;
}

template <class C> bool XMLBookImplT<C>::saveRaw(const char **data, unsigned *size) {
    if (!data || !size) throw tberror("data is null");
    char *bytes = nullptr;
    size_t length = 0;
    savePackage(nullptr, &bytes, &length);
    std::free(_rawBuffer);
    _rawBuffer = bytes;
    *data = bytes;
    *size = unsigned(length);
    return true;
}

#define TABRIX_XML_BOOK_IO(C)                                                                      \
    template bool XMLBookImplT<C>::load(const C *);                                                \
    template bool XMLBookImplT<C>::save(const C *);                                                \
    template bool XMLBookImplT<C>::loadRaw(const char *, unsigned);                                \
    template bool XMLBookImplT<C>::saveRaw(const char **, unsigned *);                             \
    template void XMLBookImplT<C>::loadPackage(ZipReader &);                                       \
    template void XMLBookImplT<C>::readPackage(ZipReader &);                                       \
    template void XMLBookImplT<C>::savePackage(const std::wstring *, char **, size_t *);           \
    template void XMLBookImplT<C>::removeCalcChains();                                             \
    template void XMLBookImplT<C>::addFullCalcOnLoad();
TABRIX_XML_BOOK_IO(char)
TABRIX_XML_BOOK_IO(wchar_t)
#undef TABRIX_XML_BOOK_IO

} // namespace tabrix
