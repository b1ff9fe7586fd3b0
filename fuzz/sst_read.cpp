// Reads arbitrary bytes as the records of a workbook stream, handing every
// SST and ExtSST to its reader.  A table that loads is written again and
// must read back with the same strings.
#include "biff/records/ext_sst.h"
#include "biff/records/sst.h"
#include "biff/xls.h"
#include "book/tberror.h"

#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <sstream>
#include <string>

using namespace tabrix;

namespace {

std::string container(const uint8_t *data, size_t size) {
    std::stringstream ss;
    Xls<char> x;
    x.reset(true);
    x.setStreamPtr(&ss);
    x.writeHeader();
    if (size) x.write(data, size);
    x.close();
    return ss.str();
}

void open(Xls<char> &x, std::stringstream &ss) {
    x.setStreamPtr(&ss);
    x.calcFileSize();
    unsigned total = 0;
    x.readHeader(total);
}

void checkRoundTrip(SST &sst) {
    std::stringstream out;
    Xls<char> w;
    w.reset(true);
    w.setStreamPtr(&out);
    w.writeHeader();
    sst.write(w);
    w.close();
    std::stringstream in(out.str());
    Xls<char> r;
    open(r, in);
    MemPool pool;
    SST back(pool);
    back.read(r);
    if (back.strings().count() != sst.strings().count()) std::abort();
    for (unsigned i = 0; i < sst.strings().count(); ++i)
        if (std::wcscmp(back.extract(i), sst.extract(i)) != 0) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size > (1u << 20)) return 0;
    std::stringstream ss(container(data, size));
    Xls<char> x;
    try {
        open(x, ss);
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
    } catch (const tberror &) {}
    return 0;
}
