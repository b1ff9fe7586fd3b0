#include "biff/records/pls.h"

#include <algorithm>

namespace tabrix {

namespace {
// Appends `n` bytes of the stream to `out`, in pieces that a small stream
// serves too; false on a short read.
bool append(XlsRecords &xls, std::vector<uint8_t> &out, size_t n) {
    size_t at = out.size();
    out.resize(at + n);
    while (n > 0) {
        size_t k = std::min<size_t>(n, 2048);
        if (xls.read(out.data() + at, k) != k || xls.eof()) return false;
        at += k;
        n -= k;
    }
    return true;
}
} // namespace

void Pls::read(XlsRecords &xls, uint16_t size) {
    reset();
    if (size < 2) sizeError();
    xls.readInt16(word);
    if (xls.eof() || !append(xls, bytes, size - 2u)) sizeError();
    for (;;) {
        xls.setCheckPoint(0);
        uint16_t id = 0, n = 0;
        xls.readInt16(id);
        xls.readInt16(n);
        if (xls.eof() || id != XlsRecords::kContinueId) {
            xls.restoreCheckPoint();
            return;
        }
        if (!append(xls, bytes, n)) sizeError();
    }
}

void Pls::write(XlsRecords &xls) const {
    const size_t limit = XlsRecords::kMaxRecordData;
    size_t first = std::min(bytes.size(), limit - 2);
    xls.write(kId, uint16_t(2 + first));
    xls.writeInt16(word);
    if (first) xls.write(bytes.data(), first);
    for (size_t at = first; at < bytes.size(); at += limit) {
        size_t n = std::min(bytes.size() - at, limit);
        xls.write(XlsRecords::kContinueId, bytes.data() + at, uint16_t(n));
    }
}

void Pls::dumpTo(std::wostream &os) const { os << L" word=" << word << L" bytes=" << bytes.size(); }

} // namespace tabrix
