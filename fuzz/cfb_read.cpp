// Opens arbitrary bytes as a compound file from memory: header, tables,
// directory, the workbook stream and the kept streams.  A file that opens
// must also survive a save and open again with the same workbook bytes.
#include "biff/xls.h"
#include "book/tberror.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace {

bool load(const std::string &bytes, tabrix::Xls<char> &x, std::stringstream &ss,
          std::vector<uint8_t> &wb) {
    ss.str(bytes);
    x.setStreamPtr(&ss);
    try {
        x.calcFileSize();
        unsigned total = 0;
        x.readHeader(total);
        // Read in record-sized steps, as the record layer does, but no more
        // than the file could hold.
        uint8_t buf[512];
        while (!x.eof() && wb.size() <= bytes.size()) {
            size_t n = x.read(buf, sizeof buf);
            wb.insert(wb.end(), buf, buf + n);
            if (n < sizeof buf) break;
        }
        x.readSections();
        return true;
    } catch (const tabrix::tberror &) {
        return false;
    } catch (const std::out_of_range &) {
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string bytes = data ? std::string(reinterpret_cast<const char *>(data), size) : "";
    tabrix::Xls<char> x;
    std::stringstream in;
    std::vector<uint8_t> wb;
    if (!load(bytes, x, in, wb)) return 0;
    x.dump();

    std::stringstream out;
    x.reset(false);
    x.setStreamPtr(&out);
    x.writeHeader();
    if (!wb.empty()) x.write(wb.data(), wb.size());
    x.close();

    tabrix::Xls<char> y;
    std::stringstream again;
    std::vector<uint8_t> wb2;
    if (!load(out.str(), y, again, wb2)) std::abort();
    if (wb2.size() < wb.size() || !std::equal(wb.begin(), wb.end(), wb2.begin())) std::abort();
    return 0;
}
