#include "biff/support/style_io.h"
#include "biff/support/biff_bytes.h"
namespace bifftest {
StyleRecords styleRecords(const std::function<void(tabrix::Xls<char> &)> &body) {
    std::string file = writeBook([&](tabrix::Xls<char> &x) {
        body(x);
        x.write(0x0A, 0);
    });
    Opened o(file);
    StyleRecords out = o.records();
    if (!out.empty() && out.back().first == 0x0A) out.pop_back(); // the end mark
    return out;
}

namespace {
uint16_t readFirst(const std::string &file,
                   const std::function<void(tabrix::Xls<char> &, uint16_t size)> &reader) {
    Opened o(file);
    uint16_t id = 0, size = 0;
    o.x.readInt16(id);
    o.x.readInt16(size);
    reader(o.x, size);
    return o.x.eof() ? 0 : o.x.peekInt16();
}
} // namespace

uint16_t styleReadBack(const std::function<void(tabrix::Xls<char> &)> &body,
                       const std::function<void(tabrix::Xls<char> &, uint16_t size)> &reader) {
    std::string file = writeBook([&](tabrix::Xls<char> &x) {
        body(x);
        x.write(0x0A, 0);
    });
    return readFirst(file, reader);
}

std::string styleReadError(const StyleRecords &records,
                           const std::function<void(tabrix::Xls<char> &, uint16_t size)> &reader) {
    std::vector<uint8_t> wb;
    for (const auto &r : records) record(wb, r.first, r.second);
    record(wb, 0x0A, {});
    std::string file = rawBook(wb);
    return errorOf([&] { readFirst(file, reader); });
}
} // namespace bifftest
