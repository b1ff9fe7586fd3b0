// Fuzz target: the package parts.  An archive has its content types and
// relationship parts parsed and every target resolved; other input is
// parsed as both parts directly.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "book/tberror.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/relationships.h"
#include "ooxml/package/zip_package.h"

using namespace tabrix;

namespace {

void parts(const std::wstring &name, const char *bytes, size_t size) {
    try {
        std::string out;
        if (name.size() >= 5 && name.compare(name.size() - 5, 5, L".rels") == 0) {
            Relationships r(bytes, size);
            for (const Relationships::Entry &e : r.entries())
                FileUtil::resolveTarget(name, e.target);
            r.addRelation(L"t", L"x");
            r.save(out);
        } else {
            ContentTypes c(bytes, size);
            c.contentType(L"/xl/workbook.xml");
            c.addOverride(L"/a.xml", L"t");
            c.save(out);
        }
    } catch (const tberror &) {}
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const char *bytes = reinterpret_cast<const char *>(data);
    if (size < 2 || bytes[0] != 'P' || bytes[1] != 'K') {
        parts(L"/[Content_Types].xml", bytes, size);
        parts(L"/_rels/.rels", bytes, size);
        return 0;
    }
    try {
        ZipReader zip(data, size);
        for (size_t i = 0; i < zip.size() && i < 64; ++i) {
            std::wstring name = zip.name(i);
            if (name != L"/[Content_Types].xml" && FileUtil::getExtension(name) != L"rels")
                continue;
            char *part = nullptr;
            size_t n = 0;
            zip.data(i, part, n);
            parts(name, part, n);
            std::free(part);
        }
    } catch (const tberror &) {}
    return 0;
}
