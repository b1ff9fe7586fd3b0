// Arbitrary bytes bound as a worksheet, a stylesheet and a drawing, in both
// editions.  A part that binds is written back, and the copy must bind too.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ooxml/binding/engine/document.h"

using namespace binding;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const char *text = reinterpret_cast<const char *>(data);
    for (e_edition ed : {TRANSITIONAL, STRICT})
        for (e_part part : {PART_WORKSHEET, PART_STYLESHEET, PART_DRAWING}) {
            c_document d;
            if (d.unmarshal(text, size, ed, part) != lmx::ELMX_OK) continue;
            std::string out;
            if (d.marshal(out) != lmx::ELMX_OK) std::abort();
            c_document again;
            if (again.unmarshal(out.data(), out.size(), ed, part) != lmx::ELMX_OK) std::abort();
        }
    return 0;
}
