// Binary strings and the shared string table: every size class written and
// read back, the exact places where CONTINUE records fall, tolerant reading
// of what real producers write, and deduplication.
#include "biff/strings/ext_string.h"
#include "biff/strings/short_xl_unicode_string.h"
#include "biff/records/sst.h"
#include "biff/strings/str_map.h"
#include "biff/strings/xl_unicode_string.h"
#include "biff/strings/xl_unicode_string_no_cch.h"
#include "biff/support/record_trip.h"
#include "biff/xls.h"
#include "book/tberror.h"

#include <gtest/gtest.h>

#include <functional>

using namespace tabrix;
using namespace bifftest;

namespace {

std::wstring text(size_t n, wchar_t base, unsigned step) {
    std::wstring s;
    for (size_t i = 0; i < n; ++i) s += wchar_t(base + (i * step) % 90);
    return s;
}

// An SST holding `strings`, written then read back; checks the framing of
// every record on the way.
struct RoundTrip {
    MemPool pool;
    SST back{pool};
    std::vector<std::pair<uint16_t, std::vector<uint8_t>>> records;

    void run(SST &sst) {
        std::string file = writeBook([&](Xls<char> &x) {
            sst.write(x);
            x.write(0x0A, 0);
        });
        Opened walk(file);
        records = walk.records();
        Opened o(file);
        back.read(o.x);
        EXPECT_EQ(o.x.peekInt16(), 0x0A); // the stream stays in step
    }
};

// A 1-byte string of n letters first in `sst`: it takes 3 + n bytes.
void addFiller(SST &sst, size_t n) {
    sst.insert(text(n, L'a', 1).c_str(), false);
    ExtString f = sst.strings().extract(0);
    f.flags = 0;
    sst.strings().insert(0, f);
}

ExtString richString(MemPool &pool, const std::wstring &t, size_t runs, size_t phonetic,
                     uint8_t width) {
    ExtString s;
    s.setString(t.c_str(), pool);
    s.flags = width;
    if (runs || phonetic) {
        s.format = new ExtStringFormat;
        pool.addPointer(s.format);
    }
    if (runs) {
        s.flags |= ExtString::kRichText;
        for (size_t i = 0; i < runs; ++i)
            s.format->runs.push_back({uint16_t(i), uint16_t(i * 3 + 1)});
    }
    if (phonetic) {
        s.flags |= ExtString::kPhonetic;
        s.format->phonetic = new ExtStringPhonetic;
        pool.addPointer(s.format->phonetic);
        s.format->phonetic->size = int32_t(phonetic);
        for (size_t i = 0; i < phonetic; ++i) s.format->phonetic->data.push_back(uint8_t(i * 13));
    }
    return s;
}

void expectSame(const ExtString &a, const ExtString &b, const std::string &what) {
    ASSERT_TRUE(a.text && b.text) << what;
    EXPECT_EQ(std::wstring(a.text), std::wstring(b.text)) << what;
    EXPECT_EQ(a.flags, b.flags) << what;
    ASSERT_EQ(a.format == nullptr, b.format == nullptr) << what;
    if (!a.format) return;
    ASSERT_EQ(a.format->runs.size(), b.format->runs.size()) << what;
    for (size_t i = 0; i < a.format->runs.size(); ++i) {
        EXPECT_EQ(a.format->runs[i].ich, b.format->runs[i].ich) << what;
        EXPECT_EQ(a.format->runs[i].ifnt, b.format->runs[i].ifnt) << what;
    }
    ASSERT_EQ(a.format->phonetic == nullptr, b.format->phonetic == nullptr) << what;
    if (a.format->phonetic) {
        EXPECT_EQ(a.format->phonetic->data, b.format->phonetic->data) << what;
    }
}

} // namespace

