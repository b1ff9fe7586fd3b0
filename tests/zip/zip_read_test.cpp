// Reading archives written at test time by independent writers (Python's
// zipfile, the zip tool), damaged on purpose where a row says so.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "zip/zip_archive.h"
#include "zip/zip_exception.h"

using namespace tabrix;

namespace {

const char *kPrelude = R"(import zipfile, sys, os, struct, shutil, subprocess
out = sys.argv[1]
def body(n): return ((n + '|') * 3).encode()
def make(names, comp=zipfile.ZIP_DEFLATED):
    with zipfile.ZipFile(out, 'w', comp) as z:
        for n in names: z.writestr(n, body(n))
def patch(off, fmt, fn):
    d = bytearray(open(out, 'rb').read()); i = d.find(b'PK\x01\x02') + off
    struct.pack_into(fmt, d, i, fn(struct.unpack_from(fmt, d, i)[0])); open(out, 'wb').write(d)
class Unseekable:
    def __init__(s, f): s.f = f
    def write(s, b): return s.f.write(b)
    def flush(s): pass
)";

std::string slurp(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// Opens and extracts every member, checking each against the writer's
// body(name); answers the failure text, or "" with the member count.
std::string readAll(CZipArchive &zip, CZipAbstractFile &file, size_t &count) {
    try {
        zip.Open(file, CZipArchive::zipOpenReadOnly, false);
        count = zip.GetCount();
        for (size_t i = 0; i < count; ++i) {
            CZipMemFile m;
            if (!zip.ExtractFile(i, m)) return "extract refused";
            std::string name = zip.GetFileInfo(i)->GetFileName(), want;
            for (int k = 0; k < 3; ++k) want += name + "|";
            if (std::string(reinterpret_cast<const char *>(m.data()), m.GetLength()) != want)
                return "wrong data in " + name;
        }
        zip.Close();
        return "";
    } catch (const CZipException &e) {
        return e.GetErrorDescription();
    }
}

struct Row {
    const char *label;
    const char *script;
    size_t count;      // members, when the archive reads
    const char *error; // the failure text, or "" (also for every truncation)
};

const std::string kNoCdir = CZipException::textOf(221);

} // namespace

TEST(ZipRead, IndependentArchives) {
    const Row rows[] = {
        {"stored", "make(['a.txt', 'dir/b.xml'], zipfile.ZIP_STORED)", 2, ""},
        {"deflated", "make(['a.txt', 'xl/worksheets/sheet1.xml', 'x'])", 3, ""},
        {"bzip2", "make(['a.txt', 'b.txt'], zipfile.ZIP_BZIP2)", 2, ""},
        {"zip64",
         "with zipfile.ZipFile(out, 'w', zipfile.ZIP_DEFLATED) as z:\n"
         "    for n in ['a', 'b']:\n"
         "        with z.open(n, 'w', force_zip64=True) as f: f.write(body(n))",
         2, ""},
        {"descriptors",
         "with open(out, 'wb') as f, zipfile.ZipFile(Unseekable(f), 'w', zipfile.ZIP_DEFLATED) as "
         "z:\n"
         "    for n in ['a', 'b/c']:\n"
         "        with z.open(n, 'w') as w: w.write(body(n))",
         2, ""},
        {"65536 members", "make(['m%d' % i for i in range(65536)], zipfile.ZIP_STORED)", 65536, ""},
        {"backslash", "make(['xl\\\\workbook.xml'])", 1, ""},
        {"junk in window", "make(['a']); open(out, 'ab').write(b'j' * 60000)", 1, ""},
        {"junk beyond", "make(['a']); open(out, 'ab').write(b'j' * 70000)", 0, kNoCdir.c_str()},
        {"bytes before",
         "make(['a']); d = open(out, 'rb').read(); open(out, 'wb').write(b's' * 100 + d)", 1, ""},
        {"not a zip", "open(out, 'wb').write(b'hello' * 100)", 0, kNoCdir.c_str()},
        {"encrypted",
         "if not shutil.which('zip'): sys.exit(77)\n"
         "d = os.path.dirname(out); open(d + '/a', 'wb').write(body('a'))\n"
         "os.path.exists(out) and os.remove(out)\n"
         "subprocess.run(['zip', '-q', '-P', 'pw', out, 'a'], cwd=d, check=True)",
         1, CZipException::textOf(213)},
        {"crc", "make(['a']); patch(16, '<I', lambda v: v ^ 1)", 1, CZipException::textOf(202)},
        {"bomb", "make(['a']); patch(24, '<I', lambda v: 0x7fffffff)", 0,
         CZipException::textOf(230)},
        {"bad local offset", "make(['a', 'b']); patch(42, '<I', lambda v: v + 1)", 2,
         CZipException::textOf(201)},
        {"bad method data",
         "make(['abc' * 30]); d = bytearray(open(out, 'rb').read()); d[120] = 0xff\n"
         "open(out, 'wb').write(d)",
         1, CZipException::textOf(504)},
        // Cut at every structure boundary: the end record is gone each time.
        {"truncated",
         "make(['a', 'bb'], zipfile.ZIP_STORED); z = zipfile.ZipFile(out); cuts = [0]\n"
         "for i in z.infolist():\n"
         "    cuts += [i.header_offset, i.header_offset + 30 + len(i.filename), "
         "i.header_offset + 30 + len(i.filename) + i.compress_size]\n"
         "p = z.start_dir\n"
         "for i in z.infolist(): cuts.append(p); p += 46 + len(i.filename) + len(i.extra)\n"
         "cuts += [p, p + 4, os.path.getsize(out) - 1]\n"
         "open(out + '.cuts', 'w').write(' '.join(map(str, cuts)))",
         0, kNoCdir.c_str()},
    };
    const std::string dir = TABRIX_TEST_TMP, script = dir + "/zip_read.py",
                      path = dir + "/zip_read.zip";
    for (const Row &row : rows) {
        SCOPED_TRACE(row.label);
        std::remove((path + ".cuts").c_str());
        std::ofstream(script) << kPrelude << row.script << "\n";
        int rc = std::system(("python3 " + script + " " + path).c_str());
        if (WEXITSTATUS(rc) == 77) continue; // the zip tool is not installed
        ASSERT_EQ(rc, 0);
        const std::string bytes = slurp(path), cuts = slurp(path + ".cuts");
        if (!cuts.empty()) {
            std::istringstream in(cuts);
            for (size_t cut; in >> cut;) {
                CZipArchive zip;
                CZipMemFile mem(bytes.data(), cut);
                size_t count = 0;
                EXPECT_EQ(readAll(zip, mem, count), row.error) << "cut at " << cut;
            }
            continue;
        }
        for (int fromFile = 0; fromFile < 2; ++fromFile) {
            CZipArchive zip;
            CZipMemFile mem(bytes.data(), bytes.size());
            CZipFile file;
            file.Open(path, false);
            size_t count = 0;
            EXPECT_EQ(readAll(zip, fromFile ? static_cast<CZipAbstractFile &>(file) : mem, count),
                      row.error);
            if (!*row.error || count) {
                EXPECT_EQ(count, row.count);
            }
        }
    }
}
