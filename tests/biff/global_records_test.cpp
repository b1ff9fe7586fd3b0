// Workbook-global records: the prefix reads of old BOF records, WriteAccess
// of any length, the CONTINUE rules of ExternSheet, names and the SupBook
// read-ahead, with their messages.
#include "biff/records/bof.h"
#include "biff/records/extern_sheet.h"
#include "biff/records/lbl.h"
#include "biff/records/sup_book_block.h"
#include "biff/records/write_access.h"
#include "biff/records/protect.h"
#include "book/mem_pool.h"
#include "support/record_trip.h"

#include <gtest/gtest.h>

using namespace tabrix;
using namespace bifftest;

namespace {

constexpr uint16_t kContinue = 60;

// Record `id` of `data` read by an R, then the Protect behind it, which must
// still be found.
template <class R> R readBeforeProtect(uint16_t id, const Bytes &data) {
    Opened in(rawBook(rec(id, data) + rec(Protect::kId, {1, 0})));
    R r;
    r.read(in.x);
    Protect p;
    p.read(in.x);
    EXPECT_TRUE(p.protect());
    return r;
}

} // namespace

TEST(GlobalRecordsTest, BofOfAnOlderFormatAndANewOne) {
    // An old 8-byte header: version 0x0500, a worksheet; written in full.
    const Bytes old = {0x00, 0x05, 0x10, 0x00, 0xBB, 0x0D, 0xCC, 0x07};
    Bof b = readBack<Bof>(old);
    EXPECT_EQ(b.vers, 0x0500);
    EXPECT_EQ(b.dt, Bof::kWorksheet);
    EXPECT_EQ(firstBody(b), old + Bytes(8, 0));
    // A record after a long BOF is still found.
    b = readBeforeProtect<Bof>(Bof::kId, seq(20));

    b.vers = 1;
    b.reset();
    EXPECT_EQ(firstBody(b), words({0x0600, 5, 8346, 1997, 49353, 0, 774, 0}));
    std::wostringstream os;
    os << std::hex;
    b.dumpOn(os);
    EXPECT_EQ(os.str(),
              L"[BOF vers=1536 dt=5 rupBuild=8346 rupYear=1997 fields1=49353 fields2=774]\n");
}

TEST(GlobalRecordsTest, NewAndReadWriteAccess) {
    WriteAccess w;
    auto d = firstBody(w);
    ASSERT_EQ(d.size(), 112u);
    const std::vector<uint8_t> head = {1, 0, 0, 'T', ' ', 0, 0, 0, 0, ' '};
    EXPECT_EQ(std::vector<uint8_t>(d.begin(), d.begin() + 10), head);
    EXPECT_EQ(d[111], ' ');
    EXPECT_EQ(w.dumpText(), L"[WriteAccess userName=T]\n");
    // A short record fills the start; a long one keeps 112 bytes and the
    // record behind it is still found.
    WriteAccess s = readBack<WriteAccess>({2, 0, 0, 'A', 'B'});
    EXPECT_EQ(Bytes(s.block + 3, s.block + 6), (Bytes{'A', 'B', 0}));
    WriteAccess l = readBeforeProtect<WriteAccess>(WriteAccess::kId, seq(300));
    EXPECT_EQ(std::vector<uint8_t>(l.block, l.block + 112), seq(112));
}

namespace {

std::vector<XTI> manyXti(size_t n) {
    std::vector<XTI> v;
    for (size_t i = 0; i < n; ++i) v.push_back(XTI(uint16_t(i % 3), uint16_t(i), uint16_t(i + 1)));
    return v;
}

} // namespace

TEST(GlobalRecordsTest, ExternSheetContinuesWithoutSplittingAnEntry) {
    struct Case {
        size_t count;
        std::vector<uint16_t> sizes; // of the record and its CONTINUEs
    };
    const Case cases[] = {
        {0, {2}},
        {1, {8}},
        {1370, {8222}},
        {1371, {8222, 6}},
        {1400, {8222, 180}},
        {2800, {8222, 8220, 360}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.count);
        ExternSheet e;
        e.rgXTI = manyXti(c.count);
        std::string file = writeBook([&](Xls<char> &x) {
            e.write(x);
            Protect().write(x);
        });
        Opened out(file);
        auto recs = out.records();
        ASSERT_EQ(recs.size(), c.sizes.size() + 1);
        for (size_t i = 0; i < c.sizes.size(); ++i) {
            EXPECT_EQ(recs[i].first, i ? kContinue : ExternSheet::kId);
            EXPECT_EQ(recs[i].second.size(), c.sizes[i]);
        }
        Opened in(file);
        ExternSheet back;
        back.read(in.x);
        EXPECT_EQ(back.rgXTI, e.rgXTI);
        Protect p;
        p.read(in.x); // the CONTINUEs were consumed
    }
}

