// The hand-made classes that stand in for generated types.
#include "ooxml/binding/engine/context.h"

namespace binding {

std::unique_ptr<c_hand_made> make_hand_made(const s_schema_set &, int32_t) { return nullptr; }

} // namespace binding
