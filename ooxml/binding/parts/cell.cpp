// Reading and writing the hand-made cell.  Attributes r, s, t in their plain
// forms and a bare v go straight into the fields; any other attribute or
// form, and every other child, goes through the generic engine into the
// rest node, so the schema's checks and tolerance rules are the same as for
// any element.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <stdexcept>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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
    const auto res = std::to_chars(buf, buf + sizeof buf, row + 1);
    out.append(buf, res.ptr);
}

namespace {

// Whether `in` holds `what` at `at`; the few bytes are compared inline.
template <size_t N> bool starts(std::string_view in, size_t at, const char (&what)[N]) {
    if (in.size() < at + N - 1) return false;
    for (size_t i = 0; i + 1 < N; ++i)
        if (in[at + i] != what[i]) return false;
    return true;
}

// Printable ASCII that needs no decoding: no markup, references or "]]>".
struct s_plain_bytes {
    bool plain[256] = {};
    s_plain_bytes() {
        for (int c = 0x20; c < 0x7F; ++c) plain[c] = c != '<' && c != '&' && c != ']';
    }
};
const s_plain_bytes k_plain;
bool plain_char(char c) { return k_plain.plain[static_cast<unsigned char>(c)]; }

// The count of plain bytes at the start of `s`: sixteen at a time where
// the processor compares them at once, then byte by byte.
size_t plain_run(std::string_view s) {
    size_t i = 0;
#if defined(__SSE2__)
    // A signed compare with 0x20 takes the controls and the bytes from 0x80.
    const __m128i low = _mm_set1_epi8(0x20), lt = _mm_set1_epi8('<'), amp = _mm_set1_epi8('&'),
                  bracket = _mm_set1_epi8(']'), del = _mm_set1_epi8(0x7F);
    for (; i + 16 <= s.size(); i += 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i *>(s.data() + i));
        const __m128i other = _mm_or_si128(
            _mm_or_si128(_mm_cmplt_epi8(v, low), _mm_cmpeq_epi8(v, lt)),
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, amp), _mm_cmpeq_epi8(v, bracket)),
                         _mm_cmpeq_epi8(v, del)));
        if (const int m = _mm_movemask_epi8(other)) return i + size_t(__builtin_ctz(unsigned(m)));
    }
#endif
    while (i < s.size() && plain_char(s[i])) ++i;
    return i;
}

// The text of a plain element at `at` up to its end tag `end`, decoded
// into `out`; the position after the end tag, or 0 for anything else.
template <size_t N>
size_t plain_text(std::string_view in, size_t at, const char (&end)[N], std::string &out) {
    const size_t n = lmx::read_plain_text(in.substr(at), out);
    if (n == std::string_view::npos || !starts(in, at + n, end)) return 0;
    return at + n + N - 1;
}

// The declaration of the element "f" of the cell type, or -1.
int32_t find_formula_decl(const s_schema_set &set) {
    for (uint32_t i = 0; i < set.complex_count; ++i) {
        if (std::strcmp(set.complex[i].name, "CT_Cell") != 0) continue;
        const s_complex_type &t = set.complex[i];
        for (uint32_t k = 0; k < t.elem_count; ++k)
            if (std::strcmp(set.elems[set.elem_refs[t.elem_first + k]].name, "f") == 0)
                return static_cast<int32_t>(set.elem_refs[t.elem_first + k]);
    }
    return -1;
}

int32_t formula_decl(const s_schema_set &set) {
    static const int32_t found[2] = {find_formula_decl(k_transitional),
                                     find_formula_decl(k_strict)};
    return found[&set == &k_strict];
}

} // namespace

const c_node *c_cell::plain_formula() const {
    const c_node *r = rest();
    if (!r || !r->_attrs.empty() || !r->_foreign.empty() || r->_children.size() != 1)
        return nullptr;
    const c_child &c = r->_children[0];
    if (c.kind != K_NODE || c.decl != formula_decl(set()) || !c.node) return nullptr;
    const c_node &f = *c.node;
    return f._attrs.empty() && f._foreign.empty() && f._children.empty() ? &f : nullptr;
}

