// The writer and the escaping of values.
#include "ooxml/lmx/xml_writer.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace lmx {

void output_convert_to_xml(std::string &out, std::string_view text, bool attribute) {
    const char *p = text.data();
    const char *const end = p + text.size();
    const char *run = p;
    for (; p < end; ++p) {
        const char c = *p;
        const char *rep;
        switch (c) {
        case '&': rep = "&amp;"; break;
        case '<': rep = "&lt;"; break;
        case '"': rep = "&quot;"; break;
        case '\'': rep = "&apos;"; break;
        case '>':
            if (p == text.data() || p[-1] != ']') continue;
            rep = "&gt;";
            break;
        case '\r': rep = "&#13;"; break;
        case '\n':
            if (!attribute) continue;
            rep = "&#10;";
            break;
        case '\t':
            if (!attribute) continue;
            rep = "&#9;";
            break;
        default: continue;
        }
        out.append(run, size_t(p - run));
        out += rep;
        run = p + 1;
    }
    out.append(run, size_t(end - run));
}

void output_convert_to_xml(std::string &out, double v) {
    if (std::isnan(v)) {
        out += "NaN";
        return;
    }
    if (std::isinf(v)) {
        out += v < 0 ? "-INF" : "INF";
        return;
    }
    char buf[40];
    const int n = std::snprintf(buf, sizeof buf, "%.14g", v);
    for (int i = 0; i < n; ++i)
        if (buf[i] >= 'A' && buf[i] <= 'Z') buf[i] = char(buf[i] + 32);
    out.append(buf, size_t(n));
}

void output_convert_to_xml(std::string &out, bool v) { out += v ? "true" : "false"; }

void output_convert_to_bool_digit(std::string &out, bool v) { out += v ? '1' : '0'; }

c_xml_writer::c_xml_writer(std::string &out, const s_ns_map *map) : _out(out) {
    _out += "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
    _ns.push_back({NS_XML, "xml", std::string(k_uri_xml)});
    if (map)
        for (const s_ns_map *m = map; m->uri; ++m) _ns.push_back({m->id, m->prefix, m->uri});
}

const c_xml_writer::s_ns *c_xml_writer::find_id(int id) const {
    for (const s_ns &n : _ns)
        if (n.id == id) return &n;
    return nullptr;
}

int c_xml_writer::add_namespace(std::string_view prefix, std::string_view uri) {
    if (uri.empty()) return NS_NONE;
    const s_ns *known = nullptr;
    bool prefix_free = true;
    for (const s_ns &n : _ns) {
        if (n.uri == uri && n.prefix == prefix) return n.id;
        if (n.uri == uri && !known) known = &n;
        prefix_free = prefix_free && n.prefix != prefix;
    }
    if (known && !prefix_free) return known->id;
    std::string p(prefix);
    for (int k = 1;; ++k) {
        bool taken = false;
        for (const s_ns &n : _ns) taken = taken || n.prefix == p;
        if (!taken) break;
        p = "ns" + std::to_string(k);
    }
    const int id = uri == k_uri_xsi ? NS_XSI : _next_id++;
    _ns.push_back({id, p, std::string(uri)});
    return id;
}

void c_xml_writer::close_tag() {
    if (_tag_open) {
        _out += '>';
        _tag_open = false;
    }
}

bool c_xml_writer::unprefixed(int ns) const {
    if (ns == NS_NONE) return true;
    const s_ns *n = find_id(ns);
    return n && n->prefix.empty();
}

std::string &c_xml_writer::raw_content() {
    if (_open.empty()) {
        _misuse = true;
    } else {
        close_tag();
        _open.back().content = true;
    }
    return _out;
}

void c_xml_writer::put_name(int ns, std::string_view local) {
    if (ns != NS_NONE) {
        const s_ns *n = find_id(ns);
        if (n && !n->prefix.empty()) {
            _out += n->prefix;
            _out += ':';
        }
    }
    _out += local;
}

void c_xml_writer::start_element(int ns, std::string_view local) {
    if (_open.empty() && _root_written) _misuse = true; // a second root
    close_tag();
    if (!_open.empty()) _open.back().content = true;
    _out += '<';
    const size_t at = _out.size();
    put_name(ns, local);
    _open.push_back({at, _out.size() - at, false});
    if (!_root_written) {
        _root_written = true;
        _root_decl_at = _out.size();
    }
    _tag_open = true;
}

