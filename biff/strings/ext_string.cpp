#include "biff/strings/ext_string.h"
#include "biff/strings/segment_reader.h"
#include "biff/strings/xl_unicode_string.h"

#include <algorithm>
#include <cwchar>

namespace tabrix {

uint16_t ExtString::cch() const { return text ? uint16_t(std::wcslen(text)) : 0; }

void ExtString::setString(const wchar_t *s, MemPool &pool) {
    size_t n = s ? std::wcslen(s) : 0;
    wchar_t *t = pool.allocW(n + 1);
    std::copy(s, s + n, t);
    t[n] = 0;
    text = t;
    flags = kHighByte;
    format = nullptr;
    hash = 0;
}

bool ExtString::read(XlsRecords &xls, uint32_t &remaining, MemPool &pool) {
    SegmentReader in(xls, remaining);
    uint16_t count = in.int16();
    flags = in.byte();
    format = nullptr;
    uint16_t runCount = 0;
    int32_t phoneticSize = 0;
    if (flags & kRichText) runCount = in.int16();
    if (flags & kPhonetic) phoneticSize = int32_t(in.int32());
    if (flags & (kRichText | kPhonetic)) {
        format = new ExtStringFormat;
        pool.addPointer(format);
    }

    wchar_t *t = pool.allocW(size_t(count) + 1);
    size_t got = 0;
    bool wide = flags & kHighByte;
    std::vector<uint8_t> buf;
    while (got < count && in.ok()) {
        if (remaining == 0) {
            // Continued character data restarts with its own flags byte.
            if (!in.next()) break;
            wide = in.byte() & kHighByte;
            continue;
        }
        size_t width = wide ? 2 : 1;
        size_t n = std::min<size_t>((count - got) * width, remaining);
        if (n < width) { // a stray byte: a character can't straddle records
            in.skip(n);
            continue;
        }
        n -= n % width;
        buf.resize(n);
        if (!in.bytes(buf.data(), n)) break;
        for (size_t i = 0; i < n; i += width)
            t[got++] = wide ? wchar_t(buf[i] | (buf[i + 1] << 8)) : wchar_t(buf[i]);
    }
    t[got] = 0;
    text = t;
    // A string that turned to 2-byte characters in a CONTINUE is written
    // back 2 bytes a character, so that nothing is cut.
    if (!(flags & kHighByte))
        for (size_t i = 0; i < got; ++i)
            if (t[i] > 0xFF) {
                flags |= kHighByte;
                break;
            }

    for (uint16_t i = 0; i < runCount && in.ok(); ++i) {
        FormatRun r;
        r.ich = in.int16();
        r.ifnt = in.int16();
        if (in.ok()) format->runs.push_back(r);
    }
    if (flags & kPhonetic) {
        format->phonetic = new ExtStringPhonetic;
        pool.addPointer(format->phonetic);
        ExtStringPhonetic &ph = *format->phonetic;
        ph.size = phoneticSize;
        // Grows by what the stream really holds, not by the declared size.
        uint32_t left = phoneticSize > 0 ? uint32_t(phoneticSize) : 0;
        while (left > 0 && in.ok()) {
            if (remaining == 0 && !in.next()) break;
            size_t n = std::min<uint32_t>(left, remaining);
            size_t at = ph.data.size();
            ph.data.resize(at + n);
            if (!in.bytes(ph.data.data() + at, n)) break;
            left -= uint32_t(n);
        }
    }
    return in.ok() && got == count;
}

namespace {

struct SegmentWriter {
    XlsRecords &xls;
    PatchList &patches;
    void put(const void *b, size_t n) {
        xls.write(b, n);
        patches.back().second += uint32_t(n);
    }
    void put16(uint16_t v) {
        uint8_t b[2] = {uint8_t(v), uint8_t(v >> 8)};
        put(b, 2);
    }
    void open() {
        xls.writeInt16(XlsRecords::kContinueId);
        patches.push_back({xls.writePos(), 0});
        xls.writeInt16(0);
    }
};

} // namespace

void ExtString::write(XlsRecords &xls, uint32_t &remaining, PatchList &patches) const {
    SegmentWriter out{xls, patches};
    const uint32_t full = XlsRecords::kMaxRecordData;
    // The header (count, flags, run count, phonetic size) and at least one
    // character stay in one record.
    if (remaining <= 9) {
        out.open();
        remaining = full;
    }
    uint16_t count = cch();
    out.put16(count);
    out.put(&flags, 1);
    remaining -= 3;
    size_t runs = format ? format->runs.size() : 0;
    const ExtStringPhonetic *ph = format ? format->phonetic : nullptr;
    if (flags & kRichText) {
        out.put16(uint16_t(runs));
        remaining -= 2;
    }
    uint32_t phSize = ph ? uint32_t(ph->data.size()) : 0;
    if (flags & kPhonetic) {
        uint8_t b[4] = {uint8_t(phSize), uint8_t(phSize >> 8), uint8_t(phSize >> 16),
                        uint8_t(phSize >> 24)};
        out.put(b, 4);
        remaining -= 4;
    }

    bool wide = flags & kHighByte;
    std::vector<uint8_t> bytes;
    bytes.reserve(size_t(count) * 2);
    for (uint16_t i = 0; i < count; ++i) {
        bytes.push_back(uint8_t(text[i]));
        if (wide) bytes.push_back(uint8_t(uint32_t(text[i]) >> 8));
    }
    // Keeps a 2-byte character from straddling two records.
    if (remaining < bytes.size() && (remaining & 1)) --remaining;
    size_t done = 0;
    for (;;) {
        size_t n = std::min<size_t>(remaining, bytes.size() - done);
        // Nor a surrogate pair: readers that join the segments' texts one
        // by one cannot decode half a pair, so the record ends a unit early.
        if (wide && n >= 2 && done + n < bytes.size() && splitsPair(text, (done + n) / 2)) n -= 2;
        if (n) out.put(bytes.data() + done, n);
        done += n;
        remaining -= uint32_t(n);
        if (done == bytes.size()) break;
        out.open();
        uint8_t f = flags & kHighByte;
        out.put(&f, 1);
        remaining = full - 2;
    }

    for (size_t i = 0; i < runs && (flags & kRichText); ++i) {
        if (remaining < 4) {
            out.open();
            remaining = full;
        }
        out.put16(format->runs[i].ich);
        out.put16(format->runs[i].ifnt);
        remaining -= 4;
    }
    if (flags & kPhonetic) {
        size_t left = phSize;
        const uint8_t *p = ph ? ph->data.data() : nullptr;
        while (left > 0) {
            if (remaining == 0) {
                out.open();
                remaining = full;
            }
            size_t n = std::min<size_t>(remaining, left);
            out.put(p, n);
            p += n;
            left -= n;
            remaining -= uint32_t(n);
        }
    }
}

} // namespace tabrix
