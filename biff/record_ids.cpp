#include "biff/record_ids.h"

namespace tabrix {

const char *recordName(uint16_t id) {
    switch (id) {
#define TABRIX_RECORD_NAME_CASE(name, value)                                                       \
    case value: return #name;
        TABRIX_RECORD_IDS(TABRIX_RECORD_NAME_CASE)
#undef TABRIX_RECORD_NAME_CASE
    }
    return nullptr;
}

} // namespace tabrix