size_t c_cell::read_plain(std::string_view in, std::pmr::memory_resource *memory) {
    if (!starts(in, 0, "<c")) return 0;
    size_t p = 2;
    uint8_t seen = 0; // 1 r, 2 s, 4 t
    // The address first, the common case, is taken without the general
    // attribute loop below, which reads any other form.
    if (starts(in, 2, " r=\"")) {
        const size_t end = in.substr(0, 20).find('"', 6);
        if (end != std::string_view::npos && parse_cell_ref(in.substr(6, end - 6), _row, _col)) {
            seen = 1;
            p = end + 1;
        }
    }
    for (;;) {
        if (p >= in.size()) return 0;
        if (in[p] == '>') {
            ++p;
            break;
        }
        if (in[p] == '/') {
            if (!starts(in, p, "/>")) return 0;
            if (seen & 1) _flags |= HAS_R;
            if (seen & 2) _flags |= HAS_S;
            return p + 2;
        }
        if (in[p] != ' ') return 0;
        while (p < in.size() && in[p] == ' ') ++p;
        if (p + 3 > in.size() || in[p] == '>' || in[p] == '/') continue;
        const char name = in[p];
        if (in[p + 1] != '=' || in[p + 2] != '"') return 0;
        const size_t v = p + 3;
        size_t q = v;
        while (q < in.size() && in[q] != '"')
            if (!plain_char(in[q++])) return 0;
        if (q >= in.size()) return 0;
        const std::string_view value = in.substr(v, q - v);
        const uint8_t bit = name == 'r' ? 1 : name == 's' ? 2 : name == 't' ? 4 : 0;
        if (!bit || (seen & bit)) return 0;
        seen |= bit;
        if (bit == 1 && !parse_cell_ref(value, _row, _col)) return 0;
        if (bit == 2 && !parse_canonical_u32(value, _s)) return 0;
        if (bit == 4 && !set_t(value)) return 0;
        p = q + 1;
    }
    if (seen & 1) _flags |= HAS_R;
    if (seen & 2) _flags |= HAS_S;
    // The text of <f> or <v> at p: printable ASCII (a number, an index, most
    // formulas) is taken as it stands, anything else decoded into `text`.
    thread_local std::string text;
    auto child = [&](const char(&end)[5], std::string_view &out) {
        const size_t q = p + 3 + plain_run(in.substr(std::min(p + 3, in.size())));
        if (starts(in, q, end)) {
            out = in.substr(p + 3, q - p - 3);
            p = q + 4;
            return true;
        }
        if (!(p = plain_text(in, p + 3, end, text))) return false;
        out = text;
        return true;
    };
    std::string_view found;
    if (starts(in, p, "<f>")) {
        if (!child("</f>", found)) return 0;
        set_formula_text(found, memory);
    }
    if (starts(in, p, "<v>")) {
        if (!child("</v>", found)) return 0;
        _v.assign(found);
        _flags |= HAS_V;
    }
    return starts(in, p, "</c>") ? p + 4 : 0;
}

c_cell::c_cell(const c_cell &o)
    : _row(o._row), _col(o._col), _s(o._s), _type(o._type), _flags(o._flags), _t(o._t), _v(o._v) {
    _flags &= static_cast<uint8_t>(~POOLED);
    if (!o._more) return;
    _more = new_more(nullptr, o._more->size);
    std::memcpy(_more->text(), o._more->text(), o._more->size);
    _more->size = o._more->size;
    if (o._more->rest) _more->rest = std::make_unique<c_node>(*o._more->rest);
}

c_cell &c_cell::operator=(c_cell &&o) noexcept {
    if (this == &o) return *this;
    free_more(_more);
    _row = o._row;
    _col = o._col;
    _s = o._s;
    _type = o._type;
    _flags = o._flags;
    _t = o._t;
    _v = std::move(o._v);
    _more = o._more;
    o._more = nullptr;
    o._flags &= static_cast<uint8_t>(~k_more_flags);
    return *this;
}

