// Compound files: broken and hostile containers read with their messages,
// written files of every size (the DIFAT of the largest) read back through
// our reader, and the writer's failure texts.
#include "biff/support/biff_bytes.h"
#include "biff/support/cfb_builder.h"
#include "biff/xls.h"
#include "book/tberror.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <sstream>

using namespace tabrix;
using cfbtest::buildCfb;
using cfbtest::Built;
using cfbtest::pattern;

namespace {

struct Reading {
    std::stringstream ss;
    Xls<char> xls;
};

// Opens `bytes`; answers the failure text, or "" on success.
std::string openText(const std::string &bytes, Reading &o, bool sections = false) {
    o.ss.str(bytes);
    o.xls.reset(true);
    o.xls.setStreamPtr(&o.ss);
    return bifftest::errorOf([&] {
        o.xls.calcFileSize();
        unsigned total = 0;
        o.xls.readHeader(total);
        if (sections) o.xls.readSections();
    });
}

std::vector<uint8_t> readWorkbook(XlsCore &x) {
    std::vector<uint8_t> out(x.size());
    size_t got = x.size() ? x.read(out.data(), out.size()) : 0;
    out.resize(got);
    return out;
}

} // namespace

TEST(CfbRead, BrokenFilesFailWithTheirMessage) {
    using Mutate = std::function<void(Built &)>;
    struct Case {
        const char *what;
        Mutate mutate;
        std::string message;
        bool sections = false;
    };
    const uint32_t E = 0xFFFFFFFE;
    const Case cases[] = {
        {"truncated header", [](Built &b) { b.file.resize(511); },
         "readHeader: file is corrupt (size < 512 bytes)"},
        {"empty file", [](Built &b) { b.file.clear(); },
         "readHeader: file is corrupt (size < 512 bytes)"},
        {"bad signature", [](Built &b) { b.file[7] = 0; }, "invalid file format"},
        {"bad signature, header only",
         [](Built &b) {
             b.file.resize(512);
             b.file[0] = 'P';
         },
         "invalid file format"},
        {"fat count mismatch", [](Built &b) { b.put32(44, 2); },
         "Xls::loadFat(): extract fat sectors (1) not equal _header.numFatSectors (2)"},
        {"fat sector out of file", [](Built &b) { b.put32(76, 5000); },
         "Xls: sector #5000 is out of the file"},
        {"difat count without chain", [](Built &b) { b.put32(72, 1); },
         "Xls::loadDifat(): difat chain sectors (0) not equal _header.numDifatSectors (1)"},
        {"difat chain without count", [](Built &b) { b.put32(68, 3); },
         "Xls::loadDifat(): difat chain contains more sectors than _header.numDifatSectors (0)"},
        {"difat count beyond file", [](Built &b) { b.put32(72, 0x7FFFFFFF); },
         "loadDifat: file is corrupt [1]"},
        {"directory sector points to itself",
         [](Built &b) { b.put32(b.fatEntry(b.firstDir), b.firstDir); },
         "loadDir: error in fat [1]"},
        {"directory cycle over two sectors",
         [](Built &b) {
             b.put32(b.fatEntry(b.firstDir), b.starts[0] + 1);
             b.put32(b.fatEntry(b.starts[0] + 1), b.firstDir);
         },
         "loadDir: file is corrupt [1]"},
        {"directory sector beyond fat", [](Built &b) { b.put32(48, 9999); },
         "Xls::loadDir(): sector #9999 is not found in _fat"},
        {"mini fat sector points to itself",
         [](Built &b) { b.put32(b.fatEntry(b.miniFatSector), b.miniFatSector); },
         "loadMiniFat: error in fat"},
        {"mini fat longer than declared",
         [](Built &b) { b.put32(b.fatEntry(b.miniFatSector), b.firstDir); },
         "error in loading minifat"},
        {"no workbook", [](Built &b) { b.put32(b.dirEntry(1), 0x00580058); },
         "Xls::read(): workbook section is not found"},
        {"empty workbook stream", [E](Built &b) { b.put32(b.dirEntry(1) + 116, E); },
         "Xls::read(): workbook stream is empty"},
        {"workbook start beyond file", [](Built &b) { b.put32(b.dirEntry(1) + 116, 70000); },
         "Xls: sector #70000 is out of the file"},
        {"sector shift zero", [](Built &b) { b.file[30] = 0; },
         "readHeader: unsupported sector size"},
        {"kept stream larger than file", [](Built &b) { b.put32(b.dirEntry(2) + 120, 0x7FFFFFFF); },
         "Xls::readSections(): streams are larger than the file", true},
        {"kept stream chain cut short", [E](Built &b) { b.put32(b.fatEntry(b.starts[1]), E); },
         "Xls::readSections(): stream is shorter than its size", true},
    };
    for (const Case &c : cases) {
        Built b = buildCfb({{"Workbook", pattern(5000, 1)},
                            {"Other", pattern(6000, 2)},
                            {"Tiny", pattern(100, 3)}});
        c.mutate(b);
        Reading o;
        EXPECT_EQ(openText(b.str(), o, c.sections), c.message) << c.what;
    }
}

