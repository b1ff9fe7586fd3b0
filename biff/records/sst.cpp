#include "biff/records/sst.h"

#include "biff/strings/segment_reader.h"

#include <algorithm>

namespace tabrix {

unsigned SST::insert(const wchar_t *text, bool force) {
    uint64_t hash = 0;
    if (!force) {
        // A text the table holds already costs no copy.
        hash = HashFnv::of(text);
        int64_t found = _map.find(text ? text : L"", hash);
        if (found >= 0) {
            ++cstTotal;
            return unsigned(found);
        }
    }
    ExtString s;
    s.setString(text, _pool);
    s.hash = hash;
    bool inserted = true;
    unsigned index = force ? _map.insert(s, true, inserted) : _map.add(s);
    ++cstTotal;
    if (inserted) ++cstUnique;
    return index;
}

void SST::insert(unsigned index, const wchar_t *text) {
    ExtString s;
    s.setString(text, _pool);
    _map.insert(index, s);
}

const wchar_t *SST::extract(unsigned index) const {
    if (index >= _map.count()) throw tberror("SST: string index is out of range");
    const wchar_t *t = _map.extract(index).text;
    return t ? t : L"";
}

void SST::reset() {
    cstTotal = 0;
    cstUnique = 0;
    _map.reset();
}

void SST::read(XlsRecords &xls, uint16_t size) {
    if (size <= 7) sizeError();
    reset();
    uint32_t remaining = size;
    SegmentReader in(xls, remaining);
    cstTotal = int32_t(in.int32());
    cstUnique = int32_t(in.int32());
    // Room for the stated count, which a string of at least 3 bytes each
    // must fit in the stream.
    if (cstUnique > 0) _map.reserve(std::min<size_t>(size_t(cstUnique), xls.size() / 3));
    // The stated count is only a hint: strings are read while the record and
    // its CONTINUE records hold data.
    for (int32_t i = 0; i < cstUnique && in.ok(); ++i) {
        if (remaining == 0 && (xls.eof() || xls.peekInt16() != XlsRecords::kContinueId)) break;
        ExtString s;
        bool whole = s.read(xls, remaining, _pool);
        bool inserted = false;
        if (whole || (s.text && s.text[0])) _map.insert(s, true, inserted);
        if (!whole) break;
    }
    // Whatever is left of this record and its CONTINUE records is not ours
    // to interpret, but the next record must start where expected.
    SegmentReader rest(xls, remaining);
    rest.skip(remaining);
    while (!xls.eof() && xls.peekInt16() == XlsRecords::kContinueId) {
        uint16_t id = 0, n = 0;
        xls.readInt16(id);
        xls.readInt16(n);
        uint32_t left = n;
        SegmentReader skip(xls, left);
        skip.skip(n);
    }
}

void SST::write(XlsRecords &xls) {
    cstUnique = int32_t(_map.count());
    PatchList patches;
    xls.writeInt16(kId);
    patches.push_back({xls.writePos(), 8});
    xls.writeInt16(8);
    xls.writeInt32(uint32_t(cstTotal));
    xls.writeInt32(uint32_t(cstUnique));
    uint32_t remaining = XlsRecords::kMaxRecordData - 8;
    for (unsigned i = 0; i < _map.count(); ++i) _map.extract(i).write(xls, remaining, patches);
    for (const auto &p : patches) xls.patchInt16(p.first, uint16_t(p.second));
}

void SST::dumpTo(std::wostream &os) const {
    os << std::dec << L" cstTotal=" << cstTotal << L" cstUnique=" << cstUnique << L" rgb=(";
    for (unsigned i = 0; i < _map.count(); ++i) {
        const wchar_t *t = _map.extract(i).text;
        os << (i ? L" " : L"") << L"\"" << (t ? t : L"") << L"\"";
    }
    os << L")";
}

} // namespace tabrix
