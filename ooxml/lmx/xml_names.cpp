// Look-up of a name in an event table.
#include "ooxml/lmx/xml_names.h"

#include <cstring>

namespace lmx {

int tokenise(const s_event_map *map, int ns, std::string_view local) {
    if (map && !local.empty()) {
        const char first = local[0];
        for (const s_event_map *m = map; m->name; ++m)
            if (m->ns == ns && m->name[0] == first && m->length == local.size() &&
                std::memcmp(m->name, local.data(), local.size()) == 0)
                return m->event;
    }
    if (ns == NS_XSI) {
        if (local == "type") return EV_XSI_TYPE;
        if (local == "nil") return EV_XSI_NIL;
        if (local == "schemaLocation") return EV_XSI_SCHEMA_LOCATION;
        if (local == "noNamespaceSchemaLocation") return EV_XSI_NO_NS_SCHEMA_LOCATION;
    }
    return EV_UNKNOWN;
}

} // namespace lmx
