// Sheet setup: a selection normalised as it is read, the protection run and
// the setup records read up to a foreign record, and the setters of
// SheetSetup with the records they leave behind and their messages.
#include "biff/records/page_breaks.h"
#include "biff/records/page_setup.h"
#include "biff/records/pane.h"
#include "biff/records/scl.h"
#include "biff/records/selection.h"
#include "biff/records/sheet_protection.h"
#include "biff/records/window2.h"
#include "biff/sheet_setup.h"
#include "support/record_trip.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

MemPool &pool() {
    static MemPool p;
    return p;
}

// The records that `body` writes.
Records written(const std::function<void(Xls<char> &)> &body) {
    Opened out(writeBook(body));
    return out.records();
}

// A Setup record's 34 bytes with the given paper, scale and flags, and
// margins of 0.5.
Bytes setupBytes(uint16_t paper, uint16_t scale, uint16_t flags) {
    const Bytes half = {0, 0, 0, 0, 0, 0, 0xE0, 0x3F};
    return words({paper, scale, 1, 1, 1, flags, 0, 0}) + half + half + words({0});
}

// Feeds a stream of records to a SheetSetup as a sheet's load does; the
// records it does not own come back in order.
Records load(SheetSetup &s, const std::vector<uint8_t> &wb, bool old = false) {
    Opened in(rawBook(wb));
    s.beginRead();
    Records foreign;
    for (;;) {
        auto h = in.bytes(4);
        uint16_t id = uint16_t(h[0] | (h[1] << 8)), size = uint16_t(h[2] | (h[3] << 8));
        if (id == 0 || in.x.eof()) break;
        if (!s.read(in.x, id, size, old)) foreign.push_back({id, in.bytes(size)});
    }
    return foreign;
}

// Everything a sheet writes of its setup, in save order.
Records saveAll(const SheetSetup &s) {
    return written([&](Xls<char> &x) {
        s.writePrintRowCol(x);
        s.writePrintGrid(x);
        s.writeWsBool(x);
        s.writeBreaks(x);
        s.writePageSetup(x);
        s.writeWindow2(x);
        s.writeScl(x);
        s.writePaneSelections(x);
    });
}

std::vector<uint16_t> ids(const Records &recs) {
    std::vector<uint16_t> v;
    for (auto &r : recs) v.push_back(r.first);
    return v;
}

} // namespace

TEST(SheetSetupTest, SelectionNormalisesWhatItReads) {
    // Selection: ranges past the record's size are not read, bytes behind
    // the ranges are skipped; the written size is 9 + 6 per range.
    const Bytes sel =
        Bytes{0, 1, 0, 1, 0, 0, 0, 3, 0} + words({1, 2}) + Bytes{3, 4, 0xAA, 0xBB, 0xCC};
    Records out = tripRecords<Selection>(sel);
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(out[0].second.size(), 15u);
    EXPECT_EQ(out[0].second[7], 1); // cref follows the one range read
}

TEST(SheetSetupTest, ProtectionRun) {
    SheetSetup s(pool());
    Records foreign = load(s, rec(18, words({1})) + rec(99, words({1})) + rec(19, words({0xCE4B})) +
                                  rec(85, words({8})));
    ASSERT_EQ(ids(foreign), (std::vector<uint16_t>{85}));
    EXPECT_TRUE(s.protect());
    s.setProtect(false);
    EXPECT_FALSE(s.protect());
    Records out = written([&](Xls<char> &x) { s.protection().write(x); });
    EXPECT_EQ(ids(out), (std::vector<uint16_t>{18, 99, 19}));
    EXPECT_EQ(out[0].second, words({0}));
    EXPECT_EQ(out[2].second, words({0xCE4B})); // the password is kept

    // New: nothing is written; unprotecting makes no record, protecting does.
    SheetSetup fresh(pool());
    fresh.setProtect(false);
    Records none = written([&](Xls<char> &x) {
        fresh.protection().write(x);
        x.write(85, words({8}).data(), 2);
    });
    EXPECT_EQ(ids(none), (std::vector<uint16_t>{85}));
    fresh.setProtect(true);
    out = written([&](Xls<char> &x) { fresh.protection().write(x); });
    EXPECT_EQ(ids(out), (std::vector<uint16_t>{18}));
    EXPECT_EQ(out[0].second, words({1}));
}

