// Reads arbitrary bytes as a stylesheet part in either edition.  A sheet
// that loads has every format and font read and copied into a new
// stylesheet, and what it writes must read again.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "book/tberror.h"
#include "ooxml/styles/styles.h"

using namespace tabrix;

namespace {

// Copies are bounded: each addition appends to lists it also counts.
const int kMostCopied = 2000;

void exercise(Styles<char> &s) {
    Styles<char> copy(binding::TRANSITIONAL, true);
    for (bool rgb : {false, true}) {
        s.setRgbMode(rgb);
        for (int i = 0; i < s.formatSize(); ++i) {
            s.isDate(static_cast<uint32_t>(i));
            if (i >= kMostCopied) continue;
            try {
                copy.addFormat(s.format(i));
            } catch (const tberror &) {}
        }
        for (int i = 0; i < s.fontSize() && i < kMostCopied; ++i) copy.addFont(s.font(i));
    }
    s.maxDigWidth();
    std::string out;
    copy.save(out);
    Styles<char> again(binding::TRANSITIONAL, out.data(), out.size(), true);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size > (1u << 20)) return 0;
    const char *bytes = reinterpret_cast<const char *>(data);
    for (binding::e_edition ed : {binding::TRANSITIONAL, binding::STRICT}) {
        std::string out;
        try {
            Styles<char> s(ed, bytes, size, true);
            s.save(out);
        } catch (const tberror &) {
            continue;
        }
        // What loaded and was written back untouched reads again.
        try {
            Styles<char> back(ed, out.data(), out.size(), true);
            exercise(back);
        } catch (const tberror &) {
            std::abort();
        }
    }
    return 0;
}
