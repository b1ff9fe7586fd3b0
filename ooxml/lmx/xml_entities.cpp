// The document type's internal subset and the expansion of references:
// character references, the five predefined entities and internal general
// entities, under a budget of expanded characters and a nesting bound.
#include <cstring>

#include "ooxml/lmx/xml_chars.h"
#include "ooxml/lmx/xml_reader.h"

namespace lmx {

using chars::is;
using chars::is_space;

namespace {

struct s_predefined {
    const char *name;
    char ch;
};
const s_predefined k_predefined[] = {
    {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}};

} // namespace

size_t read_plain_text(std::string_view in, std::string &out) {
    out.clear();
    const size_t end = in.find('<');
    if (end == std::string_view::npos || valid_utf8_prefix(in.substr(0, end)) != end)
        return std::string_view::npos;
    size_t run = 0;
    for (size_t i = 0; i < end; ++i) {
        const unsigned char b = static_cast<unsigned char>(in[i]);
        if (b == '&') {
            out.append(in.data() + run, i - run);
            const size_t semi = in.find(';', i);
            if (semi >= end) return std::string_view::npos;
            const std::string_view name = in.substr(i + 1, semi - i - 1);
            const s_predefined *known = nullptr;
            for (const s_predefined &e : k_predefined)
                if (name == e.name) known = &e;
            if (!known) return std::string_view::npos;
            out += known->ch;
            i = semi;
            run = semi + 1;
        } else if ((b < 0x20 && b != '\t' && b != '\n') || b == ']') {
            return std::string_view::npos;
        }
    }
    out.append(in.data() + run, end - run);
    return end;
}

bool c_xml_reader::decode_reference(const char *&p, const char *end, std::string &out,
                                    bool attribute, size_t nesting) {
    if (p < end && *p == '#') {
        ++p;
        const bool hex = p < end && *p == 'x';
        if (hex) ++p;
        uint32_t cp = 0;
        const char *digits = p;
        for (; p < end; ++p) {
            const char c = *p;
            uint32_t d;
            if (c >= '0' && c <= '9')
                d = uint32_t(c - '0');
            else if (hex && c >= 'a' && c <= 'f')
                d = uint32_t(c - 'a' + 10);
            else if (hex && c >= 'A' && c <= 'F')
                d = uint32_t(c - 'A' + 10);
            else
                break;
            cp = cp * (hex ? 16 : 10) + d;
            if (cp > 0x10FFFF) cp = 0x110000; // stays out of range without overflowing
        }
        if (p == digits || p >= end || *p != ';') {
            fail(ELMX_BADLY_FORMED, "Bad character reference");
            return false;
        }
        ++p;
        const bool control = cp < 0x20 && cp != 9 && cp != 10 && cp != 13 && _decl.version != "1.1";
        if (cp == 0 || cp > 1048576 || (cp >= 0xD800 && cp <= 0xDFFF) || cp == 0xFFFE ||
            cp == 0xFFFF || control) {
            fail(ELMX_BADLY_FORMED, "Character reference out of range");
            return false;
        }
        if (cp == 8232 || cp == 133) cp = '\n';
        append_utf8(out, cp);
        return true;
    }
    const char *name = p;
    if (p < end && is(*p, chars::NAME_START))
        for (++p; p < end && is(*p, chars::NAME);) ++p;
    if (p == name || p >= end || *p != ';') {
        fail(ELMX_BADLY_FORMED, "Bad entity reference");
        return false;
    }
    const std::string_view n(name, size_t(p - name));
    ++p;
    for (const s_predefined &e : k_predefined)
        if (n == e.name) {
            out += e.ch;
            return true;
        }
    for (s_entity &e : _entities)
        if (!e.parameter && e.name == n) return expand_entity(e, out, attribute, nesting + 1);
    fail(ELMX_ENTITY_NOT_FOUND, "&" + std::string(n) + ";");
    return false;
}

bool c_xml_reader::expand_entity(s_entity &ent, std::string &out, bool attribute, size_t nesting) {
    if (ent.external) {
        fail(ELMX_EXTERNAL_ENTITY, "&" + std::string(ent.name) + ";");
        return false;
    }
    if (ent.active) {
        fail(ELMX_RECURSIVE_ENTITY, "&" + std::string(ent.name) + ";");
        return false;
    }
    if (nesting > _limits.max_entity_nesting) {
        fail(ELMX_UNEXPECTED_ENTITY, "Entities nested too deep at &" + std::string(ent.name) + ";");
        return false;
    }
    // Each expansion costs one unit of the budget beside what it produces,
    // so that entities expanding to nothing cannot multiply unbounded.
    if (++_entity_bytes > _limits.max_entity_bytes) {
        fail(ELMX_UNEXPECTED_ENTITY, "Entity expansion limit exceeded");
        return false;
    }
    ent.active = true;
    const char *p = ent.value.data();
    const char *const end = p + ent.value.size();
    while (p < end) {
        const size_t before = out.size();
        const char c = *p;
        if (c == '&') {
            ++p;
            if (!decode_reference(p, end, out, attribute, nesting)) return false;
        } else if (c == '<') {
            fail(ELMX_UNEXPECTED_ENTITY, "Markup inside entity &" + std::string(ent.name) + ";");
            return false;
        } else {
            const char *r = p;
            while (p < end && *p != '&' && *p != '<') ++p;
            const size_t at = out.size();
            out.append(r, size_t(p - r));
            if (attribute)
                for (size_t i = at; i < out.size(); ++i)
                    if (out[i] == '\t' || out[i] == '\n' || out[i] == '\r') out[i] = ' ';
        }
        _entity_bytes += out.size() - before;
        if (_entity_bytes > _limits.max_entity_bytes) {
            fail(ELMX_UNEXPECTED_ENTITY, "Entity expansion limit exceeded");
            return false;
        }
    }
    ent.active = false;
    return true;
}

namespace {

// A cursor over the internal subset, with the small steps of its grammar.
struct s_dtd_cursor {
    const char *p;
    const char *end;

