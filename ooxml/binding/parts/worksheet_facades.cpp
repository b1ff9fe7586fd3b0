// The rows of the sheet data: hand-made children of its node.
#include "ooxml/binding/parts/worksheet_facades.h"

#include <memory>

namespace binding {

size_t c_sheet_data::size_row() const {
    const int32_t d = _n->decl_of("row");
    size_t n = 0;
    for (const c_child &c : _n->_children) n += c.kind == K_HAND && c.decl == d;
    return n;
}

c_row c_sheet_data::get_row(size_t i) const {
    const int32_t d = _n->decl_of("row");
    for (c_child &c : _n->_children)
        if (c.kind == K_HAND && c.decl == d && i-- == 0)
            return c_row(static_cast<c_row_data *>(c.hand.get()));
    return c_row();
}

c_row c_sheet_data::append_row() {
    const int32_t d = _n->decl_of("row");
    c_child c;
    c.kind = K_HAND;
    c.decl = d;
    c.hand = std::make_unique<c_row_data>(*_n->set(), _n->set()->elems[d].complex);
    // Rows come before the sheet data's other elements (kept raw content).
    auto at = _n->_children.begin();
    while (at != _n->_children.end() && (at->kind == K_HAND || at->decl < 0)) ++at;
    return c_row(static_cast<c_row_data *>(_n->_children.insert(at, std::move(c))->hand.get()));
}

c_row c_sheet_data::insert_row(size_t i) {
    const int32_t d = _n->decl_of("row");
    auto at = _n->_children.begin();
    for (; at != _n->_children.end(); ++at)
        if (at->kind == K_HAND && at->decl == d && i-- == 0) break;
    if (at == _n->_children.end()) return append_row();
    c_child c;
    c.kind = K_HAND;
    c.decl = d;
    c.hand = std::make_unique<c_row_data>(*_n->set(), _n->set()->elems[d].complex);
    return c_row(static_cast<c_row_data *>(_n->_children.insert(at, std::move(c))->hand.get()));
}

void c_sheet_data::delete_row(size_t i) {
    const int32_t d = _n->decl_of("row");
    for (auto it = _n->_children.begin(); it != _n->_children.end(); ++it)
        if (it->kind == K_HAND && it->decl == d && i-- == 0) {
            _n->_children.erase(it);
            return;
        }
}

} // namespace binding