void c_cell::adopt(s_more *more) {
    if (more != _more) free_more(_more);
    _more = more;
    static std::pmr::memory_resource *const heap = std::pmr::new_delete_resource();
    const bool pooled = more && more->memory != heap;
    const bool rest = more && more->rest;
    _flags = static_cast<uint8_t>((_flags & ~(POOLED | HAS_REST)) | (pooled ? POOLED : 0) |
                                  (rest ? HAS_REST : 0));
}

c_cell::s_more *c_cell::new_more(std::pmr::memory_resource *memory, size_t capacity) {
    if (capacity > UINT32_MAX - 64) throw std::length_error("formula text too long");
    if (!memory) memory = std::pmr::new_delete_resource();
    // Rounded to the 16 bytes the sheet's memory hands out anyway.
    const size_t bytes = (sizeof(s_more) + capacity + 15) / 16 * 16;
    void *p = memory->allocate(bytes, alignof(s_more));
    return new (p) s_more{memory, nullptr, 0, static_cast<uint32_t>(bytes - sizeof(s_more))};
}

void c_cell::free_more(s_more *more) noexcept {
    if (!more) return;
    std::pmr::memory_resource *memory = more->memory;
    const size_t bytes = sizeof(s_more) + more->capacity;
    more->~s_more();
    memory->deallocate(more, bytes, alignof(s_more));
}

void c_cell::place(uint32_t row, uint32_t col, bool addressed) {
    _row = row;
    _col = col;
    if (!addressed) return;
    if (c_node *r = rest()) r->unset_attribute("r");
    _flags |= HAS_R;
}

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
    if (!_more) adopt(new_more(nullptr, 0));
    if (!_more->rest) _more->rest = std::make_unique<c_node>(&set(), _type, -1);
    _flags |= HAS_REST;
    return *_more->rest;
}

char *c_cell::set_formula_text(std::string_view text, std::pmr::memory_resource *memory) {
    if (!_more || _more->capacity < text.size()) {
        // The text is copied before the old block goes: it may live there.
        s_more *grown = new_more(_more ? _more->memory : memory, text.size());
        std::memcpy(grown->text(), text.data(), text.size());
        if (_more) grown->rest = std::move(_more->rest);
        adopt(grown);
    } else {
        std::memmove(_more->text(), text.data(), text.size());
    }
    _more->size = static_cast<uint32_t>(text.size());
    _flags |= HAS_F;
    return _more->text();
}

void c_cell::unset_formula_text() {
    if (!(_flags & HAS_F)) return;
    _flags &= static_cast<uint8_t>(~HAS_F);
    if (_more->rest) {
        _more->size = 0;
        return;
    }
    adopt(nullptr);
}

lmx::elmx_error c_cell::read_v(c_read_context &ctx) {
    lmx::c_xml_reader &r = ctx.reader();
    std::string text; // the value may come in several runs (around comments, CDATA)
    for (;;) {
        const int ev = r.next();
        if (ev == lmx::EV_TEXT) {
            text.append(r.text());
        } else if (ev == lmx::EV_END) {
            _v.assign(text);
            _flags |= HAS_V;
            return lmx::ELMX_OK;
        } else if (ev == lmx::EV_START) {
            return ctx.fail(lmx::ELMX_BAD_END_OF_ELEMENT, r.qname(), __LINE__);
        } else {
            return ev == lmx::EV_ERROR ? r.error()
                                       : ctx.fail(lmx::ELMX_UNEXPECTED_EOM, "v", __LINE__);
        }
    }
}

