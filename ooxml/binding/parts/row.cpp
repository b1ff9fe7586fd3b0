// Reading and writing the hand-made row.  Attributes r (in its plain form)
// and spans go straight into the fields, cells into the array; anything
// else goes through the generic engine into the rest node.
#include <cstring>

#include "ooxml/binding/parts/row.h"

namespace binding {

namespace {

// The element declaration of `name` among the children of complex type `type`.
int32_t child_decl(const s_schema_set &set, uint32_t type, const char *name) {
    const s_complex_type &t = set.complex[type];
    for (uint32_t k = 0; k < t.elem_count; ++k)
        if (std::strcmp(set.elems[set.elem_refs[t.elem_first + k]].name, name) == 0)
            return static_cast<int32_t>(set.elem_refs[t.elem_first + k]);
    return -1;
}

// The place of attribute `name` among the declared attributes of `type`.
uint32_t attribute_rank(const s_schema_set &set, uint32_t type, const char *name) {
    const s_complex_type &t = set.complex[type];
    for (uint32_t k = 0; k < t.attr_count; ++k)
        if (std::strcmp(set.attrs[t.attr_first + k].name, name) == 0) return k;
    return t.attr_count;
}

bool parse_u32(std::string_view s, uint32_t &v) {
    if (s.empty() || s.size() > 10 || (s[0] == '0' && s.size() > 1)) return false;
    uint64_t n = 0;
    for (char c : s) {
        if (c < '0' || c > '9') return false;
        n = n * 10 + static_cast<uint64_t>(c - '0');
    }
    if (n > 0xFFFFFFFFu) return false;
    v = static_cast<uint32_t>(n);
    return true;
}

} // namespace

c_row_data::c_row_data(const c_row_data &o)
    : c_hand_made(), _r(o._r), _type(o._type), _flags(o._flags), _spans(o._spans), _cells(o._cells),
      _rest(o._rest ? std::make_unique<s_rest>(*o._rest) : nullptr) {}

c_row_data::s_rest &c_row_data::make_rest() {
    if (!_rest) _rest.reset(new s_rest{c_node(&set(), _type, -1), {}});
    return *_rest;
}

void c_row_data::set_r(uint32_t r) {
    unset_r();
    _r = r;
    _flags |= HAS_R;
}

void c_row_data::unset_r() {
    _r = 0;
    _flags &= static_cast<uint8_t>(~HAS_R);
    if (_rest) _rest->node.unset_attribute("r");
}

const std::string *c_row_data::attribute(std::string_view name) const {
    if (name == "spans") return _flags & HAS_SPANS ? &_spans : nullptr;
    return _rest ? _rest->node.attribute(name) : nullptr;
}

std::string_view c_row_data::attribute_or_default(std::string_view name) const {
    if (const std::string *v = attribute(name)) return *v;
    const s_schema_set &st = set();
    const s_complex_type &t = st.complex[_type];
    for (uint32_t k = 0; k < t.attr_count; ++k)
        if (name == st.attrs[t.attr_first + k].name) {
            const char *d = st.attrs[t.attr_first + k].default_value;
            return d ? d : "";
        }
    return "";
}

bool c_row_data::set_attribute(std::string_view name, std::string value) {
    if (name == "spans") {
        _spans = std::move(value);
        _flags |= HAS_SPANS;
        return true;
    }
    uint32_t r = 0;
    if (name == "r" && parse_u32(value, r)) {
        set_r(r);
        return true;
    }
    return make_rest().node.set_attribute(name, std::move(value));
}

bool c_row_data::unset_attribute(std::string_view name) {
    if (name == "spans") {
        const bool had = _flags & HAS_SPANS;
        _spans.clear();
        _flags &= static_cast<uint8_t>(~HAS_SPANS);
        return had;
    }
    if (name == "r") {
        const bool had = isset_r() || (_rest && _rest->node.attribute("r"));
        unset_r();
        return had;
    }
    return _rest && _rest->node.unset_attribute(name);
}

c_cell &c_row_data::insert_cell(size_t at) {
    const s_schema_set &st = set();
    const int32_t d = child_decl(st, _type, "c");
    if (_rest)
        for (size_t &n : _rest->cells_before) n += n > at;
    return *_cells.emplace(_cells.begin() + static_cast<long>(at), st, st.elems[d].complex);
}

void c_row_data::erase_cell(size_t at) {
    _cells.erase(_cells.begin() + static_cast<long>(at));
    if (_rest)
        for (size_t &n : _rest->cells_before) n -= n > at;
}

void c_row_data::read_plain_cells(lmx::c_xml_reader &r, int32_t cell_type) {
    const std::string_view in = r.raw_rest();
    // Rows of a sheet mostly hold as many cells as the row before: the
    // array gets that room at once, and the cells are read into it.
    thread_local size_t last_count = 0;
    if (_cells.empty()) _cells.reserve(last_count);
    std::pmr::memory_resource *memory = _cells.get_allocator().resource();
    size_t p = 0;
    for (;;) {
        size_t q = p;
        while (q < in.size() && (in[q] == ' ' || in[q] == '\n' || in[q] == '\r' || in[q] == '\t'))
            ++q;
        if (q + 1 >= in.size() || in[q] != '<' || in[q + 1] != 'c') break;
        c_cell &cell = _cells.emplace_back(set(), cell_type);
        const size_t n = cell.read_plain(in.substr(q), memory);
        if (!n) {
            _cells.pop_back();
            break;
        }
        p = q + n;
    }
    last_count = _cells.size();
    r.raw_advance(p);
}

lmx::elmx_error c_row_data::unmarshal(c_read_context &ctx) {
    lmx::c_xml_reader &r = ctx.reader();
    const s_schema_set &st = set();
    ctx.note_scope();
    for (size_t i = 0; i < r.attribute_count(); ++i) {
        const lmx::s_attribute &a = r.attribute(i);
        if (a.ns == lmx::NS_NONE && (a.local == "r" || a.local == "spans")) {
            std::string_view v;
            if (lmx::elmx_error e = r.attribute_value(a, v)) return e;
            if (a.local == "spans") {
                // A list of plain strings: any text is valid.
                _spans.assign(v);
                _flags |= HAS_SPANS;
                continue;
            }
            if (parse_u32(v, _r)) {
                _flags |= HAS_R;
                continue;
            }
        }
        if (lmx::elmx_error e = ctx.read_attribute(make_rest().node, i)) return e;
    }
    // The content model: cells, then at most one extension list.
    const int32_t cell_decl = child_decl(st, _type, "c");
    const s_element_decl &cd = st.elems[cell_decl];
    // Plain cells are read straight from the bytes when an unprefixed "c"
    // is the cell element here.
    const bool plain = r.default_ns() == cd.ns;
    bool ended = false; // the extension list was read
    for (;;) {
        if (plain && !ended) read_plain_cells(r, cd.complex);
        const int ev = r.next();
        if (ev == lmx::EV_END) break;
        if (ev == lmx::EV_ERROR) return r.error();
        if (ev == lmx::EV_END_OF_INPUT) return ctx.fail(lmx::ELMX_UNEXPECTED_EOM, "row", __LINE__);
        if (ev == lmx::EV_TEXT) {
            if (!r.text_is_space()) return ctx.fail(lmx::ELMX_BAD_END_OF_ELEMENT, "row", __LINE__);
            continue;
        }
        if (r.ns() == cd.ns && r.local() == cd.name) {
            if (ended) return ctx.fail(lmx::ELMX_BAD_END_OF_ELEMENT, "c", __LINE__);
            _cells.emplace_back(st, cd.complex);
            if (lmx::elmx_error e = _cells.back().unmarshal(ctx)) return e;
            continue;
        }
        c_child c;
        bool skipped = false;
        s_rest &rest = make_rest();
        if (lmx::elmx_error e = ctx.read_child(rest.node, c, skipped)) return e;
        if (skipped) continue;
        if (c.decl >= 0) {
            if (ended) return ctx.fail(lmx::ELMX_BAD_END_OF_ELEMENT, "extLst", __LINE__);
            ended = true;
        }
        rest.node._children.push_back(std::move(c));
        rest.cells_before.push_back(_cells.size());
    }
    _cells.shrink_to_fit();
    // Checked while the row's cells are still in the cache.
    bool in_order = true;
    for (size_t i = 0; i < _cells.size() && in_order; ++i)
        in_order = _cells[i].isset_r() && (i == 0 || _cells[i].col() > _cells[i - 1].col());
    if (in_order) _flags |= IN_ORDER;
    return lmx::ELMX_OK;
}

void c_row_data::marshal(c_write_context &ctx, int ns, std::string_view name) const {
    lmx::c_xml_writer &w = ctx.writer();
    const s_schema_set &st = set();
    const s_complex_type &t = st.complex[_type];
    w.start_element(ctx.ns(ns), name);
    // Declared order: r, spans, then the rest, then foreign ones.
    size_t next_rest = 0;
    auto flush_rest_before = [&](uint32_t rank) {
        for (; _rest && next_rest < _rest->node._attrs.size() &&
               _rest->node._attrs[next_rest].index < rank;
             ++next_rest) {
            const s_attribute_value &v = _rest->node._attrs[next_rest];
            const s_attribute_decl &d = st.attrs[t.attr_first + v.index];
            w.attribute(ctx.ns(d.ns), d.name, v.value);
        }
    };
    if (_rest) flush_rest_before(attribute_rank(st, _type, "r"));
    if (_flags & HAS_R) w.attribute(lmx::NS_NONE, "r", static_cast<uint64_t>(_r));
    if (_rest) flush_rest_before(attribute_rank(st, _type, "spans"));
    if (_flags & HAS_SPANS) w.attribute(lmx::NS_NONE, "spans", _spans);
    flush_rest_before(t.attr_count);
    if (_rest) ctx.write_foreign(_rest->node._foreign);
    const int32_t cell_decl = child_decl(st, _type, "c");
    const s_element_decl &cd = st.elems[cell_decl];
    size_t k = 0;
    const size_t kept = _rest ? _rest->node._children.size() : 0;
    for (size_t i = 0; i < _cells.size(); ++i) {
        for (; k < kept && _rest->cells_before[k] <= i; ++k)
            ctx.write_child(_rest->node._children[k]);
        _cells[i].marshal(ctx, cd.ns, cd.name);
    }
    for (; k < kept; ++k) ctx.write_child(_rest->node._children[k]);
    w.end_element();
}

} // namespace binding
