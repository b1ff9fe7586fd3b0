// Arbitrary bytes through the XML reader: every event, every attribute value,
// the third level kept raw.  A document that reads without error is copied
// through the writer, and the copy must read without error too.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ooxml/lmx/xml_reader.h"
#include "ooxml/lmx/xml_writer.h"

using namespace lmx;

namespace {

std::string_view prefix_of(std::string_view q) {
    const size_t c = q.find(':');
    return c == std::string_view::npos ? std::string_view() : q.substr(0, c);
}

// Reads `doc`, writing it to `out`; false on a reader error.
bool copy(const char *data, size_t size, std::string &out) {
    c_xml_reader r(data, size);
    c_xml_writer w(out);
    for (int e; (e = r.next()) != EV_END_OF_INPUT;) {
        if (e == EV_ERROR) return false;
        if (e == EV_TEXT) {
            w.text(r.text());
        } else if (e == EV_END) {
            w.end_element();
        } else if (r.depth() == 3) {
            c_any_info info;
            if (r.capture_element(info)) return false;
            w.write_any_info(info);
        } else {
            for (size_t i = 0; i < r.declaration_count(); ++i)
                w.add_namespace(r.declaration(i).prefix, r.declaration(i).uri);
            w.start_element(w.add_namespace(prefix_of(r.qname()), r.namespace_uri(r.ns())),
                            r.local());
            for (size_t i = 0; i < r.attribute_count(); ++i) {
                const s_attribute &a = r.attribute(i);
                std::string_view v;
                if (r.attribute_value(a, v)) return false;
                w.attribute(w.add_namespace(prefix_of(a.qname), r.namespace_uri(a.ns)), a.local, v);
            }
        }
    }
    return w.finish() == ELMX_OK;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string out;
    if (!copy(reinterpret_cast<const char *>(data), size, out)) return 0;
    std::string again;
    if (!copy(out.data(), out.size(), again)) std::abort();
    return 0;
}