lmx::elmx_error c_cell::unmarshal(c_read_context &ctx) {
    lmx::c_xml_reader &r = ctx.reader();
    const s_schema_set &st = set();
    const s_complex_type &type = st.complex[_type];
    ctx.note_scope();
    for (size_t i = 0; i < r.attribute_count(); ++i) {
        const lmx::s_attribute &a = r.attribute(i);
        if (a.ns == lmx::NS_NONE && a.local.size() == 1) {
            std::string_view v;
            if (lmx::elmx_error e = r.attribute_value(a, v)) return e;
            if (a.local == "r" && parse_cell_ref(v, _row, _col)) {
                _flags |= HAS_R;
                continue;
            }
            if (a.local == "s" && parse_canonical_u32(v, _s)) {
                _flags |= HAS_S;
                continue;
            }
            if (a.local == "t" && set_t(v)) continue;
        }
        if (lmx::elmx_error e = ctx.read_attribute(make_rest(), i)) return e;
    }
    // The content model is a sequence of optional single elements (f, v,
    // is, extLst): each child must come after the one before it.
    uint32_t next_rank = 0;
    auto in_order = [&](int32_t decl) {
        for (uint32_t k = next_rank; k < type.elem_count; ++k)
            if (static_cast<int32_t>(st.elem_refs[type.elem_first + k]) == decl) {
                next_rank = k + 1;
                return true;
            }
        return false;
    };
    int32_t v_index = -1;
    for (uint32_t k = 0; k < type.elem_count && v_index < 0; ++k)
        if (std::strcmp(st.elems[st.elem_refs[type.elem_first + k]].name, "v") == 0)
            v_index = static_cast<int32_t>(st.elem_refs[type.elem_first + k]);
    const s_element_decl &v_decl = st.elems[v_index];
    for (;;) {
        const int ev = r.next();
        if (ev == lmx::EV_END) return lmx::ELMX_OK;
        if (ev == lmx::EV_ERROR) return r.error();
        if (ev == lmx::EV_END_OF_INPUT) return ctx.fail(lmx::ELMX_UNEXPECTED_EOM, "c", __LINE__);
        if (ev == lmx::EV_TEXT) {
            if (!r.text_is_space()) return ctx.fail(lmx::ELMX_BAD_END_OF_ELEMENT, "c", __LINE__);
            continue;
        }
        if (r.ns() == v_decl.ns && r.local() == v_decl.name && r.attribute_count() == 0 &&
            r.declaration_count() == 0) {
            if (!in_order(v_index)) return ctx.fail(lmx::ELMX_BAD_END_OF_ELEMENT, "v", __LINE__);
            if (lmx::elmx_error e = read_v(ctx)) return e;
            continue;
        }
        c_child c;
        bool skipped = false;
        if (lmx::elmx_error e = ctx.read_child(make_rest(), c, skipped)) return e;
        if (skipped) continue;
        if ((c.kind == K_NODE || c.kind == K_HAND) && !in_order(c.decl))
            return ctx.fail(lmx::ELMX_BAD_END_OF_ELEMENT, st.elems[c.decl].name, __LINE__);
        rest()->_children.push_back(std::move(c));
    }
}

namespace {

// Bytes that go out as they are in an element's text: printable ASCII
// without markup, references, or a "]" that could begin "]]>".
bool verbatim(std::string_view s) {
    for (const char c : s)
        if (c < 0x20 || c > 0x7E || c == '<' || c == '&' || c == ']') return false;
    return true;
}

char *put(char *p, std::string_view s) {
    std::memcpy(p, s.data(), s.size());
    return p + s.size();
}

template <class N> char *put_number(char *p, N n) { return std::to_chars(p, p + 24, n).ptr; }

} // namespace

bool c_cell::marshal_compact(std::string &out, std::string_view name) const {
    const bool f = _flags & HAS_F, v = _flags & HAS_V;
    const std::string_view ft = formula_text(), vt = _v.view();
    if (rest() || !(f || v) || name.size() > 8 ||
        (f && (ft.empty() || ft.size() > 200 || !verbatim(ft))) ||
        (v && (vt.empty() || vt.size() > 40 || !verbatim(vt))))
        return false;
    char buf[384];
    char *p = put(put(buf, "<"), name);
    if (_flags & HAS_R) {
        char letters[4];
        size_t n = 0;
        for (uint32_t c = _col + 1; c > 0 && n < 4; c = (c - 1) / 26)
            letters[n++] = static_cast<char>('A' + (c - 1) % 26);
        p = put(p, " r=\"");
        while (n > 0) *p++ = letters[--n];
        p = put(put_number(p, _row + 1), "\"");
    }
    if (_flags & HAS_S) p = put(put_number(put(p, " s=\""), _s), "\"");
    if (_t) p = put(put(put(p, " t=\""), k_types[_t - 1]), "\"");
    *p++ = '>';
    if (f) p = put(put(put(p, "<f>"), ft), "</f>");
    if (v) p = put(put(put(p, "<v>"), vt), "</v>");
    p = put(put(put(p, "</"), name), ">");
    out.append(buf, size_t(p - buf));
    return true;
}