void c_xml_writer::attribute(int ns, std::string_view local, std::string_view value) {
    if (!_tag_open) {
        _misuse = true;
        return;
    }
    _out += ' ';
    put_name(ns, local);
    _out += "=\"";
    output_convert_to_xml(_out, value, true);
    _out += '"';
}

void c_xml_writer::attribute(int ns, std::string_view local, double value) {
    if (!_tag_open) {
        _misuse = true;
        return;
    }
    _out += ' ';
    put_name(ns, local);
    _out += "=\"";
    output_convert_to_xml(_out, value);
    _out += '"';
}

void c_xml_writer::attribute(int ns, std::string_view local, bool value) {
    attribute(ns, local, std::string_view(value ? "true" : "false"));
}

void c_xml_writer::attribute(int ns, std::string_view local, int64_t value) {
    char buf[24];
    auto r = std::to_chars(buf, buf + sizeof buf, value);
    attribute(ns, local, std::string_view(buf, size_t(r.ptr - buf)));
}

void c_xml_writer::attribute(int ns, std::string_view local, uint64_t value) {
    char buf[24];
    auto r = std::to_chars(buf, buf + sizeof buf, value);
    attribute(ns, local, std::string_view(buf, size_t(r.ptr - buf)));
}

void c_xml_writer::text(std::string_view value) {
    if (value.empty()) return;
    if (_open.empty()) {
        _misuse = true;
        return;
    }
    close_tag();
    if (!_open.empty()) _open.back().content = true;
    output_convert_to_xml(_out, value, false);
}

void c_xml_writer::end_element() {
    if (_open.empty()) return;
    const s_open o = _open.back();
    _open.pop_back();
    if (_tag_open) {
        _out += "/>";
        _tag_open = false;
        return;
    }
    _out.reserve(_out.size() + o.name_len + 3); // the name is copied from _out itself
    _out += "</";
    _out.append(_out.data() + o.name_at, o.name_len);
    _out += '>';
}

void c_xml_writer::write_any_info(const c_any_info &info) {
    if (_open.empty()) {
        _misuse = true;
        return;
    }
    close_tag();
    if (!_open.empty()) _open.back().content = true;
    // Bindings whose prefix the document already uses for another URI are
    // declared on the element's own tag, so its names keep their meaning.
    std::string local_decls;
    for (const auto &pu : info.ns_context) {
        const s_ns *same = nullptr;
        bool clash = false;
        for (const s_ns &n : _ns)
            if (n.prefix == pu.first) {
                if (n.uri == pu.second)
                    same = &n;
                else
                    clash = true;
            }
        if (same) continue;
        if (clash) {
            local_decls += pu.first.empty() ? " xmlns=\"" : " xmlns:" + pu.first + "=\"";
            output_convert_to_xml(local_decls, pu.second, true);
            local_decls += '"';
        } else {
            add_namespace(pu.first, pu.second);
        }
    }
    if (local_decls.empty()) {
        _out += info.xml;
        return;
    }
    size_t name_end = 1;
    while (name_end < info.xml.size() && info.xml[name_end] != ' ' && info.xml[name_end] != '>' &&
           info.xml[name_end] != '/' && info.xml[name_end] != '\t' && info.xml[name_end] != '\n' &&
           info.xml[name_end] != '\r')
        ++name_end;
    _out.append(info.xml, 0, name_end);
    _out += local_decls;
    _out.append(info.xml, name_end, std::string::npos);
}

elmx_error c_xml_writer::finish() {
    if (!_root_written) return ELMX_TYPE_NOT_SET;
    if (!_open.empty()) return ELMX_OCCURS_ON_MARSHAL;
    if (_misuse) return ELMX_UNDEFINED_ERROR;
    std::string decls;
    for (const s_ns &n : _ns) {
        if (n.id == NS_XML) continue;
        decls += n.prefix.empty() ? " xmlns=\"" : " xmlns:" + n.prefix + "=\"";
        output_convert_to_xml(decls, n.uri, true);
        decls += '"';
    }
    _out.insert(_root_decl_at, decls);
    return ELMX_OK;
}

} // namespace lmx
