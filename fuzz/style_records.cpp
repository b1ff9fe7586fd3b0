// Reads arbitrary bytes as the body of one styling record: the first byte
// picks Font, XF, Format, Style (with a StyleExt after it) or Palette, the
// second the BOF version.  A record that loads is written again, read back
// and must give the same bytes.
#include "biff/style_table.h"
#include "book/tberror.h"

#include "support/workbook_input.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace tabrix;
using namespace fuzzinput;

namespace {

const uint16_t kIds[5] = {49, 224, 1054, 659, 146};
const uint16_t kVersions[3] = {0x0600, 0x0500, 0x0400};

// Reads the first record of `file` into `t`; false when it is refused.
bool load(const std::string &file, int kind, uint16_t version, StyleTable<char> &t) {
    return readFile(file, [&](Xls<char> &x) {
        uint16_t id = 0, size = 0;
        x.readInt16(id);
        x.readInt16(size);
        switch (kind) {
        case 0: t.readFont(x, size, version); break;
        case 1: t.readXF(x, size, version); break;
        case 2: t.readFormat(x, size, version); break;
        case 3: t.readStyle(x, size, version); break;
        default: t.readPalette(x, size); break;
        }
    });
}

std::string saved(StyleTable<char> &t) {
    return written([&](Xls<char> &x) {
        t.write(x);
        x.write(0x0A, 0);
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (!data || size < 2) return 0;
    int kind = data[0] % 5;
    uint16_t version = kVersions[data[1] % 3];
    std::vector<uint8_t> wb = record(kIds[kind], data + 2, size - 2);
    if (kind == 3) { // a StyleExt after the Style, as much as is left
        put16(wb, 2194);
        put16(wb, 0);
    }
    put16(wb, 0x0A);
    put16(wb, 0);
    StyleTable<char> t;
    if (!load(container(wb), kind, version, t)) return 0;
    // What loaded writes out in the current format and reads back alike.
    std::string first = saved(t);
    if (kind == 1 || kind == 4) {
        StyleTable<char> again;
        if (!load(first, kind, 0x0600, again)) std::abort();
        if (saved(again) != first) std::abort();
    }
    return 0;
}
