// Reads arbitrary bytes as the records of a workbook stream, handing every
// SST and ExtSST to its reader.  A table that loads is written again and
// must read back with the same strings.
#include "biff/records/ext_sst.h"
#include "biff/records/sst.h"
#include "biff/xls.h"
#include "book/tberror.h"

#include "support/workbook_input.h"

#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <string>
#include <vector>

using namespace tabrix;
using namespace fuzzinput;

namespace {

void checkRoundTrip(SST &sst) {
    MemPool pool;
    SST back(pool);
    // A table that does not read back ends the input as its first reading would.
    if (!readFile(written([&](Xls<char> &w) { sst.write(w); }),
                  [&](Xls<char> &r) { back.read(r); }))
        throw tberror("the table written does not read back");
    if (back.strings().count() != sst.strings().count()) std::abort();
    for (unsigned i = 0; i < sst.strings().count(); ++i)
        if (std::wcscmp(back.extract(i), sst.extract(i)) != 0) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size > (1u << 20)) return 0;
    std::vector<uint8_t> wb;
    if (size) wb.assign(data, data + size);
    readFile(container(wb), [](Xls<char> &x) {
        MemPool pool;
        // Each round consumes at least a header, so this ends.
        while (!x.eof()) {
            uint16_t id = 0, len = 0;
            x.readInt16(id);
            x.readInt16(len);
            if (id == 0 || x.eof()) break;
            if (id == SST::kId) {
                SST sst(pool);
                sst.read(x, len);
                checkRoundTrip(sst);
            } else if (id == ExtSST::kId) {
                ExtSST e;
                e.read(x, len);
            } else {
                std::string skip(len, '\0');
                x.read(&skip[0], len);
            }
        }
    });
    return 0;
}
