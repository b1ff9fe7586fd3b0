// A bound part: its root node, the root's name and the namespace bindings
// of the source, read from and written to bytes through one edition's tables.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ooxml/binding/engine/cell_memory.h"
#include "ooxml/binding/engine/node.h"

namespace binding {

enum e_edition { TRANSITIONAL, STRICT };

const s_schema_set &schema_set(e_edition e);

// What a part must hold at its root.  PART_ANY takes any global element of the set.
enum e_part {
    PART_ANY,
    PART_CONTENT_TYPES,
    PART_RELATIONSHIPS,
    PART_WORKBOOK,
    PART_WORKSHEET,
    PART_STYLESHEET,
    PART_SST,
    PART_DRAWING
};

class c_document {
public:
    c_document() = default;
    ~c_document();
    // A copy's rows keep their cells in the default memory.
    c_document(const c_document &o);
    c_document &operator=(const c_document &o);
    c_document(c_document &&o) noexcept;
    // The rows held before go while their memory is still there.
    c_document &operator=(c_document &&o) noexcept;

    // Reads a part: 16 when the root is not what `part` asks for in this
    // edition; 0 or the first error otherwise, detailed in `debug`.
    lmx::elmx_error unmarshal(const char *data, size_t size, e_edition edition, e_part part,
                              lmx::s_debug_error *debug = nullptr);
    // Writes the part (the XML declaration first) into `out`.
    lmx::elmx_error marshal(std::string &out, lmx::s_debug_error *debug = nullptr) const;

    // Makes an empty part of this kind.
    void create(e_edition edition, e_part part);

    const s_schema_set *set() const { return _set; }
    c_node &root() { return _root; }
    const c_node &root() const { return _root; }
    std::string_view root_name() const;
    // Undeclared unqualified attributes and skipped unknown elements of the last read.
    size_t dropped() const { return _dropped; }
    // Where the part's rows keep their cells, made at the first row.
    std::pmr::memory_resource *cell_memory();

private:
    // Before the root, which holds the rows: the memory outlives them.
    std::unique_ptr<c_cell_memory> _cell_memory;
    const s_schema_set *_set = nullptr;
    int32_t _root_decl = -1;
    c_node _root;
    size_t _dropped = 0;
    std::vector<std::pair<std::string, std::string>> _decls;
};

} // namespace binding
