// The row, made by hand: its cells by value in one array, its number and
// spans in plain fields, and anything rarer (other attributes, foreign
// attributes, extension lists, kept raw content) in a generic node beside
// it, created only when present.
#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "ooxml/binding/parts/cell.h"

namespace binding {

// A row's cells, in the memory of its sheet (see cell_memory.h).
using cell_vector = std::pmr::vector<c_cell>;

class c_row_data : public c_hand_made {
public:
    c_row_data(const s_schema_set &set, int32_t type,
               std::pmr::memory_resource *memory = std::pmr::get_default_resource())
        : _type(static_cast<uint16_t>(type)), _flags(&set == &k_strict ? STRICT : 0),
          _cells(memory) {}
    // A copy keeps its cells in the default memory: it may outlive this sheet.
    c_row_data(const c_row_data &o);

    std::unique_ptr<c_hand_made> clone() const override {
        return std::make_unique<c_row_data>(*this);
    }
    lmx::elmx_error unmarshal(c_read_context &ctx) override;
    void marshal(c_write_context &ctx, int ns, std::string_view name) const override;
    const s_schema_set &set() const { return _flags & STRICT ? k_strict : k_transitional; }

    // r: the one-based row number.
    bool isset_r() const { return _flags & HAS_R; }
    uint32_t get_r() const { return _r; }
    void set_r(uint32_t r);
    void unset_r();

    // The other declared attributes by name, as a generic node answers them.
    const std::string *attribute(std::string_view name) const;
    std::string_view attribute_or_default(std::string_view name) const;
    bool set_attribute(std::string_view name, std::string value);
    bool unset_attribute(std::string_view name);

    // Whether the cells are as read, each with its address, in ascending
    // columns: the sheet then needs no pass over them to place or sort
    // them.  Any access that may change them ends it.
    bool cells_in_order() const { return _flags & IN_ORDER; }
    cell_vector &cells() {
        _flags &= static_cast<uint8_t>(~IN_ORDER);
        return _cells;
    }
    const cell_vector &cells() const { return _cells; }
    // A new default cell at `at`.
    c_cell &insert_cell(size_t at);
    void erase_cell(size_t at);

private:
    enum : uint8_t { HAS_R = 1, HAS_SPANS = 2, STRICT = 4, IN_ORDER = 8 };
    // Children other than cells, each with the number of cells before it.
    struct s_rest {
        c_node node;
        std::vector<size_t> cells_before;
    };
    s_rest &make_rest();
    // Takes the plain cells at the reader's position straight from its bytes.
    void read_plain_cells(lmx::c_xml_reader &r, int32_t cell_type);

    uint32_t _r = 0;
    uint16_t _type; // CT_Row in the set
    uint8_t _flags;
    std::string _spans;
    cell_vector _cells;
    std::unique_ptr<s_rest> _rest;
};

} // namespace binding