TEST(Sst, StringsOfEverySizeClassRoundTrip) {
    // A filler before the string moves its start through the record, so
    // splits fall in the header's neighbourhood, the characters, the runs
    // and the phonetic block.
    struct Case {
        size_t filler, length, runs, phonetic;
        uint8_t width;
    };
    const Case cases[] = {
        {0, 0, 0, 0, 1},         {0, 1, 0, 0, 0},        {0, 8000, 0, 0, 0},
        {0, 8213, 0, 0, 0},      {0, 8214, 0, 0, 0},     {0, 20000, 0, 0, 1},
        {0, 32767, 0, 0, 1},     {0, 32767, 0, 0, 0},    {0, 65535, 0, 0, 1},
        {4100, 2100, 0, 0, 1},   {4101, 2100, 0, 0, 1},  {8190, 100, 0, 0, 1},
        {8190, 100, 0, 0, 0},    {8195, 40, 0, 0, 1},    {8196, 40, 0, 0, 1},
        {8000, 50, 200, 0, 1},   {8100, 10, 3000, 0, 0}, {8150, 10, 0, 20000, 1},
        {8100, 30, 50, 9000, 1}, {8198, 0, 0, 7, 0},     {100, 9000, 4000, 17000, 1},
    };
    for (const Case &c : cases) {
        MemPool pool;
        SST sst(pool);
        if (c.filler) addFiller(sst, c.filler);
        std::wstring t = c.width ? text(c.length, 0x3041, 7) : text(c.length, L'A', 3);
        ExtString s = richString(pool, t, c.runs, c.phonetic, c.width);
        bool inserted = false;
        sst.strings().insert(s, true, inserted);
        RoundTrip rt;
        rt.run(sst);
        std::string what = std::to_string(c.filler) + "/" + std::to_string(c.length);
        ASSERT_EQ(rt.back.strings().count(), sst.strings().count()) << what;
        for (unsigned i = 0; i < sst.strings().count(); ++i)
            expectSame(sst.strings().extract(i), rt.back.strings().extract(i), what);
        ASSERT_FALSE(rt.records.empty());
        EXPECT_EQ(rt.records[0].first, 252);
        for (size_t i = 0; i < rt.records.size(); ++i) {
            EXPECT_LE(rt.records[i].second.size(), 8224u) << what;
            if (i && i + 1 < rt.records.size()) {
                EXPECT_EQ(rt.records[i].first, 60) << what;
            }
        }
    }
}

TEST(Sst, ReadsWhatOtherProducersWrite) {
    // Hand-made tables: a CONTINUE flag changing the width, an empty
    // CONTINUE, counts that disagree with the strings, trailing bytes.
    struct Case {
        std::string name;
        std::vector<std::vector<uint8_t>> records; // SST data, then CONTINUEs
        std::vector<std::wstring> strings;
    };
    auto head = [](uint16_t total, uint32_t unique) {
        return words({total, 0, uint16_t(unique), uint16_t(unique >> 16)});
    };
    const Bytes abc = {3, 0, 0, 'a', 'b', 'c'};
    const Case cases[] = {
        {"width changes",
         {head(1, 1) + Bytes{4, 0, 0, 'x', 'y'}, {1, 0x3A, 0x30, 0x3B, 0x30}},
         {L"xy\x303A\x303B"}},
        {"empty continue", {head(2, 2) + Bytes{2, 0, 0, 'p'}, {}, {0, 'q'}, abc}, {L"pq", L"abc"}},
        {"flags before characters", {head(1, 1) + Bytes{2, 0, 0}, {1, 0x41, 0, 0x42, 0}}, {L"AB"}},
        {"more unique than present", {head(5, 5) + abc}, {L"abc"}},
        {"fewer unique than present", {head(1, 1) + abc + abc, abc}, {L"abc"}},
        {"trailing bytes", {head(1, 1) + abc + Bytes{9, 9, 9}}, {L"abc"}},
        {"no strings", {head(0, 0)}, {}},
        {"negative count", {head(0, 0xFFFFFFFF) + abc}, {}},
        {"duplicates kept", {head(2, 2) + abc + abc}, {L"abc", L"abc"}},
    };
    for (const Case &c : cases) {
        std::vector<uint8_t> wb;
        for (size_t i = 0; i < c.records.size(); ++i) record(wb, i ? 60 : 252, c.records[i]);
        record(wb, 0x0A, {});
        Opened o(rawBook(wb));
        MemPool pool;
        SST sst(pool);
        sst.read(o.x);
        std::vector<std::wstring> got;
        for (unsigned i = 0; i < sst.strings().count(); ++i) got.push_back(sst.extract(i));
        EXPECT_EQ(got, c.strings) << c.name;
        EXPECT_EQ(o.x.peekInt16(), 0x0A) << c.name;
    }
    Opened o(rawBook(rec(252, {1, 0, 0, 0, 1, 0, 0})));
    MemPool pool;
    EXPECT_EQ(errorOf([&] { SST(pool).read(o.x); }), "SST size is incorrect");
}

