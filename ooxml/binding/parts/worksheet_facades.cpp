// The cells of a row: hand-made children of the row's node.
#include "ooxml/binding/parts/worksheet_facades.h"

#include <memory>

namespace binding {

size_t c_row::size_c() const {
    size_t n = 0;
    for (const c_child &c : _n->_children) n += c.kind == K_HAND;
    return n;
}

c_cell &c_row::get_c(size_t i) {
    for (c_child &c : _n->_children)
        if (c.kind == K_HAND && i-- == 0) return static_cast<c_cell &>(*c.hand);
    while (i-- > 0) append_c();
    return append_c();
}

c_cell &c_row::append_c() {
    const int32_t d = _n->decl_of("c");
    c_child c;
    c.kind = K_HAND;
    c.decl = d;
    c.hand = std::make_unique<c_cell>(*_n->set(), _n->set()->elems[d].complex);
    // Cells come before the row's other elements (its extension list).
    auto at = _n->_children.begin();
    while (at != _n->_children.end() && (at->kind == K_HAND || at->decl < 0)) ++at;
    return static_cast<c_cell &>(*_n->_children.insert(at, std::move(c))->hand);
}

void c_row::delete_c(size_t i) {
    for (auto it = _n->_children.begin(); it != _n->_children.end(); ++it)
        if (it->kind == K_HAND && i-- == 0) {
            _n->_children.erase(it);
            return;
        }
}

} // namespace binding