TEST(CfbRead, CyclicWorkbookChainEndsWithError) {
    Built b = buildCfb({{"Workbook", pattern(5000, 1)}});
    uint32_t s = b.starts[0];
    b.put32(b.fatEntry(s + 9), s + 2); // last sector loops back
    Reading o;
    ASSERT_EQ(openText(b.str(), o), "");
    std::vector<uint8_t> buf(4096);
    EXPECT_EQ(bifftest::errorOf([&] {
                  for (int i = 0; i < 1000 && !o.xls.eof(); ++i) o.xls.read(buf.data(), buf.size());
              }),
              "Xls::read(): fat chain is cyclic");
}

TEST(CfbWrite, RoundTripsThroughOurReader) {
    struct Case {
        size_t size;
        uint32_t expectSize;
    };
    const Case cases[] = {{1, 4096},          {100, 4096},         {4095, 4096},
                          {4096, 4096},       {4097, 4097},        {70001, 70001},
                          {3 << 20, 3 << 20}, {8u << 20, 8u << 20}}; // the last needs DIFAT
    for (const Case &c : cases) {
        auto wb = pattern(c.size, uint32_t(c.size));
        std::string file = bifftest::rawBook(wb);
        bifftest::Opened o(file);
        Xls<char> &x = o.x;
        EXPECT_EQ(x.fileSize(), file.size());
        EXPECT_EQ(x.size(), c.expectSize) << c.size;
        auto back = readWorkbook(x);
        ASSERT_EQ(back.size(), c.expectSize);
        EXPECT_TRUE(std::equal(wb.begin(), wb.end(), back.begin())) << c.size;
        EXPECT_TRUE(
            std::all_of(back.begin() + wb.size(), back.end(), [](uint8_t v) { return v == 0; }));
        // Every sector of the file has a FAT entry, none more than needed.
        uint32_t sectors = uint32_t(file.size() / 512 - 1);
        EXPECT_GE(x.fat().size(), sectors);
        EXPECT_LT(x.fat().size(), size_t(sectors) + 128);
        if (c.size > (7u << 20)) {
            EXPECT_GT(x.header().numDifatSectors, 0u);
            uint32_t lastDifat = x.header().firstDifatSector + x.header().numDifatSectors - 1;
            uint32_t nextPtr = 0;
            std::memcpy(&nextPtr, file.data() + 512 + size_t(lastDifat) * 512 + 508, 4);
            EXPECT_EQ(nextPtr, 0xFFFFFFFEu);
        } else {
            EXPECT_EQ(x.header().numDifatSectors, 0u);
        }
    }
}

TEST(CfbWrite, TailAndFailureTexts) {
    Xls<char> x;
    x.writeToMemory();
    x.writeHeader();
    x.write("abc", 3);
    EXPECT_EQ(x.writeTail(3, 0xFF), 1u);
    EXPECT_EQ(x.writePos(), 512u);
    EXPECT_EQ(x.writeTail(1024, 0), 2u);
    EXPECT_EQ(x.writePos(), 512u);
    x.close();
    size_t n = 0;
    ByteRegion out = x.takeOutput(n);
    ASSERT_GT(n, 1024u);
    EXPECT_EQ(std::string(out.bytes() + 512, 3), "abc");
    EXPECT_EQ(uint8_t(out.bytes()[1023]), 0xFF);

    // The whole file reaches the stream at close; a stream that refuses it
    // fails the close.
    std::stringstream bad;
    bad.setstate(std::ios::badbit);
    Xls<char> y;
    y.setStreamPtr(&bad);
    y.writeHeader();
    y.write("abc", 3);
    EXPECT_EQ(bifftest::errorOf([&] { y.close(); }),
              "stream error, perhaps it's too small writing buffer");

    struct Case {
        std::function<void()> run;
        std::string message;
    };
    const Case cases[] = {
        {[] { DirEntry e(std::wstring(32, L'x'), 2, 0); },
         "DirEntry::DirEntry(): newName is too big (length must be less 32)"},
        {[] { Xls<char>().writeHeader(); }, "stream error"},
        {[] { Xls<char>().write("a", 1); }, "stream error, perhaps it's too small writing buffer"},
        {[] { Xls<char>().writePos(); }, "can't get the current write position"},
    };
    for (const Case &c : cases) EXPECT_EQ(bifftest::errorOf(c.run), c.message);
    EXPECT_NO_THROW(DirEntry(std::wstring(31, L'x'), 2, 0));
}
