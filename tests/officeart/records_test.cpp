// Drawing records read from bytes and written back: known and unknown
// records round-trip byte for byte and through a clone, headers that fail
// their class's check are carried raw, bodies that overrun fail with their
// record's message, edits recompute lengths, and MD4 meets RFC 1320.
#include "officeart/blip_store.h"
#include "officeart/md4.h"
#include "officeart/property_table.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace tabrix;

namespace {

using Bytes = std::vector<uint8_t>;

Bytes rec(uint16_t ver, uint16_t inst, uint16_t type, const Bytes &body, int len = -1) {
    Bytes out;
    OfficeArtRecordHeader(ver, inst, type, len < 0 ? uint32_t(body.size()) : uint32_t(len))
        .write(out);
    putBytes(out, body);
    return out;
}

Bytes cat(std::initializer_list<Bytes> parts) {
    Bytes out;
    for (const Bytes &p : parts) putBytes(out, p);
    return out;
}

Bytes zeros(size_t n) { return Bytes(n, 0); }

Bytes props() { // two entries, the second complex with four bytes
    Bytes b;
    putU16(b, 0x4104);
    putU32(b, 1);
    putU16(b, 0x8105);
    putU32(b, 4);
    putBytes(b, {'3', 0, 0, 0});
    return b;
}

const Bytes kShape = rec(15, 0, 0xF004,
                         cat({rec(2, 75, 0xF00A, zeros(8)), rec(3, 2, 0xF00B, props()),
                              rec(0, 0, 0xF010, zeros(18)), rec(0, 0, 0xF011, {})}));
const Bytes kDrawing = rec(15, 0, 0xF002,
                           cat({rec(0, 1, 0xF008, zeros(8)),
                                rec(15, 0, 0xF003, cat({rec(1, 0, 0xF009, zeros(16)), kShape}))}));
Bytes blipPng(uint16_t inst, size_t image) { return rec(0, inst, 0xF01E, zeros(17 + image)); }

std::string classOf(const OfficeArtRecordBase &r) { return r.name(); }

} // namespace

