// Reading and writing the hand-made cell.  The cell is read by the generic
// engine into a scratch node (so the schema's checks and tolerance rules are
// the same as for any element), then the common fields are moved out.
#include <cstring>

#include "ooxml/binding/parts/cell.h"

namespace binding {

namespace {

const char *const k_types[] = {"b", "d", "e", "inlineStr", "n", "s", "str"};
constexpr size_t k_type_count = sizeof k_types / sizeof *k_types;

// A plain unsigned decimal without leading zeros, as a writer prints it back.
bool parse_canonical_u32(std::string_view s, uint32_t &v) {
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

bool parse_cell_ref(std::string_view s, uint32_t &row, uint32_t &col) {
    size_t i = 0;
    uint32_t c = 0;
    while (i < s.size() && s[i] >= 'A' && s[i] <= 'Z' && i < 3)
        c = c * 26 + static_cast<uint32_t>(s[i++] - 'A' + 1);
    uint32_t r = 0;
    if (i == 0 || !parse_canonical_u32(s.substr(i), r) || r == 0 || r > 1048576 || c > 16384)
        return false;
    row = r - 1;
    col = c - 1;
    return true;
}

void append_cell_ref(std::string &out, uint32_t row, uint32_t col) {
    char buf[16];
    size_t n = 0;
    for (uint32_t c = col + 1; c > 0; c = (c - 1) / 26)
        buf[n++] = static_cast<char>('A' + (c - 1) % 26);
    while (n > 0) out += buf[--n];
    out += std::to_string(row + 1);
}

c_cell::c_cell(const c_cell &o)
    : c_hand_made(), _set(o._set), _type(o._type), _row(o._row), _col(o._col), _s(o._s),
      _flags(o._flags), _t(o._t), _v(o._v),
      _rest(o._rest ? std::make_unique<c_node>(*o._rest) : nullptr) {}

std::string_view c_cell::get_t() const { return _t ? k_types[_t - 1] : "n"; }

bool c_cell::set_t(std::string_view t) {
    for (size_t i = 0; i < k_type_count; ++i)
        if (t == k_types[i]) {
            _t = static_cast<uint8_t>(i + 1);
            return true;
        }
    return false;
}

c_node &c_cell::make_rest() {
    if (!_rest) _rest = std::make_unique<c_node>(_set, _type, -1);
    return *_rest;
}

lmx::elmx_error c_cell::unmarshal(c_read_context &ctx) {
    auto node = std::make_unique<c_node>(_set, _type, -1);
    if (lmx::elmx_error e = ctx.read_element(*node)) return e;
    // Attributes r, s, t in their plain forms move into the fields; any other form stays in the
    // node.
    for (auto it = node->_attrs.begin(); it != node->_attrs.end();) {
        const char *name = _set->attrs[node->complex().attr_first + it->index].name;
        bool moved = false;
        if (std::strcmp(name, "r") == 0) {
            moved = parse_cell_ref(it->value, _row, _col);
            _flags |= moved ? HAS_R : 0;
        } else if (std::strcmp(name, "s") == 0) {
            moved = parse_canonical_u32(it->value, _s);
            _flags |= moved ? HAS_S : 0;
        } else if (std::strcmp(name, "t") == 0) {
            moved = set_t(it->value);
        }
        it = moved ? node->_attrs.erase(it) : it + 1;
    }
    for (auto it = node->_children.begin(); it != node->_children.end(); ++it)
        if (it->kind == K_NODE && std::strcmp(_set->elems[it->decl].name, "v") == 0 &&
            it->node->_foreign.empty()) {
            _v = std::move(it->node->_text);
            _flags |= HAS_V;
            node->_children.erase(it);
            break;
        }
    if (!node->_attrs.empty() || !node->_foreign.empty() || !node->_children.empty())
        _rest = std::move(node);
    return lmx::ELMX_OK;
}

void c_cell::marshal(c_write_context &ctx, int ns, std::string_view name) const {
    lmx::c_xml_writer &w = ctx.writer();
    w.start_element(ctx.ns(ns), name);
    // Declared order: r, s, t, then the rest (cm, vm, ph), then foreign ones.
    const s_complex_type &t = _set->complex[_type];
    auto rank_of = [&](const char *attr) {
        for (uint32_t k = 0; k < t.attr_count; ++k)
            if (std::strcmp(_set->attrs[t.attr_first + k].name, attr) == 0) return k;
        return t.attr_count;
    };
    std::string ref;
    const uint32_t ranks[3] = {rank_of("r"), rank_of("s"), rank_of("t")};
    size_t next_rest = 0;
    auto flush_rest_before = [&](uint32_t rank) {
        for (; _rest && next_rest < _rest->_attrs.size() && _rest->_attrs[next_rest].index < rank;
             ++next_rest) {
            const s_attribute_decl &d = _set->attrs[t.attr_first + _rest->_attrs[next_rest].index];
            w.attribute(ctx.ns(d.ns), d.name, _rest->_attrs[next_rest].value);
        }
    };
    flush_rest_before(ranks[0]);
    if (_flags & HAS_R) {
        append_cell_ref(ref, _row, _col);
        w.attribute(lmx::NS_NONE, "r", ref);
    }
    flush_rest_before(ranks[1]);
    if (_flags & HAS_S) w.attribute(lmx::NS_NONE, "s", static_cast<uint64_t>(_s));
    flush_rest_before(ranks[2]);
    if (_t) w.attribute(lmx::NS_NONE, "t", std::string_view(k_types[_t - 1]));
    flush_rest_before(t.attr_count);
    if (_rest) ctx.write_foreign(_rest->_foreign);
    // Children: f before v; is and extLst after it.
    bool v_done = !(_flags & HAS_V);
    auto write_v = [&] {
        w.start_element(ctx.ns(ns), "v");
        w.text(_v);
        w.end_element();
        v_done = true;
    };
    if (_rest)
        for (const c_child &c : _rest->_children) {
            if (!v_done && c.decl >= 0 && std::strcmp(_set->elems[c.decl].name, "f") != 0)
                write_v();
            ctx.write_child(c);
        }
    if (!v_done) write_v();
    w.end_element();
}

} // namespace binding
