// Containers checked by an independent reader (Debian's python3-olefile):
// files we write list the same streams and bytes, and files of other
// producers keep every other stream byte for byte through a load and save.
#include "biff/support/interop_tools.h"
#include "biff/xls.h"
#include "book/tberror.h"

#include "support/oracle.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

using namespace tabrix;
using namespace bifftest;

namespace {

struct Listing {
    bool error = false;
    std::map<std::string, std::pair<uint64_t, uint32_t>> streams; // name -> size, crc
};

Listing listStreams(const std::string &path) {
    Listing out;
    for (const std::string &line : oracle::dump("olefile", path)) {
        std::istringstream is(line);
        std::string name;
        uint64_t size = 0;
        uint32_t crc = 0;
        is >> name;
        if (name == "ERROR") out.error = true;
        is >> size >> crc;
        out.streams[name] = {size, crc};
    }
    return out;
}

uint32_t crcOf(const std::vector<uint8_t> &v) {
    return uint32_t(crc32(0L, v.data(), uInt(v.size())));
}

std::vector<uint8_t> fileBytes(const std::string &path) {
    const std::string s = readFile(path);
    return std::vector<uint8_t>(s.begin(), s.end());
}

// Writes a container to the disk file `path` through `x` with workbook stream `wb`.
void saveFile(Xls<char> &x, const std::string &path, const std::vector<uint8_t> &wb) {
    std::fstream f(path, std::ios::in | std::ios::out | std::ios::binary | std::ios::trunc);
    x.setStreamPtr(&f);
    x.writeHeader();
    x.write(wb.data(), wb.size());
    x.close();
}

std::string narrow(const std::wstring &w) {
    std::string s;
    for (wchar_t c : w) s += char(c);
    return s;
}

// Files the independent reader tolerates but whose header contradicts
// their tables; we refuse them with the table's message.
const std::map<std::string, std::string> kRefused = {
    {"fuzz_corpus_xls2csv_ole_read_MSAT_body_637.xls",
     "Xls::loadFat(): extract fat sectors (2) not equal _header.numFatSectors (8388610)"},
};

} // namespace

TEST(CfbInterop, WrittenContainersListTheSameStream) {
    if (!oracle::has("olefile")) GTEST_SKIP() << "python3-olefile is not installed";
    // Small, padded, regular, multi-megabyte, and one that needs DIFAT sectors.
    for (size_t size :
         {size_t(1), size_t(100), size_t(5000), size_t(70001), size_t(3) << 20, size_t(8) << 20}) {
        std::vector<uint8_t> wb(size);
        for (size_t i = 0; i < size; ++i) wb[i] = uint8_t(i * 7 + (i >> 9));
        std::string path = tmpPath("cfb_interop_written.xls");
        Xls<char> x;
        saveFile(x, path, wb);
        Listing l = listStreams(path);
        ASSERT_FALSE(l.error) << size;
        wb.resize(std::max<size_t>(size, 4096), 0);
        ASSERT_EQ(l.streams.size(), 1u) << size;
        EXPECT_EQ(l.streams["Workbook"].first, wb.size()) << size;
        EXPECT_EQ(l.streams["Workbook"].second, crcOf(wb)) << size;
    }
}

TEST(CfbInterop, ProducersFilesKeepTheirStreamsThroughASave) {
    if (!oracle::has("olefile")) GTEST_SKIP() << "python3-olefile is not installed";
    std::vector<std::string> files = corpusXlsFiles();
    std::vector<std::string> fresh = freshProducersFiles("cfb_producers");
    files.insert(files.end(), fresh.begin(), fresh.end());
    if (files.empty())
        GTEST_SKIP() << "no producers' files: neither the corpus nor a producer is here";
    RecordProperty("fresh producers' files", int(fresh.size()));

    int checked = 0;
    for (const std::string &path : files) {
        Listing orig = listStreams(path);
        std::vector<uint8_t> bytes = fileBytes(path);
        std::stringstream in(std::string(bytes.begin(), bytes.end()));
        Xls<char> x;
        x.setStreamPtr(&in);
        std::vector<uint8_t> wb;
        std::string failure;
        try {
            x.calcFileSize();
            unsigned total = 0;
            x.readHeader(total);
            wb.resize(x.size());
            wb.resize(x.read(wb.data(), wb.size()));
            x.readSections();
        } catch (const std::exception &e) {
            failure = e.what();
        }
        if (orig.error) continue; // broken on purpose: we only must not crash
        std::string base = path.substr(path.rfind('/') + 1);
        EXPECT_EQ(failure, kRefused.count(base) ? kRefused.at(base) : "") << path;
        if (!failure.empty()) continue;
        std::string wbName = narrow(x.directory()[x.workbookIndex()].nameString());
        ASSERT_EQ(orig.streams.count(wbName), 1u) << path;
        EXPECT_EQ(crcOf(wb), orig.streams[wbName].second) << path;

        std::string out = tmpPath("cfb_interop_resaved.xls");
        x.reset(false);
        saveFile(x, out, wb);
        Listing saved = listStreams(out);
        ASSERT_FALSE(saved.error) << path;
        wb.resize(std::max<size_t>(wb.size(), 4096), 0);
        for (const auto &s : orig.streams) {
            if (s.first == wbName) {
                EXPECT_EQ(saved.streams[s.first], std::make_pair(uint64_t(wb.size()), crcOf(wb)))
                    << path;
            } else {
                EXPECT_EQ(saved.streams[s.first], s.second) << path << " " << s.first;
            }
        }
        EXPECT_EQ(saved.streams.size(), orig.streams.size()) << path;
        ++checked;
    }
    EXPECT_GT(checked, 0);
}
