// Writing a node back: attributes in declaration order (absent ones, and so
// defaults, are not written), foreign attributes, then the children in
// their stored order, which reading and the facades keep in schema order.
#include "ooxml/binding/engine/context.h"

namespace binding {

int c_write_context::ns(int table_id) {
    if (table_id < lmx::NS_FIRST_TABLE) return table_id;
    const size_t k = static_cast<size_t>(table_id - lmx::NS_FIRST_TABLE);
    if (_ids.size() <= k) _ids.resize(k + 1, 0);
    if (!_ids[k]) _ids[k] = _w.add_namespace(_set.ns[k].prefix, _set.ns[k].uri);
    return _ids[k];
}

void c_write_context::declare(const std::string &prefix, const std::string &uri) {
    const int id = _w.add_namespace(prefix, uri);
    for (size_t k = 0; _set.ns[k].uri; ++k)
        if (uri == _set.ns[k].uri) {
            if (_ids.size() <= k) _ids.resize(k + 1, 0);
            if (!_ids[k]) _ids[k] = id;
        }
}

void c_write_context::write_foreign(const std::vector<s_foreign_attribute> &attrs) {
    for (const s_foreign_attribute &a : attrs)
        _w.attribute(a.uri == lmx::k_uri_xml ? lmx::NS_XML : _w.add_namespace(a.prefix, a.uri),
                     a.local, a.value);
}

void c_write_context::write_element(const c_node &node, int ns_id, std::string_view name) {
    _w.start_element(ns(ns_id), name);
    if (node.type() >= 0) {
        const s_complex_type &t = node.complex();
        for (const s_attribute_value &v : node._attrs) {
            const s_attribute_decl &d = _set.attrs[t.attr_first + v.index];
            _w.attribute(ns(d.ns), d.name, v.value);
        }
    }
    write_foreign(node._foreign);
    if (!node._text.empty()) _w.text(node._text);
    for (const c_child &c : node._children) write_child(c);
    _w.end_element();
}

void c_write_context::write_child(const c_child &c) {
    switch (c.kind) {
    case K_NODE: {
        const s_element_decl &d = _set.elems[c.decl];
        write_element(*c.node, d.ns, d.name);
        break;
    }
    case K_HAND: {
        const s_element_decl &d = _set.elems[c.decl];
        c.hand->marshal(*this, d.ns, d.name);
        break;
    }
    case K_TEXT: _w.text(c.node->_text); break;
    case K_RAW:
    case K_ANY: _w.write_any_info(*c.raw); break;
    }
}

} // namespace binding