TEST(OfficeArtRecords, ReadWriteCheckAndErrors) {
    struct Case {
        const char *what;
        Bytes bytes;
        const char *cls;     // class that took the record
        const char *message; // failure, or nullptr for a round trip
    };
    const Case cases[] = {
        {"drawing with shapes", kDrawing, "OfficeArtDgContainer", nullptr},
        {"drawing container of any version", rec(3, 0, 0xF002, kShape), "OfficeArtDgContainer",
         nullptr},
        {"shape container with instance 1", rec(15, 1, 0xF004, zeros(8)), "OfficeArtRecord",
         nullptr},
        {"FDG of length 7", rec(0, 1, 0xF008, zeros(7)), "OfficeArtRecord", nullptr},
        {"unknown type", rec(0, 0, 0xF0FF, {1, 2, 3}), "OfficeArtRecord", nullptr},
        {"container with a short tail", rec(15, 0, 0xF003, cat({kShape, {9, 9, 9}})),
         "OfficeArtSpgrContainer", nullptr},
        {"store of one picture",
         rec(15, 1, 0xF001, rec(2, 6, 0xF007, cat({zeros(36), blipPng(1760, 3)}))),
         "OfficeArtBStoreContainer", nullptr},
        {"blip of an unknown instance", rec(0, 7, 0xF01E, zeros(20)), "OfficeArtRecord", nullptr},
        {"JPEG blip, CMYK two digests", rec(0, 1763, 0xF01D, zeros(40)), "OfficeArtBlipJPEG",
         nullptr},
        {"cluster block", rec(0, 0, 0xF006, cat({{3, 0, 0, 0, 2, 0, 0, 0}, zeros(16)})),
         "OfficeArtFDGGBlock", nullptr},
        {"truncated header", {0x0F, 0, 0x02, 0xF0, 0}, "", "error in record OfficeArtRecordHeader"},
        {"container overruns", rec(15, 0, 0xF003, zeros(4), 40), "",
         "error in record OfficeArtSpgrContainer"},
        {"child overruns its container", rec(15, 0, 0xF005, rec(3, 0, 0xF00B, zeros(8), 9)), "",
         "error in record OfficeArtRGFOPTE"},
        {"unmodelled child overruns", rec(15, 0, 0xF004, rec(0, 0, 0xF014, zeros(8), 9)), "",
         "error in record OfficeArtRecord"},
        {"properties longer than the body", rec(3, 3, 0xF00B, zeros(12)), "",
         "error in record OfficeArtRGFOPTE"},
        {"store entry shorter than its fields", rec(2, 6, 0xF007, zeros(20)), "",
         "error in record OfficeArtFBSE"},
        {"blip shorter than its digest", rec(0, 1760, 0xF01E, zeros(10)), "",
         "error in record OfficeArtBlipPNG"},
        {"cluster pairs overrun", rec(0, 0, 0xF006, cat({{0, 0, 0, 0, 5, 0, 0, 0}, zeros(16)})), "",
         "error in record OfficeArtFDGGBlock"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        ByteCursor in(c.bytes.data(), c.bytes.size());
        if (c.message) {
            try {
                readOfficeArtRecord(in);
                ADD_FAILURE() << "no error";
            } catch (const tberror &e) {
                EXPECT_STREQ(e.what(), c.message);
            }
            continue;
        }
        auto r = readOfficeArtRecord(in);
        EXPECT_EQ(in.left(), 0u);
        EXPECT_EQ(classOf(*r), c.cls);
        Bytes out, copied;
        r->write(out);
        EXPECT_EQ(out, c.bytes);
        r->clone()->write(copied);
        EXPECT_EQ(copied, c.bytes);
        // Recomputed lengths agree with the stored ones.
        r->setDirty();
        EXPECT_EQ(r->size(), c.bytes.size());
    }
}

TEST(OfficeArtRecords, EditsAndFixedTables) {
    // A stored length is kept until an edit; then it is worked out again.
    Bytes stored = rec(3, 2, 0xF00B, props());
    ByteCursor in(stored.data(), stored.size());
    auto r = readOfficeArtRecord(in);
    auto *fopt = dynamic_cast<OfficeArtFOPT *>(r.get());
    ASSERT_NE(fopt, nullptr);
    fopt->addProperty({OfficeArtFOPTEOPID(191, false, false), 0x08000041});
    Bytes out;
    fopt->write(out);
    Bytes body = props();
    body.insert(body.begin() + 12, {0xBF, 0x00, 0x41, 0x00, 0x00, 0x08});
    EXPECT_EQ(out, rec(3, 3, 0xF00B, body));

    // The table of a picture shape: blip id 7, the fixed name "3".
    Bytes pic;
    OfficeArtRGFOPTE(7).write(pic);
    EXPECT_EQ(pic, (Bytes{0x04, 0x41, 7, 0, 0, 0, 0x05, 0x81, 4, 0, 0, 0, '3', 0, 0, 0}));
    EXPECT_THROW(OfficeArtFOPTEOPID(16384, false, false), tberror);
    try {
        OfficeArtFOPTEOPID(16384, false, false);
    } catch (const tberror &e) {
        EXPECT_STREQ(e.what(), "error in OfficeArtFOPTEOPID");
    }

    const std::pair<std::string, const char *> md4Vectors[] = {
        {"", "31d6cfe0d16ae931b73c59d7e0c089c0"},
        {"abc", "a448017aaf21d8525fc10ae87aa6729d"},
        {"message digest", "d9130a8164549fe818874806e1c7014b"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "e33b4ddc9c38f2199c3e7b164fcc0536"},
    };
    for (const auto &v : md4Vectors) {
        uint8_t d[16];
        md4(reinterpret_cast<const uint8_t *>(v.first.data()), v.first.size(), d);
        char hex[33];
        for (int i = 0; i < 16; ++i) std::snprintf(hex + 2 * i, 3, "%02x", d[i]);
        EXPECT_STREQ(hex, v.second) << v.first;
    }
}
