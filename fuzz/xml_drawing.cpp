// Reads arbitrary bytes as a drawing part in either edition.  A drawing
// that loads has every picture read, gets one more, and what it writes must
// read again with one picture more.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "book/tberror.h"
#include "ooxml/drawing/drawing.h"

using namespace tabrix;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const char *text = reinterpret_cast<const char *>(data);
    for (binding::e_edition ed : {binding::TRANSITIONAL, binding::STRICT}) {
        try {
            Drawing d(ed, text, size);
            const int n = d.pictureSize();
            for (int i = 0; i < n; ++i) d.picture(i);
            d.addAnchor(1, 2, 3, 4, 5, 6, 7, 8, "rId9");
            std::string out;
            d.save(out);
            Drawing again(ed, out.data(), out.size());
            if (again.pictureSize() != n + 1) std::abort();
        } catch (const tberror &) {}
    }
    return 0;
}