TEST(SheetSetupTest, MarginsHeaderAndFooter) {
    SheetSetup s(pool());
    s.setMarginTop(0.4);
    s.setMarginRight(1.5);
    s.setHeader("&LLeft \xC3\xA9", 0.3, true);
    s.setFooter(L"Page &P of &N", 0.2);
    s.setHCenter(true);
    s.setPrintGridlines(true);
    s.setPrintRowCol(true);

    Records out = saveAll(s);
    EXPECT_EQ(ids(out),
              (std::vector<uint16_t>{42, 43, 129, 20, 21, 131, 132, 39, 40, 161, 574, 29}));
    EXPECT_EQ(out[0].second, words({1}));
    EXPECT_EQ(out[1].second, words({1}));

    SheetSetup back(pool());
    load(back, stream(out));
    EXPECT_EQ(saveAll(back), out);

    // A text over 65535 characters is refused and the old one stays.
    std::wstring tooLong(65536, L'x');
    EXPECT_EQ(errorOf([&] { back.setHeader(tooLong.c_str(), 0.1); }), "string is too long");
    EXPECT_EQ(errorOf([&] { back.setFooter(std::string(65536, 'y').c_str(), 0.1, true); }),
              "string is too long");
    EXPECT_STREQ(back.header(), L"&LLeft \u00e9");
    EXPECT_STREQ(back.footer(), L"Page &P of &N");

    // A copy into another pool keeps the texts.
    MemPool other;
    SheetSetup copy(back, other);
    back.setHeader(L"changed", 0.1);
    EXPECT_STREQ(copy.header(), L"&LLeft \u00e9");
}

TEST(SheetSetupTest, PageBreaks) {
    SheetSetup s(pool());
    struct Step {
        bool horizontal;
        int position;
        bool on;
        const char *error; // "" when it succeeds
    };
    const Step steps[] = {
        {true, 10, true, ""},
        {true, 3, true, ""},
        {true, 10, true, "pagebreak already exists"},
        {true, 7, false, "pagebreak not found"},
        {false, 2, true, ""},
        {false, 256, true, "col must be in range 0-255"},
        {true, -1, true, "row must be in range 0-65535"},
        {false, 2, false, ""},
        {false, 2, false, "pagebreak not found"},
    };
    for (const Step &st : steps) {
        SCOPED_TRACE(st.position);
        EXPECT_EQ(errorOf([&] {
                      if (st.horizontal)
                          s.setHorPageBreak(st.position, st.on);
                      else
                          s.setVerPageBreak(st.position, st.on);
                  }),
                  st.error);
    }
    EXPECT_EQ(s.horPageBreakSize(), 2);
    EXPECT_EQ(s.verPageBreakSize(), 0);
    EXPECT_EQ(s.horPageBreak(0), 10); // in the order they were set
    EXPECT_EQ(s.horPageBreak(1), 3);
    EXPECT_EQ(errorOf([&] { s.horPageBreak(2); }), "index is out of range");
    EXPECT_EQ(errorOf([&] { s.verPageBreak(-1); }), "index is out of range");
    Records out = written([&](Xls<char> &x) { s.writeBreaks(x); });
    ASSERT_EQ(ids(out), (std::vector<uint16_t>{27}));
    EXPECT_EQ(out[0].second, breakBytes({3, 10}));

    for (int c = 0; c < 256; ++c) s.setVerPageBreak(c, true);
    for (int r = 0; r < 1024; ++r) s.setHorPageBreak(1000 + r, true);
    EXPECT_EQ(s.horPageBreakSize(), 1026);
    EXPECT_EQ(errorOf([&] { s.setHorPageBreak(60000, true); }),
              "number of pagebreaks is exceed limit");
    out = written([&](Xls<char> &x) { s.writeBreaks(x); });
    ASSERT_EQ(ids(out), (std::vector<uint16_t>{27, 26}));
    EXPECT_EQ(out[0].second.size(), 2u + 6u * 1026u);
    EXPECT_EQ(out[1].second.size(), 2u + 6u * 256u);
}

TEST(SheetSetupTest, DispatchKeepsForeignRecordsAndChecksWords) {
    SheetSetup s(pool());
    Records foreign = load(s, rec(85, words({8})) + rec(129, words({0x0C01})) + rec(20, {}) +
                                  rec(161, setupBytes(0, 100, 6)) + rec(512, seq(14)) +
                                  rec(574, seq(18)) + rec(29, {3, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(ids(foreign), (std::vector<uint16_t>{85, 512}));
    EXPECT_EQ(s.wsBool(), 0x0C01);
    EXPECT_EQ(s.selections().size(), 1u);
    EXPECT_TRUE(s.selections()[0].refs.empty());
    EXPECT_TRUE(SheetSetup::owns(77) && SheetSetup::owns(221) && !SheetSetup::owns(85));

    // Words of the wrong size, and a protection record longer than the file.
    const std::pair<Bytes, const char *> broken[] = {
        {rec(42, seq(3)), "PrintRowCol size is incorrect"},
        {rec(43, seq(3)), "PrintGrid size is incorrect"},
        {rec(129, seq(3)), "WsBool size is incorrect"},
        {{18, 0, 0x60, 0xEA, 1, 0}, "SheetProtection: file is corrupt"},
    };
    for (auto &w : broken) {
        const Bytes &bad = w.first;
        EXPECT_EQ(errorOf([&] {
                      SheetSetup t(pool());
                      load(t, bad);
                  }),
                  w.second);
    }
}
