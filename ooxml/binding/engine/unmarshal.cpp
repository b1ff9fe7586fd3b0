// Reading an element through the tables: attributes checked against their
// simple types, children bound by name, kept raw, skipped or refused, then
// their order checked against the content model.
#include <cstring>

#include "ooxml/binding/engine/context.h"

namespace binding {

using lmx::elmx_error;

namespace {

std::string_view prefix_of(std::string_view qname) {
    const size_t c = qname.find(':');
    return c == std::string_view::npos ? std::string_view() : qname.substr(0, c);
}

bool is_extension_list(const s_schema_set &set, const s_element_decl &e) {
    return e.complex >= 0 && std::strcmp(set.complex[e.complex].name, "CT_ExtensionList") == 0;
}

bool has_any_slot(const s_schema_set &set, int32_t p) {
    if (p < 0) return false;
    const s_particle &q = set.particles[p];
    if (q.kind == P_ANY) return true;
    if (q.kind == P_ELEMENT) return false;
    for (int32_t i = 0; i < q.b; ++i)
        if (has_any_slot(set, set.kids[q.a + i])) return true;
    return false;
}

} // namespace

bool tolerated_value(std::string_view v, const lmx::s_validation_spec &spec, elmx_error e) {
    // An empty number (a producer's `s=""`): kept as its text.
    if (e == lmx::ELMX_VALUE_BAD_FORMAT && v.empty())
        return spec.type >= lmx::XSD_DECIMAL && spec.type <= lmx::XSD_DOUBLE;
    // A colour of three bytes where four (alpha first) are due: kept as its text.
    if (e == lmx::ELMX_LENGTH_TOO_SHORT)
        return spec.type == lmx::XSD_HEX_BINARY && spec.length == 4 && v.size() == 6;
    return false;
}

elmx_error c_read_context::fail(elmx_error code, std::string_view name, int line) {
    return _r.capture_error(code, name, __FILE__, line);
}

void c_read_context::note_scope() {
    for (size_t i = 0; i < _r.declaration_count(); ++i) {
        const lmx::s_namespace_decl d = _r.declaration(i);
        _decls.emplace_back(std::string(d.prefix), std::string(d.uri));
    }
    for (size_t i = 0; i < _r.attribute_count(); ++i) {
        const lmx::s_attribute &a = _r.attribute(i);
        if (a.ns < lmx::NS_FIRST_TABLE && a.local == "Ignorable" &&
            _r.namespace_uri(a.ns) == k_uri_mc) {
            std::string_view v;
            if (_r.attribute_value(a, v)) return;
            for (size_t at = 0; at < v.size();) {
                const size_t sp = v.find(' ', at);
                const std::string_view p =
                    v.substr(at, sp == std::string_view::npos ? v.npos : sp - at);
                for (size_t k = _decls.size(); k-- > 0;)
                    if (_decls[k].first == p) {
                        _ignorable.push_back(_decls[k].second);
                        break;
                    }
                at = sp == std::string_view::npos ? v.size() : sp + 1;
            }
        }
    }
}

bool c_read_context::keep_raw() const {
    if (_r.ns() >= lmx::NS_FIRST_TABLE) return false;
    const std::string_view uri = _r.namespace_uri(_r.ns());
    if (uri == k_uri_mc) return true;
    for (const std::string &u : _ignorable)
        if (u == uri) return true;
    return false;
}

bool c_read_context::keep_foreign(size_t i, std::vector<s_foreign_attribute> &out) {
    const lmx::s_attribute &a = _r.attribute(i);
    if (a.ns == lmx::NS_NONE) return false;
    std::string_view v;
    if (_r.attribute_value(a, v)) return false;
    out.push_back({std::string(prefix_of(a.qname)), std::string(_r.namespace_uri(a.ns)),
                   std::string(a.local), std::string(v)});
    return true;
}

elmx_error c_read_context::read_attribute(c_node &node, size_t i) {
    const lmx::s_attribute &a = _r.attribute(i);
    const s_complex_type &t = _set.complex[node._type];
    uint32_t k = 0;
    for (; k < t.attr_count; ++k) {
        const s_attribute_decl &d = _set.attrs[t.attr_first + k];
        if (d.ns == a.ns && a.local == d.name) break;
    }
    if (k == t.attr_count) {
        // Undeclared: another namespace's attribute is kept, an unqualified one dropped.
        _dropped += !keep_foreign(i, node._foreign);
        return lmx::ELMX_OK;
    }
    std::string_view v;
    if (elmx_error e = _r.attribute_value(a, v)) return e;
    const s_attribute_decl &d = _set.attrs[t.attr_first + k];
    if (elmx_error e = lmx::validate(v, *_set.simple[d.simple].spec))
        if (!_tolerant_values || !tolerated_value(v, *_set.simple[d.simple].spec, e))
            return fail(e, a.qname, __LINE__);
    // Attributes stay in declaration order.
    auto at = node._attrs.begin();
    while (at != node._attrs.end() && at->index < k) ++at;
    node._attrs.insert(at, {k, std::string(v)});
    return lmx::ELMX_OK;
}

elmx_error c_read_context::read_attributes(c_node &node) {
    if (node._type < 0) {
        for (size_t i = 0; i < _r.attribute_count(); ++i)
            _dropped += !keep_foreign(i, node._foreign);
        return lmx::ELMX_OK;
    }
    for (size_t i = 0; i < _r.attribute_count(); ++i)
        if (elmx_error e = read_attribute(node, i)) return e;
    const s_complex_type &t = _set.complex[node._type];
    for (uint32_t k = 0; k < t.attr_count; ++k) {
        const s_attribute_decl &d = _set.attrs[t.attr_first + k];
        if (!d.required) continue;
        bool found = false;
        for (const s_attribute_value &v : node._attrs) found |= v.index == k;
        if (!found) return fail(lmx::ELMX_REQUIRED_ATTRIBUTES_MISSING, d.name, __LINE__);
    }
    return lmx::ELMX_OK;
}

elmx_error c_read_context::read_element(c_node &node) {
    note_scope();
    if (elmx_error e = read_attributes(node)) return e;
    return read_content(node);
}

elmx_error c_read_context::read_child(const s_complex_type *t, bool simple, bool any_slot,
                                      c_child &c, bool &skipped) {
    if (keep_raw()) {
        c.kind = K_RAW;
    } else {
        int32_t decl = -1;
        if (t)
            for (uint32_t k = 0; k < t->elem_count; ++k) {
                const s_element_decl &d = _set.elems[_set.elem_refs[t->elem_first + k]];
                if (d.ns == _r.ns() && _r.local() == d.name) {
                    decl = static_cast<int32_t>(_set.elem_refs[t->elem_first + k]);
                    break;
                }
            }
        if (decl < 0 && any_slot) {
            c.kind = K_ANY;
        } else if (decl < 0) {
            if (simple || !_tolerant)
                return fail(lmx::ELMX_BAD_END_OF_ELEMENT, _r.qname(), __LINE__);
            ++_dropped;
            skipped = true;
            return _r.skip_element();
        } else {
            const s_element_decl &d = _set.elems[decl];
            c.decl = decl;
            if (is_extension_list(_set, d)) {
                c.kind = K_RAW;
            } else if (auto hand =
                           d.complex >= 0 ? make_hand_made(_set, d.complex, document) : nullptr) {
                c.kind = K_HAND;
                if (elmx_error e = hand->unmarshal(*this)) return e;
                c.hand = std::move(hand);
            } else {
                c.node = std::make_unique<c_node>(&_set, d.complex, d.simple);
                if (elmx_error e = read_element(*c.node)) return e;
            }
        }
    }
    if (c.kind == K_RAW || c.kind == K_ANY) {
        c.raw = std::make_unique<lmx::c_any_info>();
        return _r.capture_element(*c.raw);
    }
    return lmx::ELMX_OK;
}

elmx_error c_read_context::read_child(c_node &parent, c_child &c, bool &skipped) {
    const s_complex_type &t = _set.complex[parent._type];
    return read_child(&t, false, has_any_slot(_set, t.particle), c, skipped);
}

elmx_error c_read_context::read_content(c_node &node) {
    const std::string name(_r.local());
    const s_complex_type *t = node._type >= 0 ? &_set.complex[node._type] : nullptr;
    const bool simple = !t || t->text >= 0;
    const bool mixed = t && (t->flags & F_MIXED);
    const bool any_slot = t && has_any_slot(_set, t->particle);
    bool had_text = false;
    for (;;) {
        const int ev = _r.next();
        if (ev == lmx::EV_ERROR) return _r.error();
        if (ev == lmx::EV_END) break;
        if (ev == lmx::EV_END_OF_INPUT) return fail(lmx::ELMX_UNEXPECTED_EOM, name, __LINE__);
        if (ev == lmx::EV_TEXT) {
            if (simple) {
                node._text.append(_r.text());
                had_text = true;
            } else if (mixed) {
                c_child c;
                c.kind = K_TEXT;
                c.node = std::make_unique<c_node>(&_set, -1, -1);
                c.node->_text = std::string(_r.text());
                node._children.push_back(std::move(c));
            } else if (!_r.text_is_space()) {
                return fail(lmx::ELMX_BAD_END_OF_ELEMENT, name, __LINE__);
            }
            continue;
        }
        // A start tag.
        c_child c;
        bool skipped = false;
        if (elmx_error e = read_child(t, simple, any_slot, c, skipped)) return e;
        if (skipped) continue;
        node._children.push_back(std::move(c));
    }
    if (simple) {
        const int32_t st = t ? t->text : node._simple;
        if (st >= 0) {
            const lmx::s_validation_spec &spec = *_set.simple[st].spec;
            if (!had_text && spec.type != lmx::XSD_STRING && spec.type != lmx::XSD_LIST)
                return fail(lmx::ELMX_UNEXPECTED_EMPTY_ELEMENT, name, __LINE__);
            if (elmx_error e = lmx::validate(node._text, spec)) return fail(e, name, __LINE__);
        }
        return lmx::ELMX_OK;
    }
    std::string bad;
    if (elmx_error e = check_content_model(node, bad))
        return fail(e, bad.empty() ? name : bad, __LINE__);
    return lmx::ELMX_OK;
}

} // namespace binding
