// The cell, made by hand: a worksheet holds millions, so the common cell
// (reference, style, type, value) is kept in a few plain fields read
// straight from the XML, and anything rarer (formula, inline string, other
// attributes, foreign content) in a generic node beside it, created only
// when present.  Cells live by value in their row (see row.h).
#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>

#include "ooxml/binding/engine/cell_memory.h"
#include "ooxml/binding/engine/context.h"
#include "ooxml/binding/parts/short_text.h"

namespace binding {

class c_cell {
public:
    explicit c_cell(const s_schema_set &set, int32_t type)
        : _type(static_cast<uint16_t>(type)), _flags(&set == &k_strict ? STRICT : 0) {}
    c_cell(const c_cell &o);
    c_cell &operator=(const c_cell &o) {
        c_cell t(o);
        return *this = std::move(t);
    }
    c_cell(c_cell &&o) noexcept
        : _row(o._row), _col(o._col), _s(o._s), _type(o._type), _flags(o._flags), _t(o._t),
          _v(std::move(o._v)), _more(o._more) {
        o._more = nullptr;
        o._flags &= static_cast<uint8_t>(~k_more_flags);
    }
    c_cell &operator=(c_cell &&o) noexcept;
    ~c_cell() {
        // Extras in a sheet's memory that is going as a whole need no release.
        if (_more && !((_flags & POOLED) && !(_flags & HAS_REST) && c_cell_memory::discarding()))
            free_more(_more);
    }

    // At the start tag; consumes up to and including the end tag.
    lmx::elmx_error unmarshal(c_read_context &ctx);
    void marshal(c_write_context &ctx, int ns, std::string_view name) const;
    // Appends a cell of fields only, with a short value that needs no
    // escape, assembled in one buffer; false (nothing written) otherwise.
    bool marshal_compact(std::string &out, std::string_view name) const;
    // Reads a cell in its plain form from the bytes at the start of `in`:
    // an unprefixed <c> with only r, s and t (double-quoted, printable
    // ASCII), then an optional <f> and an optional <v>, each of printable
    // ASCII without markup.  The
    // bytes taken, or 0 for anything else, which the general reader takes.
    // A formula goes into `memory` (see set_formula_text).
    size_t read_plain(std::string_view in, std::pmr::memory_resource *memory);
    const s_schema_set &set() const { return _flags & STRICT ? k_strict : k_transitional; }

    // r: zero-based row and column, present or not.
    bool isset_r() const { return _flags & HAS_R; }
    uint32_t row() const { return _row; }
    uint32_t col() const { return _col; }
    void set_r(uint32_t row, uint32_t col) {
        _row = row;
        _col = col;
        _flags |= HAS_R;
    }
    void unset_r() { _flags &= static_cast<uint8_t>(~HAS_R); }
    // Places a cell read without an address it could hold.  With `addressed`
    // it takes r, and an r the rest kept (one the fields could not hold)
    // gives way; without, the position is only the sheet's own and the cell
    // is written as it was read.
    void place(uint32_t row, uint32_t col, bool addressed);
    // s: style index, default 0.
    uint32_t get_s() const { return _s; }
    bool isset_s() const { return _flags & HAS_S; }
    void set_s(uint32_t s) {
        _s = s;
        _flags |= HAS_S;
    }
    void unset_s() {
        _s = 0;
        _flags &= static_cast<uint8_t>(~HAS_S);
    }
    // t: the cell type's text ("n" by default).
    std::string_view get_t() const;
    bool isset_t() const { return _t != 0; }
    // False for a text not among the types.
    bool set_t(std::string_view t);
    void unset_t() { _t = 0; }
    // v: the value's text.
    std::string_view get_v() const { return _v.view(); }
    bool isset_v() const { return _flags & HAS_V; }
    void set_v(std::string_view v) {
        _v.assign(v);
        _flags |= HAS_V;
    }
    void unset_v() {
        _v.clear();
        _flags &= static_cast<uint8_t>(~HAS_V);
    }
    // Everything else of the cell (f, is, extLst, cm, vm, ph, foreign
    // attributes) in a generic node of the cell's type; null when none.
    c_node *rest() { return _flags & HAS_REST ? _more->rest.get() : nullptr; }
    const c_node *rest() const { return _flags & HAS_REST ? _more->rest.get() : nullptr; }
    c_node &make_rest();
    // The formula element when it is all the rest holds and is plain (a
    // text, no attributes), else null.
    const c_node *plain_formula() const;
    // A plain formula (its stored text, no attributes) held as a text
    // beside the rest, not as an element in it: the form of every formula
    // written through the sheet and of plain ones read straight from the
    // bytes.  A cell has it or an f element in the rest, never both.
    bool has_formula_text() const { return _flags & HAS_F; }
    std::string_view formula_text() const {
        return _more ? std::string_view(_more->text(), _more->size) : std::string_view();
    }
    // Stores the text, in `memory` when the cell has no extras yet (the
    // heap when null), and answers its first byte, to edit in place.
    char *set_formula_text(std::string_view text, std::pmr::memory_resource *memory = nullptr);
    void unset_formula_text();

private:
    // POOLED: the extras are in a sheet's memory, not on the heap; HAS_REST:
    // they hold a rest node.  Both are known without a look at the extras.
    enum : uint8_t {
        HAS_R = 1,
        HAS_S = 2,
        HAS_V = 4,
        STRICT = 8,
        HAS_F = 16,
        POOLED = 32,
        HAS_REST = 64
    };
    static constexpr uint8_t k_more_flags = HAS_F | POOLED | HAS_REST;
    // The extras, one block with the formula's bytes after it, from the
    // memory the cell was given first: a sheet's own for cells read or
    // written through it, the heap for copies, which may outlive the sheet.
    struct s_more {
        std::pmr::memory_resource *memory;
        std::unique_ptr<c_node> rest;
        uint32_t size, capacity; // of the formula text (size 0 without one)
        char *text() { return reinterpret_cast<char *>(this + 1); }
        const char *text() const { return reinterpret_cast<const char *>(this + 1); }
    };
    static s_more *new_more(std::pmr::memory_resource *memory, size_t capacity);
    // Takes `more` as the cell's extras, the old ones gone.
    void adopt(s_more *more);
    static void free_more(s_more *more) noexcept;
    lmx::elmx_error read_v(c_read_context &ctx);

    uint32_t _row = 0, _col = 0, _s = 0;
    uint16_t _type; // CT_Cell in the set
    uint8_t _flags;
    uint8_t _t = 0; // 1 + index in the type table, 0 when absent
    c_short_text _v;
    s_more *_more = nullptr; // null while the cell has neither
};

// Reads "A1"-style references (columns A..XFD, rows 1..1048576) to zero-based numbers.
bool parse_cell_ref(std::string_view s, uint32_t &row, uint32_t &col);
// Appends the "A1" form of zero-based row and column.
void append_cell_ref(std::string &out, uint32_t row, uint32_t col);

} // namespace binding
