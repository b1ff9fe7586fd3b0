// Record framing: values split across CONTINUE records, the writer's
// closing of records, raw records, the record base's messages and dumps.
#include "biff/biff_record.h"
#include "biff/records/ext_sst.h"
#include "biff/records/phonetic_info.h"
#include "biff/records/style.h"
#include "biff/support/record_trip.h"
#include "biff/xls.h"
#include "book/tberror.h"

#include <gtest/gtest.h>

#include <functional>

using namespace tabrix;
using namespace bifftest;

TEST(RecordFraming, NumbersSplitAtEveryByteReadBack) {
    const uint8_t v[4] = {0x78, 0x56, 0x34, 0x12};
    for (int split = 0; split <= 4; ++split)
        for (int zeroContinue = 0; zeroContinue < 2; ++zeroContinue) {
            std::vector<uint8_t> wb;
            record(wb, 0x1234, std::vector<uint8_t>(v, v + split));
            // An empty CONTINUE carries nothing and is passed over.
            if (zeroContinue) record(wb, 60, {});
            record(wb, 60, std::vector<uint8_t>(v + split, v + 4));
            record(wb, 10, {});
            Opened o(rawBook(wb));
            o.bytes(4);
            unsigned short remaining = uint16_t(split);
            uint32_t value = 0;
            o.x.readInt32(value, remaining);
            EXPECT_EQ(value, 0x12345678u) << split;
            EXPECT_EQ(remaining, 0) << split;
            // A value that fits its record leaves the CONTINUE unread.
            EXPECT_EQ(o.x.peekInt16(), split == 4 ? 60 : 10) << split;

            Opened p(rawBook(wb));
            p.bytes(4);
            remaining = uint16_t(split);
            uint8_t buf[4] = {};
            EXPECT_EQ(p.x.readWithContinueRecords(buf, 4, remaining), 4);
            EXPECT_EQ(std::vector<uint8_t>(buf, buf + 4), std::vector<uint8_t>(v, v + 4));
        }
}

TEST(RecordFraming, MissingContinueIsReported) {
    const Bytes wb = rec(0x1234, {1}) + rec(0x0A, {2, 3, 4, 5});
    const std::function<void(Xls<char> &, unsigned short &)> ops[] = {
        [](Xls<char> &x, unsigned short &r) {
            uint16_t v;
            x.readInt16(v, r);
        },
        [](Xls<char> &x, unsigned short &r) {
            uint32_t v;
            x.readInt32(v, r);
        },
        [](Xls<char> &x, unsigned short &r) {
            uint8_t b[3];
            x.readWithContinueRecords(b, 3, r);
        },
    };
    const char *messages[] = {"readInt16: CONTINUE record not found",
                              "readInt32: CONTINUE record not found",
                              "readWithContinueRecords: CONTINUE record not found"};
    for (int i = 0; i < 3; ++i) {
        Opened o(rawBook(wb));
        o.bytes(4);
        unsigned short remaining = 1;
        EXPECT_EQ(errorOf([&] { ops[i](o.x, remaining); }), messages[i]);
    }
}

TEST(RecordFraming, WriterClosesRecordsAtTheBoundary) {
    struct Case {
        unsigned short start; // room left when the value is written
        bool wide;            // 32-bit value
        std::vector<uint16_t> sizes;
    };
    const Case cases[] = {
        {1, false, {8224, 1}}, // low byte ends the record, high byte opens the CONTINUE
        {2, false, {8224}},    {3, true, {8224, 1}}, {1, true, {8224, 3}}, {0, true, {8224, 4}},
    };
    for (const Case &c : cases) {
        std::string file = writeBook([&](Xls<char> &x) {
            x.write(0x1234, 8224);
            std::vector<uint8_t> fill(8224u - c.start, 0xEE);
            x.write(fill.data(), fill.size());
            unsigned short remaining = c.start;
            if (c.wide)
                x.writeInt32(0x12345678u, remaining);
            else
                x.writeInt16(0xBEEF, remaining);
            // Closing the last record fixes its size.
            uint32_t p = x.writePos();
            x.patchInt16(p + remaining - 8226u, uint16_t(8224u - remaining));
        });
        std::vector<uint16_t> sizes;
        for (const auto &r : Opened(file).records()) {
            EXPECT_EQ(r.first, sizes.empty() ? 0x1234 : 60);
            sizes.push_back(uint16_t(r.second.size()));
        }
        EXPECT_EQ(sizes, c.sizes) << c.start << " " << c.wide;
        Opened r(file);
        r.bytes(4 + 8224u - c.start);
        unsigned short remaining = c.start;
        if (c.wide) {
            uint32_t v = 0;
            r.x.readInt32(v, remaining);
            EXPECT_EQ(v, 0x12345678u);
        } else {
            uint16_t v = 0;
            r.x.readInt16(v, remaining);
            EXPECT_EQ(v, 0xBEEF);
        }
        EXPECT_EQ(remaining, 0);
    }
}

TEST(RecordFraming, RecordClassesCheckIdAndSize) {
    struct Case {
        std::vector<uint8_t> wb;
        std::function<void(XlsRecords &)> read;
        std::string message;
    };
    auto readPhonetic = [](XlsRecords &x) { PhoneticInfo().read(x); };
    const Case cases[] = {
        {rec(0x0A, {}), readPhonetic, "PhoneticInfo: unexpected record"},
        {rec(239, {0, 0, 55, 0}), readPhonetic, "PhoneticInfo size is incorrect"},
        {rec(239, {0, 0, 55, 0, 1, 0}), readPhonetic, "PhoneticInfo size is incorrect"},
        {rec(239, {0, 0, 55, 0, 0, 0}), readPhonetic, ""},
        {rec(255, {8, 0}), [](XlsRecords &x) { ExtSST().read(x); }, ""},
        {rec(0x0A, {}), [](XlsRecords &x) { ExtSST().read(x); }, "ExtSST: unexpected record"},
        {rec(0x0A, {}), [](XlsRecords &x) { StyleExt().read(x); }, "StyleExt: unexpected record"},
    };
    for (const Case &c : cases) {
        Opened o(rawBook(c.wb));
        EXPECT_EQ(errorOf([&] { c.read(o.x); }), c.message);
    }
}

TEST(RecordFraming, SmallRecordsRoundTripAndDump) {
    PhoneticInfo pi;
    pi.ifnt = 3;
    pi.ranges.push_back({1, 2, 3, 4});
    pi.ranges.push_back({5, 6, 7, 8});
    ExtSST es;
    es.dsst = 8;
    es.rgISSTInf.push_back({12, 12, 0});
    es.rgISSTInf.push_back({0x2030, 4, 0});
    std::string file = writeBook([&](Xls<char> &x) {
        pi.write(x);
        es.write(x);
    });
    Opened o(file);
    PhoneticInfo pi2;
    pi2.read(o.x);
    ExtSST es2;
    es2.read(o.x);
    EXPECT_EQ(pi2.dumpText(), pi.dumpText());
    EXPECT_EQ(es2.dumpText(), es.dumpText());
    EXPECT_EQ(pi2.dumpText(), L"[PhoneticInfo ifnt=3 phs=55 rgref=({1 2 3 4}{5 6 7 8})]\n");
    EXPECT_EQ(es2.dumpText(), L"[ExtSST dsst=8 rgISSTInf=({ib=12 cbOffset=12 reserved=0}"
                              L"{ib=8240 cbOffset=4 reserved=0})]\n");
}