TEST(Sst, TruncatedAndHostileTablesEnd) {
    // Declared lengths far beyond the data: the reader stops with what is
    // there and memory follows the data, not the counts.
    const std::vector<std::vector<uint8_t>> datas = {
        {1, 0, 0, 0, 1, 0, 0, 0, 0xFF, 0xFF, 1, 'a'},
        {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0x0C, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 'a'},
        {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0x04, 0xFF, 0xFF, 0xFF, 0xFF, 'a'},
    };
    for (const auto &d : datas) {
        MemPool pool;
        SST sst(pool);
        Opened o(rawBook(rec(252, d)));
        EXPECT_NO_THROW(sst.read(o.x));
        EXPECT_LE(sst.strings().count(), 1u);
    }
}

TEST(Sst, DeduplicationAndReplacement) {
    MemPool pool;
    SST sst(pool);
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(sst.insert(L"same", false), 0u);
    EXPECT_EQ(sst.cstTotal, 1000);
    EXPECT_EQ(sst.cstUnique, 1);
    EXPECT_EQ(sst.insert(L"other", false), 1u);
    EXPECT_EQ(sst.insert(L"same", true), 2u); // forced: a second entry
    sst.insert(1u, L"changed");
    EXPECT_EQ(std::wstring(sst.extract(1)), L"changed");
    EXPECT_EQ(sst.insert(L"changed", false), 1u);
    EXPECT_EQ(sst.insert(L"other", false), 3u); // no longer present
    EXPECT_EQ(errorOf([&] { sst.extract(99); }), "SST: string index is out of range");
    EXPECT_EQ(sst.dumpText(), L"[SST cstTotal=1004 cstUnique=4 rgb=(\"same\" \"changed\" "
                              L"\"same\" \"other\")]\n");
    sst.reset();
    EXPECT_EQ(sst.strings().count(), 0u);
    EXPECT_EQ(sst.insert(L"same", false), 0u);

    // New texts go in without a search; asked again, every one is found at
    // its index, also after a forced duplicate and a replacement.
    SST big(pool);
    const int n = 20000;
    for (int i = 0; i < n; ++i)
        EXPECT_EQ(big.insert(std::to_wstring(i).c_str(), false), unsigned(i));
    EXPECT_EQ(big.insert(L"7", true), unsigned(n));
    big.insert(3u, L"three");
    for (int i = n - 1; i >= 0; --i) {
        const unsigned want = i == 7 ? unsigned(n) : i == 3 ? unsigned(n + 1) : unsigned(i);
        ASSERT_EQ(big.insert(std::to_wstring(i).c_str(), false), want) << i;
    }
    EXPECT_EQ(big.insert(L"three", false), 3u);
    EXPECT_EQ(big.cstUnique, n + 2);

    // Equality: runs count, phonetic data never shares, width doesn't count.
    struct Case {
        size_t runsA, runsB, phA, phB;
        uint8_t widthA, widthB;
        bool equal;
    };
    const Case cases[] = {
        {0, 0, 0, 0, 1, 0, true},  {2, 2, 0, 0, 1, 1, true},  {2, 3, 0, 0, 1, 1, false},
        {0, 2, 0, 0, 1, 1, false}, {0, 0, 4, 4, 1, 1, false},
    };
    for (const Case &c : cases) {
        ExtString a = richString(pool, L"t", c.runsA, c.phA, c.widthA);
        ExtString b = richString(pool, L"t", c.runsB, c.phB, c.widthB);
        EXPECT_EQ(EqStr()(a, b), c.equal);
        StrMap m;
        bool ins = false;
        m.insert(a, false, ins);
        m.insert(b, false, ins);
        EXPECT_EQ(m.count(), c.equal ? 1u : 2u);
    }
    ExtString a = richString(pool, L"t", 1, 0, 1), b = richString(pool, L"t", 1, 0, 1);
    b.format->runs[0].ifnt = 9;
    EXPECT_FALSE(EqStr()(a, b));
    EXPECT_EQ(HashFnv()(a), HashFnv()(richString(pool, L"t", 0, 0, 0)));
}