TEST(GlobalRecordsTest, ExternSheetReadsEntriesSplitBetweenFieldsAndRejectsBrokenOnes) {
    // Two entries, the second split after its first field.
    ExternSheet e;
    {
        Opened in(
            rawBook(rec(ExternSheet::kId, words({2, 0, 1, 2, 0})) + rec(kContinue, words({3, 4}))));
        e.read(in.x);
    }
    EXPECT_EQ(e.rgXTI, (std::vector<XTI>{XTI(0, 1, 2), XTI(0, 3, 4)}));

    struct Bad {
        const char *name;
        std::vector<uint8_t> wb;
        const char *message;
    };
    const Bad bad[] = {
        {"count cut", rec(ExternSheet::kId, {1}), "error in record ExternSheet"},
        {"field split", rec(ExternSheet::kId, {1, 0, 0, 0, 1, 0, 2}) + rec(kContinue, {0, 3, 0}),
         "error in XTI"},
        {"entries missing",
         rec(ExternSheet::kId, {2, 0, 0, 0, 1, 0, 2, 0}) + rec(Protect::kId, {1, 0}),
         "error in XTI"},
    };
    for (const Bad &b : bad) {
        SCOPED_TRACE(b.name);
        EXPECT_EQ(errorOf([&] {
                      Opened in(rawBook(b.wb));
                      ExternSheet x;
                      x.read(in.x);
                  }),
                  b.message);
    }
}

TEST(GlobalRecordsTest, SupBookBlockFailsWhenItsRecordsPassTheFileSize) {
    // A follower that declares more bytes than the file holds.
    Bytes wb = rec(SupBookBlock::kSupBookId, {3, 0, 1, 4}) + words({89, 60000});
    EXPECT_EQ(
        errorOf([&] { readSized(wb, [](auto &x, uint16_t n) { SupBookBlock().read(x, n); }); }),
        "SupBookBlock: file is corrupt");
}

namespace {

std::vector<uint8_t> lblData(uint16_t flags, const std::vector<uint8_t> &nameBytes, uint8_t cch,
                             const std::vector<uint8_t> &rgce,
                             const std::vector<uint8_t> &extra = {}) {
    // flags, chKey, cch, cce, reserved, itab (2), four reserved bytes.
    Bytes d = words({flags}) + Bytes{0, cch} + words({uint16_t(rgce.size()), 0, 2});
    return d + Bytes{0, 1, 2, 3} + nameBytes + rgce + extra;
}

Lbl readLbl(const std::vector<uint8_t> &wb, MemPool &pool, bool old = false) {
    Lbl l;
    readSized(wb, [&](XlsRecords &x, uint16_t size) { l.read(x, size, pool, old); });
    return l;
}

} // namespace

TEST(GlobalRecordsTest, LblNamesFlagsAndFailures) {
    MemPool pool;
    Lbl l = readLbl(rec(Lbl::kId, lblData(0x20, {0, 6}, 1, {})), pool);
    EXPECT_TRUE(l.isContains(L"print_AREA"));
    EXPECT_FALSE(l.isContains(L"Print_Area2"));
    EXPECT_FALSE(l.isContains(L"Print_Are"));
    EXPECT_EQ(l.dumpText(),
              L"[Lbl flags=32 chKey=0 cch=1 cce=0 reserved=0 itab=2 name=Print_Area rgce=()]\n");

    Lbl fresh;
    EXPECT_EQ(fresh.size(), 14u);
    fresh.setName(L"print_titles", pool);
    EXPECT_TRUE(fresh.builtin());
    EXPECT_EQ(fresh.nameText(), L"Print_Titles");
    EXPECT_EQ(fresh.size(), 17u); // flags byte and one wide character
    fresh.setName(L"Total", pool);
    EXPECT_FALSE(fresh.builtin());
    EXPECT_EQ(fresh.nameText(), L"Total");
    EXPECT_EQ(errorOf([&] { fresh.setName(std::wstring(256, L'x').c_str(), pool); }),
              "string is too long");

    // A long formula runs on in a CONTINUE and reads back equal.
    Lbl big;
    big.setName(L"Big", pool);
    big.rgce.assign(9000, 0x17);
    big.rgce[8999] = 1;
    Opened out(writeBook([&](Xls<char> &x) { big.write(x); }));
    auto recs = out.records();
    ASSERT_EQ(recs.size(), 2u);
    EXPECT_EQ(recs[0].second.size(), 8224u);
    EXPECT_EQ(recs[1].first, kContinue);
    Lbl back = readLbl(stream(recs), pool);
    EXPECT_EQ(back.rgce, big.rgce);
    EXPECT_EQ(back.nameText(), L"Big");

    struct Bad {
        const char *name;
        std::vector<uint8_t> data;
    };
    const Bad bad[] = {
        {"short", seq(13)},
        {"formula past the end",
         [] {
             auto d = lblData(0, {0, 'A'}, 1, {1, 2, 3});
             d.pop_back();
             return d;
         }()},
    };
    for (const Bad &b : bad) {
        SCOPED_TRACE(b.name);
        EXPECT_EQ(errorOf([&] {
                      readLbl(rec(Lbl::kId, b.data) + rec(Protect::kId, {0, 0}), pool);
                  }),
                  "Lbl size is incorrect");
    }
}
