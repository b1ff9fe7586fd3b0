#include "biff/support/biff_bytes.h"

#include "book/tberror.h"

namespace bifftest {

void put16(std::vector<uint8_t> &v, uint16_t x) {
    v.push_back(uint8_t(x));
    v.push_back(uint8_t(x >> 8));
}

void put32(std::vector<uint8_t> &v, uint32_t x) {
    put16(v, uint16_t(x));
    put16(v, uint16_t(x >> 16));
}

void record(std::vector<uint8_t> &v, uint16_t id, const std::vector<uint8_t> &data) {
    put16(v, id);
    put16(v, uint16_t(data.size()));
    v.insert(v.end(), data.begin(), data.end());
}

std::string writeBook(const std::function<void(tabrix::Xls<char> &)> &body) {
    std::stringstream ss;
    tabrix::Xls<char> x;
    x.reset(true);
    x.setStreamPtr(&ss);
    x.writeHeader();
    body(x);
    x.close();
    return ss.str();
}

std::string rawBook(const std::vector<uint8_t> &wb) {
    return writeBook([&](tabrix::Xls<char> &x) {
        if (!wb.empty()) x.write(wb.data(), wb.size());
    });
}

std::string errorOf(const std::function<void()> &f) {
    try {
        f();
    } catch (const tabrix::tberror &e) {
        return e.what();
    }
    return "";
}

Opened::Opened(const std::string &file) : ss(file) {
    x.setStreamPtr(&ss);
    x.calcFileSize();
    unsigned total = 0;
    x.readHeader(total);
}

std::vector<uint8_t> Opened::bytes(size_t n) {
    std::vector<uint8_t> b(n);
    x.read(b.data(), n);
    return b;
}

std::vector<std::pair<uint16_t, std::vector<uint8_t>>> Opened::records() {
    std::vector<std::pair<uint16_t, std::vector<uint8_t>>> out;
    for (;;) {
        auto h = bytes(4);
        uint16_t id = uint16_t(h[0] | (h[1] << 8)), size = uint16_t(h[2] | (h[3] << 8));
        if (id == 0 || x.eof()) return out;
        out.push_back({id, bytes(size)});
    }
}

} // namespace bifftest