    bool space() {
        const char *s = p;
        while (p < end && is_space(*p)) ++p;
        return p != s;
    }
    bool literal(const char *lit) {
        size_t n = std::strlen(lit);
        if (size_t(end - p) < n || std::memcmp(p, lit, n) != 0) return false;
        p += n;
        return true;
    }
    bool name(std::string_view &out) {
        const char *s = p;
        if (p >= end || !is(*p, chars::NAME_START)) return false;
        for (++p; p < end && is(*p, chars::NAME);) ++p;
        out = std::string_view(s, size_t(p - s));
        return true;
    }
    bool quoted(std::string_view &out) {
        if (p >= end || (*p != '"' && *p != '\'')) return false;
        const char q = *p++;
        const char *s = p;
        while (p < end && *p != q) ++p;
        if (p >= end) return false;
        out = std::string_view(s, size_t(p - s));
        ++p;
        return true;
    }
    // SYSTEM "uri" or PUBLIC "id" "uri"; true when one was read.
    bool external_id(bool &ok) {
        std::string_view a;
        ok = true;
        if (literal("SYSTEM")) {
            ok = space() && quoted(a);
            return true;
        }
        if (literal("PUBLIC")) {
            ok = space() && quoted(a) && space() && quoted(a);
            return true;
        }
        return false;
    }
};

} // namespace

bool c_xml_reader::parse_doctype() {
    s_dtd_cursor c{_p + 9, _end};
    std::string_view root;
    bool ok = c.space() && c.name(root);
    if (ok) {
        c.space();
        bool id_ok;
        if (c.external_id(id_ok)) {
            ok = id_ok;
            c.space();
        }
    }
    if (ok && c.p < c.end && *c.p == '[') {
        ++c.p;
        for (;;) {
            c.space();
            if (c.p >= c.end) {
                ok = false;
                break;
            }
            if (*c.p == ']') {
                ++c.p;
                break;
            }
            if (*c.p == '%') { // parameter entity reference: not expanded
                std::string_view n;
                ++c.p;
                if (!c.name(n) || !c.literal(";")) {
                    ok = false;
                    break;
                }
                continue;
            }
            _p = c.p;
            if (c.literal("<!--")) {
                if (!skip_comment()) return false;
            } else if (c.literal("<?")) {
                if (!skip_pi()) return false;
            } else if (c.literal("<!ENTITY")) {
                _p = c.p;
                if (!parse_entity_decl()) return false;
            } else if (c.literal("<!")) {
                _p = c.p;
                if (!skip_markup_decl()) return false;
            } else {
                ok = false;
                break;
            }
            c.p = _p;
        }
        c.space();
    }
    if (!ok || c.p >= c.end || *c.p != '>') {
        _p = c.p;
        fail(ELMX_BAD_DTD, "Badly formed DOCTYPE");
        return false;
    }
    _p = c.p + 1;
    return true;
}

bool c_xml_reader::parse_entity_decl() {
    s_dtd_cursor c{_p, _end};
    s_entity e;
    bool ok = c.space();
    if (ok && c.p < c.end && *c.p == '%') {
        ++c.p;
        e.parameter = true;
        ok = c.space();
    }
    ok = ok && c.name(e.name) && c.space();
    if (ok && !c.quoted(e.value)) {
        bool id_ok;
        if (!c.external_id(id_ok) || !id_ok) {
            ok = false;
        } else {
            e.external = true;
            const char *s = c.p;
            std::string_view n;
            if (c.space() && c.literal("NDATA"))
                ok = c.space() && c.name(n);
            else
                c.p = s;
        }
    }
    c.space();
    if (!ok || c.p >= c.end || *c.p != '>') {
        _p = c.p;
        fail(ELMX_BAD_DTD, "Badly formed ENTITY declaration");
        return false;
    }
    _p = c.p + 1;
    for (const s_entity &old : _entities)
        if (old.name == e.name && old.parameter == e.parameter)
            return true; // the first declaration binds
    if (_entities.size() >= _limits.max_entities) {
        fail(ELMX_BAD_DTD, "Too many entity declarations");
        return false;
    }
    _entities.push_back(e);
    return true;
}

bool c_xml_reader::skip_markup_decl() {
    const char *p = _p;
    while (p < _end && *p != '>') {
        if (*p == '"' || *p == '\'') {
            const char q = *p++;
            while (p < _end && *p != q) ++p;
            if (p >= _end) break;
        }
        ++p;
    }
    if (p >= _end) {
        _p = p;
        fail(ELMX_BAD_DTD, "Unterminated markup declaration");
        return false;
    }
    _p = p + 1;
    return true;
}

} // namespace lmx
