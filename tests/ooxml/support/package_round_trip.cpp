#include "support/package_round_trip.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>

#include "book/str_util.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/zip_package.h"
#include "ooxml/xml_book_proxy.h"

using namespace tabrix;

namespace {

using Entries = std::map<std::wstring, std::string, CaseInsensitiveLess>;

Entries entries(ZipReader &zip) {
    Entries out;
    for (size_t i = 0; i < zip.size(); ++i) {
        char *data = nullptr;
        size_t size = 0;
        zip.data(i, data, size);
        out[zip.name(i)] = std::string(data ? data : "", size);
        std::free(data);
    }
    return out;
}

} // namespace

std::string packageRoundTrip(const std::filesystem::path &file,
                             const std::filesystem::path &savedPath) {
    XMLBookProxy<char> book;
    if (!book.load(file.string().c_str())) return std::string("load: ") + book.errorMessage();
    auto *impl = dynamic_cast<XMLBookImplT<char> *>(book.impl());
    if (!impl) return "no book";
    std::set<std::wstring> opaque;
    for (const auto &p : impl->parts())
        if (dynamic_cast<BinaryFile *>(p.second)) opaque.insert(p.first);
    const char *bytes = nullptr;
    unsigned size = 0;
    if (!book.saveRaw(&bytes, &size)) return std::string("save: ") + book.errorMessage();
    if (!savedPath.empty()) {
        FILE *f = std::fopen(savedPath.string().c_str(), "wb");
        if (!f || std::fwrite(bytes, 1, size, f) != size)
            return "can't write " + savedPath.string();
        std::fclose(f);
    }
    ZipReader savedZip(bytes, size);
    Entries saved = entries(savedZip);

    ZipReader sourceZip(file.wstring());
    const Entries source = entries(sourceZip);
    const auto types = source.find(L"/[Content_Types].xml");
    const ContentTypes ct(types->second.data(), types->second.size());
    for (const auto &e : source) {
        const std::wstring type = ct.contentType(e.first);
        if (type.empty() || type.find(L"calcChain") != std::wstring::npos) continue;
        const std::string name(e.first.begin(), e.first.end());
        auto it = saved.find(e.first);
        if (it == saved.end()) {
            if (!e.second.empty()) return "lost " + name;
            continue;
        }
        if (opaque.count(e.first) && it->second != e.second) return "changed " + name;
    }
    XMLBookProxy<char> again;
    if (!book.isNormalMode()) again.switchToStrictMode();
    if (!again.loadRaw(bytes, size)) return std::string("reload: ") + again.errorMessage();
    if (again.sheetCount() != book.sheetCount()) return "sheet count";
    return "";
}
