// The hand-made classes that stand in for generated types: the cell.
#include <cstring>

#include "ooxml/binding/parts/cell.h"

namespace binding {

std::unique_ptr<c_hand_made> make_hand_made(const s_schema_set &set, int32_t complex) {
    if (std::strcmp(set.complex[complex].name, "CT_Cell") == 0)
        return std::make_unique<c_cell>(set, complex);
    return nullptr;
}

} // namespace binding