TEST(Sst, OtherStringFormsRoundTrip) {
    MemPool pool;
    EXPECT_EQ(errorOf([&] { ShortXLUnicodeString(std::wstring(256, L'x').c_str(), pool); }),
              "string is too long");
    ShortXLUnicodeString s255(std::wstring(255, L'\x3042').c_str(), pool);
    XLUnicodeString u;
    EXPECT_EQ(errorOf([&] { u.setString(std::string(65536, 'x').c_str(), pool, true); }),
              "string is too long");
    u.setString("h\xC3\xA9llo", pool, true);
    EXPECT_EQ(std::wstring(u.text), L"h\xE9llo");
    EXPECT_EQ(u.size(), 2u + 1u + 10u);
    XLUnicodeString sc = u;
    sc.shortCount = true;
    XLUnicodeString tooLong;
    tooLong.setString(std::wstring(300, L'x').c_str(), pool);
    tooLong.shortCount = true;
    EXPECT_EQ(errorOf([&] { writeBook([&](Xls<char> &x) { tooLong.write(x); }); }),
              "string is too long");
    XLUnicodeStringNoCch n;
    std::wstring long1 = text(9000, 0x0410, 3);
    n.setString(long1.c_str(), pool);

    std::string file = writeBook([&](Xls<char> &x) {
        std::deque<unsigned char> q;
        s255.write(q);
        EXPECT_EQ(q.size(), s255.size());
        x.write(0x85, uint16_t(s255.size() + u.size() + sc.size()));
        s255.write(x);
        u.write(x);
        sc.write(x);
        // A name of 9000 2-byte characters: 8223 bytes in the record, the
        // rest in CONTINUEs that restart with a flags byte.
        x.write(0x18, 8223);
        unsigned short remaining = 8223;
        n.write(x, remaining);
    });
    Opened o(file);
    o.bytes(4);
    ShortXLUnicodeString s2;
    s2.read(o.x, false, pool);
    EXPECT_EQ(std::wstring(s2.text), std::wstring(s255.text));
    unsigned short rem = uint16_t(u.size() + sc.size());
    XLUnicodeString u2, sc2;
    u2.read(o.x, false, false, pool, rem);
    sc2.read(o.x, false, true, pool, rem);
    EXPECT_EQ(std::wstring(u2.text), L"h\xE9llo");
    EXPECT_EQ(std::wstring(sc2.text), L"h\xE9llo");
    EXPECT_EQ(rem, 0);
    auto h = o.bytes(4);
    rem = uint16_t(h[2] | (h[3] << 8));
    XLUnicodeStringNoCch n2;
    n2.read(o.x, 9000, pool, false, rem);
    EXPECT_EQ(std::wstring(n2.text), long1);

    // Reading edge cases from hand-made bytes.
    struct Case {
        std::vector<uint8_t> wb;
        std::function<std::wstring(Xls<char> &, unsigned short &)> read;
        unsigned short start;
        std::wstring text;
        std::string message;
    };
    auto plain = [&pool](Xls<char> &x, unsigned short &r) {
        XLUnicodeString s;
        s.read(x, false, false, pool, r);
        return std::wstring(s.text);
    };
    auto noCch = [&pool](Xls<char> &x, unsigned short &r) {
        XLUnicodeStringNoCch s;
        s.read(x, 4, pool, false, r);
        return std::wstring(s.text);
    };
    const Case cases[] = {
        {rec(0x18, {0, 0}), plain, 2, L"", ""},
        {rec(0x18, {3, 0, 0, 'a'}) + rec(60, {'b', 'c'}), plain, 4, L"abc", ""},
        // Cut where its record ends.
        {rec(0x18, {3, 0, 0, 'a'}) + rec(0x0A, {'b', 'c'}), plain, 4, L"a", ""},
        {rec(0x18, {2, 0, 1, 'a'}) + rec(60, {0, 'b', 0}), plain, 4, L"",
         "error in XLUnicodeString record #2"},
        {rec(0x18, {0, 'a', 'b'}) + rec(60, {1, 0x42, 0x30, 0x43, 0x30}), noCch, 3,
         L"ab\x3042\x3043", ""},
    };
    for (const Case &c : cases) {
        Opened oc(rawBook(c.wb));
        oc.bytes(4);
        unsigned short r = c.start;
        std::wstring got;
        EXPECT_EQ(errorOf([&] { got = c.read(oc.x, r); }), c.message);
        if (c.message.empty()) {
            EXPECT_EQ(got, c.text);
        }
    }
}
