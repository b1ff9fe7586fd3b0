// The pull reader's scanning of tags, text and names.
#include "ooxml/lmx/xml_reader.h"

#include <algorithm>
#include <cstring>

#include "ooxml/lmx/xml_chars.h"

namespace lmx {

using chars::is;
using chars::is_space;

namespace {

bool starts(const char *p, const char *end, const char *lit, size_t n) {
    return size_t(end - p) >= n && std::memcmp(p, lit, n) == 0;
}

const char *find(const char *p, const char *end, std::string_view pat) {
    size_t at = std::string_view(p, size_t(end - p)).find(pat);
    return at == std::string_view::npos ? nullptr : p + at;
}

} // namespace

c_xml_reader::c_xml_reader(const char *data, size_t size, const s_ns_map *map,
                           const s_reader_limits &limits)
    : _limits(limits), _map(map) {
    std::string detail;
    elmx_error e = document_to_utf8(data, size, _storage, _doc, _decl, detail);
    _p = _doc.data();
    _end = _p + _doc.size();
    if (e) {
        fail(e, detail);
        return;
    }
    _p += _decl.length;
    _frames.reserve(32);
    _attrs.reserve(16);
    _bindings.reserve(16);
}

c_xml_reader::~c_xml_reader() = default;

int c_xml_reader::fail(elmx_error code, std::string detail) {
    if (!_debug.code) _debug.capture(code, std::move(detail), "lmx/lmxparse", 0, line());
    return _event = EV_ERROR;
}

elmx_error c_xml_reader::capture_error(elmx_error code, std::string_view name, const char *file,
                                       int line_no) {
    _debug.capture(code, std::string(name), file, line_no, line());
    _event = EV_ERROR;
    return _debug.code;
}

int c_xml_reader::line() const {
    const char *p = _doc.data();
    const char *stop = std::min(_p ? _p : p, _end);
    int n = 1;
    while (p && p < stop) {
        const void *nl = std::memchr(p, '\n', size_t(stop - p));
        if (!nl) break;
        ++n;
        p = static_cast<const char *>(nl) + 1;
    }
    return n;
}

std::string_view c_xml_reader::namespace_uri(int id) const {
    if (id == NS_XML) return k_uri_xml;
    if (id == NS_XSI) return k_uri_xsi;
    if (id >= NS_FIRST_DYNAMIC && size_t(id - NS_FIRST_DYNAMIC) < _dynamic_uris.size())
        return _dynamic_uris[size_t(id - NS_FIRST_DYNAMIC)];
    if (_map)
        for (const s_ns_map *m = _map; m->uri; ++m)
            if (m->id == id) return m->uri;
    return {};
}

int c_xml_reader::ns_of_uri(std::string_view uri) {
    if (uri.empty()) return NS_NONE;
    if (_map)
        for (const s_ns_map *m = _map; m->uri; ++m)
            if (uri == m->uri) return m->id;
    if (uri == k_uri_xsi) return NS_XSI;
    if (uri == k_uri_xml) return NS_XML;
    for (size_t i = 0; i < _dynamic_uris.size(); ++i)
        if (_dynamic_uris[i] == uri) return NS_FIRST_DYNAMIC + int(i);
    if (_dynamic_uris.size() >= _limits.max_namespaces) return -1;
    _dynamic_uris.push_back(uri);
    return NS_FIRST_DYNAMIC + int(_dynamic_uris.size() - 1);
}

int c_xml_reader::lookup_prefix(std::string_view prefix, int &binding) const {
    for (size_t i = _bindings.size(); i-- > 0;)
        if (_bindings[i].prefix == prefix) {
            binding = int(i);
            return _bindings[i].id;
        }
    binding = -1;
    if (prefix == "xml") return NS_XML;
    return -1;
}

s_namespace_decl c_xml_reader::declaration(size_t i) const {
    const s_binding &b = _bindings[_decl_first + i];
    return {b.prefix, b.uri, b.id};
}

const s_attribute *c_xml_reader::find_attribute(int ns, std::string_view local) const {
    for (const s_attribute &a : _attrs)
        if (a.ns == ns && a.local == local) return &a;
    return nullptr;
}

elmx_error c_xml_reader::decode_attribute(const s_attribute &a, std::string_view &out) {
    if (_debug.code) return _debug.code;
    if (a.plain) {
        out = a.raw_value;
        return ELMX_OK;
    }
    _value_buf.clear();
    if (!decode(a.raw_value, _value_buf, true)) return _debug.code;
    out = _value_buf;
    return ELMX_OK;
}

bool c_xml_reader::text_is_space() const {
    for (char c : _text)
        if (!is_space(c)) return false;
    return true;
}

int c_xml_reader::next() {
    if (_debug.code) return _event = EV_ERROR;
    _decl_count = 0;
    if (_pending_end) {
        // The end of an empty-element tag, reported after its start.
        _pending_end = false;
        return close_element();
    }
    if (_frames.empty()) return misc_outside_root();
    for (;;) {
        if (_p >= _end) return fail(ELMX_UNEXPECTED_EOM, "Premature end of file encountered");
        if (*_p != '<') return text_run();
        if (_end - _p < 2) return fail(ELMX_UNEXPECTED_EOM, "Premature end of file encountered");
        const char c = _p[1];
        if (c == '/') return end_tag();
        if (c == '!') {
            if (starts(_p, _end, "<!--", 4)) {
                if (!skip_comment()) return EV_ERROR;
                continue;
            }
            if (starts(_p, _end, "<![CDATA[", 9)) return text_run();
            return fail(ELMX_NOT_WELL_FORMED, "Unexpected <!");
        }
        if (c == '?') {
            if (!skip_pi()) return EV_ERROR;
            continue;
        }
        return start_tag();
    }
}

int c_xml_reader::misc_outside_root() {
    for (;;) {
        while (_p < _end && is_space(*_p)) ++_p;
        if (_p >= _end) {
            if (!_root_done) return fail(ELMX_UNEXPECTED_EOM, "No root element");
            return _event = EV_END_OF_INPUT;
        }
        if (*_p != '<') return fail(ELMX_NOT_WELL_FORMED, "Text outside the root element");
        if (_end - _p < 2) return fail(ELMX_UNEXPECTED_EOM, "Premature end of file encountered");
        const char c = _p[1];
        if (c == '?') {
            if (!skip_pi()) return EV_ERROR;
            continue;
        }
        if (c == '!') {
            if (starts(_p, _end, "<!--", 4)) {
                if (!skip_comment()) return EV_ERROR;
                continue;
            }
            if (!_root_seen && !_doctype_seen && starts(_p, _end, "<!DOCTYPE", 9)) {
                _doctype_seen = true;
                if (!parse_doctype()) return EV_ERROR;
                continue;
            }
            return fail(ELMX_NOT_WELL_FORMED, "Unexpected <! outside the root element");
        }
        if (_root_done) return fail(ELMX_NOT_WELL_FORMED, "Content after the root element");
        if (c == '/') return fail(ELMX_BAD_END_TAG_SYNTAX, "End tag without a start tag");
        return start_tag();
    }
}

bool c_xml_reader::skip_comment() {
    const char *dd = find(_p + 4, _end, "--");
    if (!dd) {
        fail(ELMX_BAD_COMMENT, "Unterminated comment");
        return false;
    }
    if (dd + 2 >= _end || dd[2] != '>') {
        fail(ELMX_BAD_COMMENT, "-- inside a comment");
        return false;
    }
    _p = dd + 3;
    return true;
}

bool c_xml_reader::skip_pi() {
    const char *p = _p + 2;
    const char *name = p;
    if (p >= _end || !is(*p, chars::NAME_START)) {
        fail(ELMX_BADLY_FORMED, "Bad processing instruction");
        return false;
    }
    while (p < _end && is(*p, chars::NAME)) ++p;
    if (p - name == 3 && (name[0] | 0x20) == 'x' && (name[1] | 0x20) == 'm' &&
        (name[2] | 0x20) == 'l') {
        fail(ELMX_BAD_XML_DECL, "XML Decl not at the start of the document");
        return false;
    }
    const char *q = find(p, _end, "?>");
    if (!q) {
        fail(ELMX_UNEXPECTED_EOM, "Unterminated processing instruction");
        return false;
    }
    _p = q + 2;
    return true;
}

int c_xml_reader::start_tag() {
    const char *const tag = _p;
    const char *const end = _end;
    const char *p = tag + 1;
    if (p >= end || !is(*p, chars::NAME_START))
        return fail(ELMX_NOT_WELL_FORMED, "Bad element name");
    const char *name = p;
    uint8_t seen = 0;
    for (uint8_t k; p < end && ((k = chars::cls(*p)) & chars::NAME); ++p) seen |= k;
    const std::string_view qname(name, size_t(p - name));
    bool prefixed = seen & chars::COLON;

    _attrs.clear();
    _decl_first = uint32_t(_bindings.size());
    _decl_count = 0;
    const uint32_t mark = uint32_t(_bindings.size());
    const int32_t saved_default = _default_binding;
    bool empty;
    for (;;) {
        const char *ws = p;
        while (p < end && is_space(*p)) ++p;
        if (p >= end) {
            _p = p;
            return fail(ELMX_UNEXPECTED_EOM, "Premature end of file encountered");
        }
        const char c = *p;
        if (c == '>') {
            ++p;
            empty = false;
            break;
        }
        if (c == '/') {
            if (p + 1 < end && p[1] == '>') {
                p += 2;
                empty = true;
                break;
            }
            _p = p;
            return fail(ELMX_BAD_END_TAG, std::string(qname));
        }
        if (p == ws || !is(c, chars::NAME_START)) {
            _p = p;
            return fail(ELMX_BAD_END_TAG, std::string(qname));
        }
        const char *an = p;
        uint8_t aseen = 0;
        for (uint8_t k; p < end && ((k = chars::cls(*p)) & chars::NAME); ++p) aseen |= k;
        const std::string_view aname(an, size_t(p - an));
        while (p < end && is_space(*p)) ++p;
        if (p >= end || *p != '=') {
            _p = p;
            return fail(ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, "@" + std::string(aname));
        }
        ++p;
        while (p < end && is_space(*p)) ++p;
        if (p >= end || (*p != '"' && *p != '\'')) {
            _p = p;
            return fail(ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, "@" + std::string(aname));
        }
        const char q = *p++;
        const char *v = p;
        bool plain = true;
        for (;;) {
            while (p < end && !is(*p, chars::ATTR_STOP)) ++p;
            if (p >= end) {
                _p = p;
                return fail(ELMX_UNEXPECTED_EOM, "Premature end of file encountered");
            }
            const char d = *p;
            if (d == q) break;
            if (d == '<') {
                _p = p;
                return fail(ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, "@" + std::string(aname));
            }
            if (d != '"' && d != '\'') plain = false;
            ++p;
        }
        const std::string_view value(v, size_t(p - v));
        ++p;

        if (aname.size() >= 5 && std::memcmp(aname.data(), "xmlns", 5) == 0 &&
            (aname.size() == 5 || aname[5] == ':')) {
            _p = p;
            const std::string_view prefix =
                aname.size() == 5 ? std::string_view() : aname.substr(6);
            for (size_t i = mark; i < _bindings.size(); ++i)
                if (_bindings[i].prefix == prefix)
                    return fail(ELMX_ATTRIBUTE_ALREADY_READ, "@" + std::string(aname));
            std::string_view uri = value;
            if (!plain) {
                _decoded_uris.push_back(std::make_unique<std::string>());
                if (!decode(value, *_decoded_uris.back(), true)) return EV_ERROR;
                uri = *_decoded_uris.back();
            }
            if (prefix == "xmlns" || (prefix == "xml") != (uri == k_uri_xml) ||
                (!prefix.empty() && uri.empty()))
                return fail(ELMX_NOT_WELL_FORMED,
                            "Bad namespace declaration " + std::string(aname));
            if (_bindings.size() >= _limits.max_namespaces)
                return fail(ELMX_NOT_WELL_FORMED, "Too many namespace declarations");
            const int id = ns_of_uri(uri);
            if (id < 0) return fail(ELMX_NOT_WELL_FORMED, "Too many namespaces");
            if (prefix.empty()) _default_binding = int32_t(_bindings.size());
            _bindings.push_back({prefix, uri, id});
            ++_decl_count;
            continue;
        }
        for (const s_attribute &a : _attrs)
            if (chars::same(a.qname.data(), a.qname.size(), aname.data(), aname.size())) {
                _p = p;
                return fail(ELMX_ATTRIBUTE_ALREADY_READ, "@" + std::string(aname));
            }
        if (_attrs.size() >= _limits.max_attributes) {
            _p = p;
            return fail(ELMX_NOT_WELL_FORMED, "Too many attributes on " + std::string(qname));
        }
        s_attribute &a = _attrs.emplace_back();
        a.qname = aname;
        a.local = aname;
        a.raw_value = value;
        a.plain = plain;
        if (aseen & chars::COLON) {
            a.ns = -1; // resolved once the tag's own declarations are known
            prefixed = true;
        }
    }
    _p = p;
    if (_frames.size() >= _limits.max_depth)
        return fail(ELMX_NOT_WELL_FORMED,
                    "Elements nested deeper than " + std::to_string(_limits.max_depth));
    std::string_view local = qname;
    int ns = _default_binding >= 0 ? _bindings[size_t(_default_binding)].id : NS_NONE;
    if (prefixed) { // copies, so the fast path's values stay in registers
        std::string_view l = local;
        int n = ns;
        if (!resolve_names(qname, l, n)) return EV_ERROR;
        local = l;
        ns = n;
    }
    s_frame &f = _frames.emplace_back();
    f.qname = qname;
    f.local = local;
    f.ns = ns;
    f.binding_mark = mark;
    f.saved_default = saved_default;
    _local = local;
    _ns = ns;
    _root_seen = true;
    _tag_start = tag;
    _qname = qname;
    _pending_end = empty;
    return _event = EV_START;
}

// Resolves the prefixes of a tag that has some; `local` and `ns` come in
// as for an unprefixed element name.
bool c_xml_reader::resolve_names(std::string_view qname, std::string_view &local, int &ns) {
    const size_t colon = qname.find(':');
    int binding;
    if (colon != std::string_view::npos) {
        local = qname.substr(colon + 1);
        ns = lookup_prefix(qname.substr(0, colon), binding);
        if (ns < 0 || colon == 0 || local.empty() || local.find(':') != std::string_view::npos) {
            fail(ELMX_NOT_WELL_FORMED, "Undeclared namespace prefix in " + std::string(qname));
            return false;
        }
    }
    for (s_attribute &a : _attrs) {
        if (a.ns != -1) continue;
        const size_t c = a.qname.find(':');
        a.local = a.qname.substr(c + 1);
        a.ns = lookup_prefix(a.qname.substr(0, c), binding);
        if (a.ns < 0 || c == 0 || a.local.empty()) {
            fail(ELMX_NOT_WELL_FORMED, "Undeclared namespace prefix in @" + std::string(a.qname));
            return false;
        }
    }
    return true;
}

int c_xml_reader::end_tag() {
    const char *p = _p + 2;
    const char *const end = _end;
    if (_frames.empty()) return fail(ELMX_BAD_END_TAG_SYNTAX, "End tag without a start tag");
    {
        // The usual case: the open element's name, then ">".
        const s_frame &f = _frames.back();
        const size_t n = f.qname.size();
        if (size_t(end - p) > n && p[n] == '>' && chars::same(p, n, f.qname.data(), n)) {
            _p = p + n + 1;
            return close_element();
        }
    }
    if (p >= end || !is(*p, chars::NAME_START))
        return fail(ELMX_BAD_END_TAG_SYNTAX, "Bad end tag name");
    const char *name = p++;
    while (p < end && is(*p, chars::NAME)) ++p;
    const std::string_view qname(name, size_t(p - name));
    while (p < end && is_space(*p)) ++p;
    if (p >= end) return fail(ELMX_UNEXPECTED_EOM, "Premature end of file encountered");
    if (*p != '>') return fail(ELMX_BAD_END_TAG_SYNTAX, "</" + std::string(qname));
    const s_frame &f = _frames.back();
    if (!chars::same(f.qname.data(), f.qname.size(), qname.data(), qname.size()))
        return fail(ELMX_BAD_END_OF_ELEMENT,
                    "</" + std::string(qname) + "> closes <" + std::string(f.qname) + ">");
    _p = p + 1;
    return close_element();
}

// Reports the end of the open element: its names come back, its namespace
// bindings go, and the frame is dropped.
int c_xml_reader::close_element() {
    const s_frame &f = _frames.back();
    _qname = f.qname;
    _local = f.local;
    _ns = f.ns;
    _bindings.resize(f.binding_mark);
    _default_binding = f.saved_default;
    _frames.pop_back();
    _attrs.clear();
    if (_frames.empty()) _root_done = true;
    return _event = EV_END;
}

int c_xml_reader::text_run() {
    const char *const start = _p;
    const char *const end = _end;
    const char *p = start;
    bool plain = true;
    for (;;) {
        while (p < end && !is(*p, chars::TEXT_STOP)) ++p;
        if (p >= end) {
            _p = p;
            return fail(ELMX_UNEXPECTED_EOM, "Premature end of file encountered");
        }
        const char c = *p;
        if (c == '<') {
            if (starts(p, end, "<!--", 4)) {
                _p = p;
                if (!skip_comment()) return EV_ERROR;
                p = _p;
            } else if (starts(p, end, "<![CDATA[", 9)) {
                const char *q = find(p + 9, end, "]]>");
                if (!q) {
                    _p = p;
                    return fail(ELMX_UNEXPECTED_EOM, "Unterminated CDATA section");
                }
                p = q + 3;
            } else if (p + 1 < end && p[1] == '?') {
                _p = p;
                if (!skip_pi()) return EV_ERROR;
                p = _p;
            } else {
                break;
            }
            plain = false;
            continue;
        }
        if (c == ']') {
            if (end - p >= 3 && p[1] == ']' && p[2] == '>') {
                _p = p;
                return fail(ELMX_NOT_WELL_FORMED, "]]> in text");
            }
            ++p;
            continue;
        }
        plain = false;
        ++p;
    }
    _p = p;
    const std::string_view raw(start, size_t(p - start));
    if (plain) {
        _text = raw;
    } else {
        _text_buf.clear();
        if (!decode(raw, _text_buf, false)) return EV_ERROR;
        _text = _text_buf;
        if (_text.empty()) return next();
    }
    return _event = EV_TEXT;
}

bool c_xml_reader::decode(std::string_view raw, std::string &out, bool attribute) {
    const char *p = raw.data();
    const char *const end = p + raw.size();
    while (p < end) {
        const char c = *p;
        if (c == '&') {
            ++p;
            if (!decode_reference(p, end, out, attribute, 0)) return false;
            continue;
        }
        if (c == '\r') {
            out += attribute ? ' ' : '\n';
            ++p;
            if (p < end && *p == '\n') ++p;
            continue;
        }
        if (attribute && (c == '\t' || c == '\n')) {
            out += ' ';
            ++p;
            continue;
        }
        if (c == '<') {
            // Only in text, already checked by the scan: a comment, a PI or CDATA.
            if (p[1] == '?') {
                p = find(p, end, "?>") + 2;
            } else if (p[2] == '-') {
                p = find(p + 4, end, "-->") + 3;
            } else {
                const char *q = find(p + 9, end, "]]>");
                for (const char *s = p + 9; s < q; ++s) {
                    if (*s == '\r') {
                        out += '\n';
                        if (s + 1 < q && s[1] == '\n') ++s;
                    } else {
                        out += *s;
                    }
                }
                p = q + 3;
            }
            continue;
        }
        const char *r = p;
        while (p < end && *p != '&' && *p != '\r' && *p != '<' &&
               !(attribute && (*p == '\t' || *p == '\n')))
            ++p;
        out.append(r, size_t(p - r));
    }
    return true;
}

} // namespace lmx
