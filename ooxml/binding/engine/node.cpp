// Copies and the name-based accessors of a node, on which the typed facades stand.
#include <cstring>

#include "ooxml/binding/engine/node.h"

namespace binding {

c_child::c_child(const c_child &o) : kind(o.kind), decl(o.decl) {
    if (o.node) node = std::make_unique<c_node>(*o.node);
    if (o.raw) raw = std::make_unique<lmx::c_any_info>(*o.raw);
    if (o.hand) hand = o.hand->clone();
}

namespace {

int32_t find_attribute(const s_schema_set &set, const s_complex_type &t, std::string_view name) {
    for (uint32_t k = 0; k < t.attr_count; ++k)
        if (name == set.attrs[t.attr_first + k].name) return static_cast<int32_t>(k);
    return -1;
}

} // namespace

const std::string *c_node::attribute(std::string_view name) const {
    if (_type < 0) return nullptr;
    const int32_t k = find_attribute(*_set, complex(), name);
    for (const s_attribute_value &v : _attrs)
        if (static_cast<int32_t>(v.index) == k) return &v.value;
    return nullptr;
}

std::string_view c_node::attribute_or_default(std::string_view name) const {
    if (const std::string *v = attribute(name)) return *v;
    const int32_t k = _type < 0 ? -1 : find_attribute(*_set, complex(), name);
    const char *d = k < 0 ? nullptr : _set->attrs[complex().attr_first + k].default_value;
    return d ? d : "";
}

bool c_node::set_attribute(std::string_view name, std::string value) {
    const int32_t k = _type < 0 ? -1 : find_attribute(*_set, complex(), name);
    if (k < 0) return false;
    auto at = _attrs.begin();
    while (at != _attrs.end() && static_cast<int32_t>(at->index) < k) ++at;
    if (at != _attrs.end() && static_cast<int32_t>(at->index) == k)
        at->value = std::move(value);
    else
        _attrs.insert(at, {static_cast<uint32_t>(k), std::move(value)});
    return true;
}

bool c_node::unset_attribute(std::string_view name) {
    const int32_t k = _type < 0 ? -1 : find_attribute(*_set, complex(), name);
    for (auto at = _attrs.begin(); at != _attrs.end(); ++at)
        if (static_cast<int32_t>(at->index) == k) {
            _attrs.erase(at);
            return true;
        }
    return false;
}

int32_t c_node::decl_of(std::string_view name) const {
    if (_type < 0) return -1;
    const s_complex_type &t = complex();
    for (uint32_t k = 0; k < t.elem_count; ++k)
        if (name == _set->elems[_set->elem_refs[t.elem_first + k]].name)
            return static_cast<int32_t>(_set->elem_refs[t.elem_first + k]);
    return -1;
}

size_t c_node::count(std::string_view name) const {
    const int32_t d = decl_of(name);
    size_t n = 0;
    for (const c_child &c : _children) n += c.decl == d && c.kind == K_NODE;
    return n;
}

c_node *c_node::child(std::string_view name, size_t index) {
    const int32_t d = decl_of(name);
    for (c_child &c : _children)
        if (c.decl == d && c.kind == K_NODE && index-- == 0) return c.node.get();
    return nullptr;
}

const c_node *c_node::child(std::string_view name, size_t index) const {
    return const_cast<c_node *>(this)->child(name, index);
}

c_node *c_node::append(std::string_view name) {
    const int32_t d = decl_of(name);
    if (d < 0) return nullptr;
    // Declaration order within the type stands for schema order.
    auto rank = [&](int32_t decl) {
        const s_complex_type &t = complex();
        for (uint32_t k = 0; k < t.elem_count; ++k)
            if (static_cast<int32_t>(_set->elem_refs[t.elem_first + k]) == decl)
                return static_cast<int32_t>(k);
        return -1;
    };
    const int32_t mine = rank(d);
    size_t at = _children.size();
    while (at > 0 && _children[at - 1].decl >= 0 && rank(_children[at - 1].decl) > mine) --at;
    c_child c;
    c.decl = d;
    c.node = std::make_unique<c_node>(_set, _set->elems[d].complex, _set->elems[d].simple);
    return _children.insert(_children.begin() + static_cast<long>(at), std::move(c))->node.get();
}

void c_node::remove(std::string_view name, size_t index) {
    const int32_t d = decl_of(name);
    for (auto it = _children.begin(); it != _children.end(); ++it)
        if (it->decl == d && it->kind == K_NODE && index-- == 0) {
            _children.erase(it);
            return;
        }
}

} // namespace binding
