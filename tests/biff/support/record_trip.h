// One record through a workbook stream: read from hand-made bytes, written
// back, and the message a bad body gives.  Records whose constructor takes
// a MemPool get one.
#ifndef TABRIX_TESTS_BIFF_RECORD_TRIP_H
#define TABRIX_TESTS_BIFF_RECORD_TRIP_H

#include "book/mem_pool.h"
#include "support/biff_bytes.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace bifftest {

using Bytes = std::vector<uint8_t>;
using Records = std::vector<std::pair<uint16_t, Bytes>>;

// The bytes of `a`, then those of `b`.
inline Bytes operator+(Bytes a, const Bytes &b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// A record of `id` holding `data`, as the bytes of a stream.
inline Bytes rec(uint16_t id, const Bytes &data) {
    Bytes v;
    record(v, id, data);
    return v;
}

// The records `recs`, one after the other, as a stream.
inline Bytes stream(const Records &recs) {
    Bytes wb;
    for (const auto &r : recs) record(wb, r.first, r.second);
    return wb;
}

// n bytes 1, 8, 15, ...: no field of them is zero by chance.
inline Bytes seq(size_t n, uint8_t start = 1) {
    Bytes v(n);
    for (size_t i = 0; i < n; ++i) v[i] = uint8_t(start + i * 7);
    return v;
}

inline Bytes words(std::initializer_list<uint16_t> ws) {
    Bytes v;
    for (uint16_t w : ws) put16(v, w);
    return v;
}

// A text record body: 16-bit count, flags, characters.
inline Bytes textBytes(const std::string &s, bool wide) {
    Bytes v = words({uint16_t(s.size())});
    v.push_back(wide ? 1 : 0);
    for (char c : s) {
        v.push_back(uint8_t(c));
        if (wide) v.push_back(0);
    }
    return v;
}

// A page break record body: count, then (position, 0, 0xFFFF) each.
inline Bytes breakBytes(std::initializer_list<uint16_t> positions) {
    Bytes v = words({uint16_t(positions.size())});
    for (uint16_t p : positions) {
        put16(v, p);
        put16(v, 0);
        put16(v, 0xFFFF);
    }
    return v;
}

template <class R> R readBack(const Bytes &data) {
    static tabrix::MemPool pool;
    Bytes wb;
    record(wb, R::kId, data);
    Opened in(rawBook(wb));
    R r = [] {
        if constexpr (std::is_constructible_v<R, tabrix::MemPool &>)
            return R(pool);
        else
            return R();
    }();
    r.read(in.x);
    return r;
}

// The records an R read from `data` writes, which may be more than one.
template <class R> Records tripRecords(const Bytes &data) {
    R r = readBack<R>(data);
    Opened out(writeBook([&](tabrix::Xls<char> &x) { r.write(x); }));
    return out.records();
}

// The body of the one record an R read from `data` writes.
template <class R> Bytes roundTrip(const Bytes &data) {
    Records recs = tripRecords<R>(data);
    EXPECT_EQ(recs.size(), 1u);
    if (recs.empty()) return {};
    EXPECT_EQ(recs[0].first, R::kId);
    return recs[0].second;
}

// The body of the first record `r` writes.
template <class R> Bytes firstBody(R &r) {
    Opened out(writeBook([&](tabrix::Xls<char> &x) { r.write(x); }));
    return out.records().at(0).second;
}

// Reads the record that starts `wb` with read(stream, body size).
template <class F> void readSized(const Bytes &wb, F read) {
    Opened in(rawBook(wb));
    uint16_t id = 0, size = 0;
    in.x.readInt16(id);
    in.x.readInt16(size);
    read(in.x, size);
}

template <class R> std::string readError(const Bytes &data) {
    return errorOf([&] { readBack<R>(data); });
}

} // namespace bifftest

#endif
