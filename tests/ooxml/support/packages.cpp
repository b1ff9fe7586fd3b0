#include "support/packages.h"

#include <cstdio>
#include <cstdlib>
#include <set>

#include <gtest/gtest.h>

#include "ooxml/book/xml_book_impl.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/zip_package.h"
#include "ooxml/xml_book_proxy.h"

using namespace tabrix;

namespace packages {

const char *const kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
const char *const kRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";

Parts unzip(ZipReader &zip) {
    Parts out;
    for (size_t i = 0; i < zip.size(); ++i) {
        char *data = nullptr;
        size_t size = 0;
        zip.data(i, data, size);
        out[zip.name(i)] = std::string(data ? data : "", size);
        std::free(data);
    }
    return out;
}

Parts unzip(const char *bytes, size_t size) {
    ZipReader r(bytes, size);
    return unzip(r);
}

std::string zip(const Parts &parts) {
    ZipWriter w;
    for (const auto &p : parts) w.add(p.first, p.second.data(), p.second.size());
    w.close();
    char *bytes = nullptr;
    size_t size = 0;
    w.getRaw(bytes, size);
    std::string out(bytes, size);
    std::free(bytes);
    return out;
}

Parts saved(IBookT<char> &book) {
    const char *bytes = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(book.saveRaw(&bytes, &size)) << book.errorMessage();
    return bytes ? unzip(bytes, size) : Parts();
}

namespace {
// One Relationship element of type `ns`/`type`.
std::string rel(const std::string &ns, const std::string &id, const std::string &type,
                const std::string &target) {
    return "<Relationship Id=\"" + id + "\" Type=\"" + ns + "/" + type + "\" Target=\"" + target +
           "\"/>";
}
} // namespace

Parts workbook(const std::vector<std::string> &sheetTargets, const std::string &workbookBody) {
    const std::string main = kMain, rns = kRel;
    const std::string relsNs = "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/"
                               "2006/relationships\">";
    std::string sheets, rels, overrides;
    for (size_t i = 0; i < sheetTargets.size(); ++i) {
        const std::string n = std::to_string(i + 1);
        sheets += "<sheet name=\"S" + n + "\" sheetId=\"" + n + "\" r:id=\"rId" + n + "\"/>";
        rels += rel(rns, "rId" + n, "worksheet", sheetTargets[i]);
        overrides += "<Override PartName=\"/xl/" + sheetTargets[i] +
                     "\" ContentType=\"application/vnd.openxmlformats-officedocument."
                     "spreadsheetml.worksheet+xml\"/>";
    }
    Parts p;
    p[L"/[Content_Types].xml"] =
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Default Extension=\"rels\" ContentType=\"application/"
        "vnd.openxmlformats-package.relationships+xml\"/>"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
        "<Override PartName=\"/xl/workbook.xml\" ContentType=\"application/"
        "vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>" +
        overrides + "</Types>";
    p[L"/_rels/.rels"] =
        relsNs + rel(rns, "rId1", "officeDocument", "xl/workbook.xml") + "</Relationships>";
    p[L"/xl/workbook.xml"] = "<workbook xmlns=\"" + main + "\" xmlns:r=\"" + rns + "\"><sheets>" +
                             sheets + "</sheets>" + workbookBody + "</workbook>";
    p[L"/xl/_rels/workbook.xml.rels"] = relsNs + rels + "</Relationships>";
    for (const std::string &t : sheetTargets)
        p[L"/xl/" + std::wstring(t.begin(), t.end())] =
            "<worksheet xmlns=\"" + main + "\"><sheetData/></worksheet>";
    return p;
}

std::filesystem::path scratch(const std::string &folder, const std::string &name) {
    const std::filesystem::path dir = std::filesystem::path(TABRIX_TEST_TMP) / folder;
    std::filesystem::create_directories(dir);
    return dir / name;
}

std::string packageRoundTrip(const std::filesystem::path &file,
                             const std::filesystem::path &savedPath,
                             const std::function<std::string(IBookT<char> &)> &edit,
                             Parts *savedParts) {
    XMLBookProxy<char> book;
    if (!book.load(file.string().c_str())) return std::string("load: ") + book.errorMessage();
    auto *impl = dynamic_cast<XMLBookImplT<char> *>(book.impl());
    if (!impl) return "no book";
    std::set<std::wstring> opaque;
    for (const auto &p : impl->parts())
        if (dynamic_cast<BinaryFile *>(p.second)) opaque.insert(p.first);
    if (edit) {
        const std::string problem = edit(book);
        if (!problem.empty()) return "edit: " + problem;
    }
    const char *bytes = nullptr;
    unsigned size = 0;
    if (!book.saveRaw(&bytes, &size)) return std::string("save: ") + book.errorMessage();
    if (!savedPath.empty()) {
        FILE *f = std::fopen(savedPath.string().c_str(), "wb");
        if (!f || std::fwrite(bytes, 1, size, f) != size)
            return "can't write " + savedPath.string();
        std::fclose(f);
    }
    const Parts saved = unzip(bytes, size);
    ZipReader sourceZip(file.wstring());
    const Parts source = unzip(sourceZip);
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
    if (savedParts) *savedParts = saved;
    return "";
}

} // namespace packages
