// Archives we write must pass independent checks: Python's testzip and
// member contents, `unzip -t` when installed, and our own reader.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "zip/zip_archive.h"

using namespace tabrix;

namespace {

const char *kCheck = R"(import zipfile, sys
z = zipfile.ZipFile(sys.argv[1]); assert z.testzip() is None
want = [l.rstrip('\n').split('\t') for l in open(sys.argv[2], encoding='utf-8')]
got = z.infolist(); assert len(got) == len(want), (len(got), len(want))
for i, (name, size, method) in zip(got, want):
    assert i.filename == name and i.file_size == int(size) and i.compress_type == int(method), (i, name, size, method)
)";

struct Member {
    std::string name, data;
    int method; // expected: 0 stored, 8 deflated
};

std::string randomBytes(size_t n) {
    std::mt19937 gen(7);
    std::string s(n, '\0');
    for (char &c : s) c = static_cast<char>(gen());
    return s;
}

std::vector<Member> many(size_t n) {
    std::vector<Member> v;
    for (size_t i = 0; i < n; ++i) v.push_back({"f/" + std::to_string(i), std::to_string(i), 0});
    return v;
}

} // namespace

TEST(ZipWrite, PassesIndependentChecks) {
    std::string sheet;
    for (int r = 1; r <= 20000; ++r)
        sheet += "<row r=\"" + std::to_string(r) + "\"><c r=\"A" + std::to_string(r) +
                 "\"><v>1</v></c></row>";
    const struct {
        const char *label;
        std::vector<Member> members;
    } rows[] = {
        {"empty", {}},
        {"tiny stored", {{"a", "abcd", 0}, {"b", "x", 0}, {"c", std::string(200, 'a'), 8}}},
        {"sheet", {{"xl/worksheets/sheet1.xml", sheet, 8}, {"[Content_Types].xml", "<Types/>", 0}}},
        {"incompressible", {{"media/image1.png", randomBytes(100000), 0}}},
        {"utf-8 name",
         {{"xl/f\xc3\xbcr.xml", "<x/><x/><x/><x/><x/><x/><x/><x/><x/><x/><x/><x/><x/><x/><x/><x/>",
           8}}},
        {"zip64 count", many(70000)},
    };
    const std::string dir = TABRIX_TEST_TMP, script = dir + "/zip_write.py",
                      list = dir + "/zip_write.txt";
    std::ofstream(script) << kCheck;
    const bool haveUnzip = std::system("command -v unzip >/dev/null 2>&1") == 0;
    for (const auto &row : rows) {
        SCOPED_TRACE(row.label);
        {
            std::ofstream out(list);
            for (const Member &m : row.members)
                out << m.name << '\t' << m.data.size() << '\t' << m.method << '\n';
        }
        for (int toFile = 0; toFile < 2; ++toFile) {
            const std::string path = dir + "/zip_write.zip";
            CZipArchive zip;
            CZipMemFile mem;
            ASSERT_TRUE(toFile ? zip.Open(path, CZipArchive::zipCreate, 0)
                               : zip.Open(mem, CZipArchive::zipCreate, false));
            EXPECT_FALSE(zip.Open(mem, CZipArchive::zipCreate, false));
            for (const Member &m : row.members)
                zip.AddNewFile(reinterpret_cast<const unsigned char *>(m.data.data()),
                               m.data.size(), m.name);
            zip.Close();
            if (!toFile) {
                EXPECT_TRUE(!row.members.empty() || mem.GetLength() == 22u);
                std::ofstream(path, std::ios::binary)
                    .write(reinterpret_cast<const char *>(mem.data()),
                           static_cast<std::streamsize>(mem.GetLength()));
            }
            EXPECT_EQ(std::system(("python3 " + script + " " + path + " " + list).c_str()), 0);
            if (haveUnzip && !row.members.empty()) {
                EXPECT_EQ(std::system(("unzip -tqq " + path + " >/dev/null").c_str()), 0);
            }
            // And our reader gives the bytes back.
            CZipArchive back;
            ASSERT_TRUE(back.Open(path, CZipArchive::zipOpenReadOnly, 0));
            ASSERT_EQ(back.GetCount(), row.members.size());
            for (size_t i = 0; i < row.members.size(); i += 997) {
                CZipMemFile m;
                ASSERT_TRUE(back.ExtractFile(i, m));
                EXPECT_EQ(std::string(reinterpret_cast<const char *>(m.data()), m.GetLength()),
                          row.members[i].data);
            }
        }
    }
}
