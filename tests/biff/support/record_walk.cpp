#include "biff/support/record_walk.h"

#include "biff/support/biff_bytes.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace bifftest {

namespace {
const uint16_t kBof = 2057, kEof = 10;
}

WalkedBook walkBook(const std::string &file) {
    WalkedBook out;
    std::vector<uint8_t> wb;
    try {
        Opened in(file);
        wb.resize(in.x.size());
        wb.resize(in.x.read(wb.data(), wb.size()));
    } catch (const std::exception &e) {
        out.error = e.what();
        return out;
    }
    size_t p = 0;
    int depth = 0;
    while (p + 4 <= wb.size()) {
        uint16_t id = uint16_t(wb[p] | (wb[p + 1] << 8));
        size_t size = size_t(wb[p + 2] | (wb[p + 3] << 8));
        if (id == 0 && depth == 0) break; // padding behind the last substream
        if (p + 4 + size > wb.size()) {
            out.error = "record runs past the stream";
            break;
        }
        WalkedRecord r;
        r.id = id;
        r.data.assign(wb.begin() + long(p + 4), wb.begin() + long(p + 4 + size));
        p += 4 + size;
        if (id == kBof) {
            if (depth++ == 0) {
                out.substreams.emplace_back();
                out.substreams.back().dt =
                    r.data.size() >= 4 ? uint16_t(r.data[2] | (r.data[3] << 8)) : 0;
            }
        }
        if (depth == 0) continue;
        out.substreams.back().records.push_back(std::move(r));
        if (id == kEof) --depth;
    }
    return out;
}

WalkedBook walkFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return walkBook(std::string(std::istreambuf_iterator<char>(in), {}));
}

std::vector<WalkedRecord> drawingRun(const Substream &s) {
    const uint16_t kDrawing = 236, kNote = 28, kWindow = 574;
    std::vector<WalkedRecord> out;
    for (size_t i = 1; i + 1 < s.records.size(); ++i) {
        const WalkedRecord &r = s.records[i];
        if (out.empty() && r.id != kDrawing) continue;
        if (r.id == kNote || r.id == kWindow) break;
        out.push_back(r);
    }
    return out;
}

std::vector<WalkedRecord> keptRecords(const Substream &s, const std::set<uint16_t> &modelled) {
    std::vector<WalkedRecord> out;
    for (const WalkedRecord &r : s.records)
        if (!modelled.count(r.id)) out.push_back(r);
    std::sort(out.begin(), out.end());
    return out;
}

std::string describe(const std::vector<WalkedRecord> &records) {
    std::ostringstream os;
    for (const WalkedRecord &r : records) os << r.id << ":" << r.data.size() << " ";
    return os.str();
}

} // namespace bifftest