void c_cell::marshal(c_write_context &ctx, int ns, std::string_view name) const {
    lmx::c_xml_writer &w = ctx.writer();
    const c_node *node = plain_formula();
    const bool formula = node || (_flags & HAS_F);
    if ((!rest() || node) && w.unprefixed(ctx.ns(ns))) {
        // The plain cell, the common one, goes out in one piece.
        std::string &out = w.raw_content();
        if (!node && marshal_compact(out, name)) return;
        out += '<';
        out += name;
        if (_flags & HAS_R) {
            out += " r=\"";
            append_cell_ref(out, _row, _col);
            out += '"';
        }
        if (_flags & HAS_S) {
            char buf[16];
            const auto res = std::to_chars(buf, buf + sizeof buf, _s);
            out += " s=\"";
            out.append(buf, res.ptr);
            out += '"';
        }
        if (_t) {
            out += " t=\"";
            out += k_types[_t - 1];
            out += '"';
        }
        if (!(_flags & HAS_V) && !formula) {
            out += "/>";
            return;
        }
        out += '>';
        // A child with its text, as the writer closes an empty one.
        auto child = [&out](char name, std::string_view text) {
            const char tag[] = {'<', name, '>', 0};
            if (text.empty()) {
                out.append(tag, 2).append("/>");
                return;
            }
            out.append(tag, 3);
            lmx::output_convert_to_xml(out, text, false);
            out.append("</").append(1, name).append(">");
        };
        if (formula) child('f', node ? std::string_view(node->_text) : formula_text());
        if (_flags & HAS_V) child('v', _v.view());
        out += "</";
        out += name;
        out += '>';
        return;
    }
    w.start_element(ctx.ns(ns), name);
    // Declared order: r, s, t, then the rest (cm, vm, ph), then foreign ones.
    const s_schema_set &st = set();
    const s_complex_type &t = st.complex[_type];
    auto rank_of = [&](const char *attr) {
        for (uint32_t k = 0; k < t.attr_count; ++k)
            if (std::strcmp(st.attrs[t.attr_first + k].name, attr) == 0) return k;
        return t.attr_count;
    };
    std::string ref;
    // Without a rest node nothing comes between the fields: no search for their places.
    const c_node *const more = rest();
    const uint32_t ranks[3] = {more ? rank_of("r") : 0, more ? rank_of("s") : 0,
                               more ? rank_of("t") : 0};
    size_t next_rest = 0;
    auto flush_rest_before = [&](uint32_t rank) {
        for (; more && next_rest < more->_attrs.size() && more->_attrs[next_rest].index < rank;
             ++next_rest) {
            const s_attribute_decl &d = st.attrs[t.attr_first + more->_attrs[next_rest].index];
            w.attribute(ctx.ns(d.ns), d.name, more->_attrs[next_rest].value);
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
    if (more) ctx.write_foreign(more->_foreign);
    // Children: f before v; is and extLst after it.
    bool v_done = !(_flags & HAS_V);
    auto write_v = [&] {
        w.start_element(ctx.ns(ns), "v");
        w.text(_v.view());
        w.end_element();
        v_done = true;
    };
    if (_flags & HAS_F) {
        w.start_element(ctx.ns(ns), "f");
        w.text(formula_text());
        w.end_element();
    }
    if (more)
        for (const c_child &c : more->_children) {
            if (!v_done && c.decl >= 0 && std::strcmp(st.elems[c.decl].name, "f") != 0) write_v();
            ctx.write_child(c);
        }
    if (!v_done) write_v();
    w.end_element();
}

} // namespace binding
