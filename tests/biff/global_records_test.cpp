// Workbook-global records: byte-exact round trips through a workbook
// stream, the size messages, the prefix reads of old BOF records, the
// CONTINUE rules of ExternSheet, BookExt's variable tail, names and the
// SupBook read-ahead.
#include "biff/records/bof.h"
#include "biff/records/obj_protect.h"
#include "biff/records/password.h"
#include "biff/records/prot4rev.h"
#include "biff/records/prot4rev_pass.h"
#include "biff/records/protect.h"
#include "biff/records/scenario_protect.h"
#include "biff/records/win_protect.h"
#include "support/biff_bytes.h"

#include <gtest/gtest.h>

#include <functional>

using namespace tabrix;
using namespace bifftest;

namespace {

// Reads a record of type R from `data` under id R::kId and writes it back;
// answers the data written (header excluded).
template <class R>
std::vector<uint8_t> roundTrip(const std::vector<uint8_t> &data) {
    std::vector<uint8_t> wb;
    record(wb, R::kId, data);
    Opened in(rawBook(wb));
    R r;
    r.read(in.x);
    Opened out(writeBook([&](Xls<char> &x) { r.write(x); }));
    auto recs = out.records();
    EXPECT_EQ(recs.size(), 1u);
    if (recs.empty()) return {};
    EXPECT_EQ(recs[0].first, R::kId);
    return recs[0].second;
}

template <class R>
std::string readError(const std::vector<uint8_t> &data) {
    return errorOf([&] {
        std::vector<uint8_t> wb;
        record(wb, R::kId, data);
        Opened in(rawBook(wb));
        R r;
        r.read(in.x);
    });
}

template <class R>
R readBack(const std::vector<uint8_t> &data) {
    std::vector<uint8_t> wb;
    record(wb, R::kId, data);
    Opened in(rawBook(wb));
    R r;
    r.read(in.x);
    return r;
}

std::vector<uint8_t> seq(size_t n, uint8_t start = 1) {
    std::vector<uint8_t> v(n);
    for (size_t i = 0; i < n; ++i) v[i] = uint8_t(start + i * 7);
    return v;
}

} // namespace

TEST(GlobalRecordsTest, FixedSizeRecordsRoundTripAndCheckTheirSize) {
    struct Case {
        const char *name;
        size_t size;
        std::function<std::vector<uint8_t>(const std::vector<uint8_t> &)> trip;
        std::function<std::string(const std::vector<uint8_t> &)> error;
    };
    const Case cases[] = {
        {"WinProtect", 2, roundTrip<WinProtect>, readError<WinProtect>},
        {"Protect", 2, roundTrip<Protect>, readError<Protect>},
        {"Password", 2, roundTrip<Password>, readError<Password>},
        {"Prot4Rev", 2, roundTrip<Prot4Rev>, readError<Prot4Rev>},
        {"Prot4RevPass", 2, roundTrip<Prot4RevPass>, readError<Prot4RevPass>},
        {"ScenarioProtect", 2, roundTrip<ScenarioProtect>, readError<ScenarioProtect>},
        {"ObjProtect", 2, roundTrip<ObjProtect>, readError<ObjProtect>},
        {"Bof", 16, roundTrip<Bof>, readError<Bof>},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        auto data = seq(c.size);
        EXPECT_EQ(c.trip(data), data);
        EXPECT_EQ(c.error(seq(c.size - 1)), std::string(c.name) + " size is incorrect");
        if (c.size == 2) {
            EXPECT_EQ(c.error(seq(3)), std::string(c.name) + " size is incorrect");
        }
    }
}

TEST(GlobalRecordsTest, WordRecordsKeepTheirNamedField) {
    EXPECT_EQ(readBack<Password>({0x34, 0x12}).wPassword, 0x1234);
    EXPECT_EQ(readBack<WinProtect>({1, 0}).fLockWn, 1);
    EXPECT_EQ(readBack<Prot4RevPass>({0xCD, 0xAB}).protPwdRev, 0xABCD);
    Protect p = readBack<Protect>({1, 0});
    EXPECT_TRUE(p.protect());
    p.setProtect(false);
    EXPECT_EQ(p.fLock, 0);
    p.setProtect(true);
    EXPECT_EQ(p.fLock, 1);
    EXPECT_EQ(p.dumpText(), L"[Protect fLock=1]\n");
    EXPECT_TRUE(ScenarioProtect::checkBegin(221));
    EXPECT_TRUE(ObjProtect::checkBegin(99));
}

TEST(GlobalRecordsTest, BofReadsAPrefixAndWritesAFullRecord) {
    struct Case {
        uint16_t size;
        bool ok;
    };
    const Case cases[] = {{0, true},  {4, true},  {5, false}, {8, true},  {9, false},
                          {10, false}, {12, true}, {14, false}, {16, true}, {20, true}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.size);
        auto data = seq(c.size);
        if (!c.ok) {
            EXPECT_EQ(readError<Bof>(data), "Bof size is incorrect");
            continue;
        }
        Bof b = readBack<Bof>(data);
        std::vector<uint8_t> full(16, 0);
        for (size_t i = 0; i < 16 && i < data.size(); ++i) full[i] = data[i];
        Opened out(writeBook([&](Xls<char> &x) { b.write(x); }));
        auto recs = out.records();
        ASSERT_EQ(recs.size(), 1u);
        EXPECT_EQ(recs[0].second, full);
    }
    // An old 8-byte header: version 0x0500, a worksheet.
    Bof old = readBack<Bof>({0x00, 0x05, 0x10, 0x00, 0xBB, 0x0D, 0xCC, 0x07});
    EXPECT_EQ(old.vers, 0x0500);
    EXPECT_EQ(old.dt, Bof::kWorksheet);
    EXPECT_EQ(old.fields1, 0u);
    EXPECT_EQ(old.fields2, 0u);
    // A record after a long BOF is still found.
    std::vector<uint8_t> wb;
    record(wb, Bof::kId, seq(20));
    record(wb, Protect::kId, {1, 0});
    Opened in(rawBook(wb));
    Bof b;
    b.read(in.x);
    Protect p;
    p.read(in.x);
    EXPECT_TRUE(p.protect());
}

TEST(GlobalRecordsTest, NewBofAndItsDump) {
    Bof b;
    b.vers = 1;
    b.reset();
    Opened out(writeBook([&](Xls<char> &x) { b.write(x); }));
    std::vector<uint8_t> want;
    for (uint16_t v : {0x0600, 5, 8346, 1997}) put16(want, v);
    put32(want, 49353);
    put32(want, 774);
    EXPECT_EQ(out.records().at(0).second, want);
    std::wostringstream os;
    os << std::hex;
    b.dumpOn(os);
    EXPECT_EQ(os.str(), L"[BOF vers=1536 dt=5 rupBuild=8346 rupYear=1997 fields1=49353 fields2=774]\n");
}
