// The hand-made classes that stand in for generated types: the row (which
// holds its cells).
#include <cstring>

#include "ooxml/binding/engine/document.h"
#include "ooxml/binding/parts/row.h"

namespace binding {

namespace {

int32_t complex_index(const s_schema_set &set, const char *name) {
    for (uint32_t i = 0; i < set.complex_count; ++i)
        if (std::strcmp(set.complex[i].name, name) == 0) return static_cast<int32_t>(i);
    return -1;
}

} // namespace

std::unique_ptr<c_hand_made> make_hand_made(const s_schema_set &set, int32_t complex,
                                            c_document *document) {
    static const int32_t rows[2] = {complex_index(k_transitional, "CT_Row"),
                                    complex_index(k_strict, "CT_Row")};
    if (complex == rows[&set == &k_strict])
        return std::make_unique<c_row_data>(
            set, complex, document ? document->cell_memory() : std::pmr::get_default_resource());
    return nullptr;
}

} // namespace binding
