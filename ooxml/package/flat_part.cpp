#include "ooxml/package/flat_part.h"

#include "book/tberror.h"
#include "ooxml/package/file_util.h"

namespace tabrix {

void throwXmlError(int code) {
    if (code) throw tberror(lmx::get_error_description(code));
}

void readFlatPart(const char *bytes, size_t size, const char *uri, std::string_view root,
                  const std::function<lmx::elmx_error(lmx::c_xml_reader &)> &child) {
    if (size == 0) throw tberror("data is empty");
    const lmx::s_ns_map map[] = {{kFlatNs, "", uri}, {0, nullptr, nullptr}};
    lmx::c_xml_reader r(bytes, size, map);
    for (int e; (e = r.next()) != lmx::EV_END_OF_INPUT;) {
        if (e == lmx::EV_ERROR) throwXmlError(r.error());
        if (e != lmx::EV_START) continue;
        if (r.depth() == 1) {
            if (r.ns() != kFlatNs || r.local() != root)
                throwXmlError(
                    r.capture_error(lmx::ELMX_ELEMENT_NOT_FOUND, root, __FILE__, __LINE__));
        } else if (r.depth() == 2) {
            throwXmlError(child(r));
            throwXmlError(r.skip_element());
        }
    }
}

bool flatAttribute(lmx::c_xml_reader &r, std::string_view name, std::wstring &out) {
    const lmx::s_attribute *a = r.find_attribute(lmx::NS_NONE, name);
    if (!a) return false;
    std::string_view v;
    throwXmlError(r.attribute_value(*a, v));
    out = packageWide(std::string(v));
    return true;
}

} // namespace tabrix
