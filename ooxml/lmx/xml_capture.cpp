// The root's check, passing over an element, or taking it whole as raw XML with the namespace
// bindings from outside that its names use.
#include "ooxml/lmx/xml_reader.h"

namespace lmx {

elmx_error c_xml_reader::expect_root(int ns, std::string_view local) {
    if (!_frames.empty() || _root_seen)
        return capture_error(ELMX_UNDEFINED_ERROR, "expect_root after the root", "lmx/lmxparse",
                             __LINE__);
    if (next() == EV_ERROR) return _debug.code;
    if (_ns != ns || _local != local)
        return capture_error(ELMX_ELEMENT_NOT_FOUND, _qname, "lmx/lmxparse", __LINE__);
    return ELMX_OK;
}

elmx_error c_xml_reader::skip_element() {
    if (_event != EV_START)
        return capture_error(ELMX_UNDEFINED_ERROR, "skip_element outside a start tag",
                             "lmx/lmxparse", __LINE__);
    const size_t d = depth();
    for (;;) {
        const int e = next();
        if (e == EV_ERROR) return _debug.code;
        if (e == EV_END && depth() < d) return ELMX_OK;
    }
}

void c_xml_reader::note_used_binding(int binding, c_any_info &out) const {
    const s_binding &b = _bindings[size_t(binding)];
    if (b.uri.empty()) return;
    for (const auto &pu : out.ns_context)
        if (pu.first == b.prefix) return;
    out.ns_context.emplace_back(std::string(b.prefix), std::string(b.uri));
}

elmx_error c_xml_reader::capture_element(c_any_info &out) {
    if (_event != EV_START)
        return capture_error(ELMX_UNDEFINED_ERROR, "capture_element outside a start tag",
                             "lmx/lmxparse", __LINE__);
    const char *const start = _tag_start;
    const size_t d = depth();
    const int mark = int(_frames.back().binding_mark);
    out.ns_uri = std::string(namespace_uri(_ns));
    out.local = std::string(_local);
    out.ns_context.clear();
    out.xml.clear();
    // Records the bindings from outside the element that the current tag's names use.
    auto note = [&] {
        int b = -1;
        const size_t colon = _qname.find(':');
        if (colon == std::string_view::npos)
            b = _default_binding;
        else
            lookup_prefix(_qname.substr(0, colon), b);
        if (b >= 0 && b < mark) note_used_binding(b, out);
        for (const s_attribute &a : _attrs) {
            const size_t c = a.qname.find(':');
            if (c == std::string_view::npos) continue;
            lookup_prefix(a.qname.substr(0, c), b);
            if (b >= 0 && b < mark) note_used_binding(b, out);
        }
    };
    note();
    for (;;) {
        const int e = next();
        if (e == EV_ERROR) return _debug.code;
        if (e == EV_START)
            note();
        else if (e == EV_END && depth() < d)
            break;
    }
    out.xml.assign(start, size_t(_p - start));
    // A reference to an entity of this document's DTD would mean nothing elsewhere.
    for (size_t at = out.xml.find('&'); at != std::string::npos; at = out.xml.find('&', at + 1)) {
        const std::string_view ref = std::string_view(out.xml).substr(at + 1, 5);
        if (ref[0] != '#' && ref.substr(0, 3) != "lt;" && ref.substr(0, 3) != "gt;" &&
            ref.substr(0, 4) != "amp;" && ref.substr(0, 5) != "apos;" &&
            ref.substr(0, 5) != "quot;")
            return capture_error(ELMX_UNEXPECTED_ENTITY, "Entity reference inside a kept element",
                                 "lmx/lmxparse", __LINE__);
    }
    return ELMX_OK;
}

} // namespace lmx
