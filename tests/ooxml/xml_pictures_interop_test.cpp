// Pictures on Open XML sheets against independent readers: what we place
// is found by openpyxl's drawing reader, and by it again after LibreOffice
// has read and rewritten the book, at the right cells with the same bytes;
// books with pictures and charts written by others report their pictures
// as openpyxl sees them and keep them through our save.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>
#include <zlib.h>

#include "support/oracle.h"
#include "support/test_images.h"
#include "tabrix.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

struct Book {
    IBookT<char> *b = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    ~Book() { b->release(); }
    IBookT<char> *operator->() { return b; }
    std::string msg() { return b->errorMessage(); }
};

fs::path scratch() {
    const fs::path dir = fs::path(TABRIX_TEST_TMP) / "pictures_interop";
    fs::create_directories(dir);
    return dir;
}

std::string bytesKey(const char *data, unsigned size) {
    char crc[16];
    std::snprintf(crc, sizeof crc, "%08lx",
                  crc32(0, reinterpret_cast<const Bytef *>(data), uInt(size)) & 0xffffffffUL);
    return std::to_string(size) + " " + crc;
}

// A picture line without the far corner, which a one-cell anchor lacks:
// "PIC row col dx dy size crc32".
std::string nearCorner(const std::string &line) {
    std::istringstream in(line);
    std::vector<std::string> f;
    for (std::string w; in >> w;) f.push_back(w);
    if (f.size() != 11 || f[0] != "PIC") return line;
    return "PIC " + f[1] + " " + f[2] + " " + f[5] + " " + f[6] + " " + f[9] + " " + f[10];
}

oracle::Lines nearCorners(const oracle::Lines &lines) {
    oracle::Lines out;
    for (const std::string &l : lines)
        if (l.rfind("OTHER", 0) != 0) out.push_back(nearCorner(l));
    return out;
}

// Our own view in the near-corner form, sheets in order, pictures sorted.
oracle::Lines ourPictures(IBookT<char> &book) {
    oracle::Lines out;
    for (int i = 0; i < book.sheetCount(); ++i) {
        if (book.sheetType(i) != SHEETTYPE_SHEET) continue;
        ISheetT<char> *s = book.getSheet(i);
        std::wstring wide;
        for (const char *p = s->name(); *p; ++p) wide += wchar_t(static_cast<unsigned char>(*p));
        out.push_back("SHEET " + oracle::hex(wide.c_str()));
        oracle::Lines pics;
        for (int k = 0; k < s->pictureSize(); ++k) {
            int row, col, x, y;
            const int id = s->getPicture(k, &row, &col, nullptr, nullptr, nullptr, nullptr, &x, &y);
            const char *data = nullptr;
            unsigned size = 0;
            book.getPicture(id, &data, &size);
            pics.push_back("PIC " + std::to_string(row) + " " + std::to_string(col) + " " +
                           std::to_string(x) + " " + std::to_string(y) + " " +
                           bytesKey(data, size));
        }
        std::sort(pics.begin(), pics.end());
        out.insert(out.end(), pics.begin(), pics.end());
    }
    return out;
}

struct Placed {
    const char *what;
    std::string image;
    int sheet, row, col, width, height, x, y;
    const char *line; // "PIC row col row2 col2 dx dy dx2 dy2" as openpyxl reads it
};

// Default cells are 64 by 20 pixels.
std::vector<Placed> placements() {
    return {
        {"png", testimages::png(100, 50), 0, 0, 0, 100, 50, 0, 0, "PIC 0 0 2 1 0 0 36 10"},
        {"jpeg", testimages::jpeg(40, 30), 0, 3, 2, 80, 60, 5, 4, "PIC 3 2 6 3 5 4 21 4"},
        {"bmp", testimages::bmp(30, 20), 1, 10, 5, 64, 20, 0, 0, "PIC 10 5 11 6 0 0 0 0"},
        {"emf", testimages::emf(200, 120), 1, 0, 0, 150, 45, 10, 15, "PIC 0 0 3 2 10 15 32 0"},
    };
}

// A book with the placements saved at `path`.
void writePlaced(const fs::path &path) {
    Book b;
    b->addSheet("one", nullptr);
    b->addSheet("two", nullptr);
    for (const Placed &p : placements()) {
        const int id = b->addPicture2(p.image.data(), unsigned(p.image.size()));
        b->getSheet(p.sheet)->setPicture2(p.row, p.col, id, p.width, p.height, p.x, p.y);
        ASSERT_EQ(b.msg(), "ok") << p.what;
    }
    ASSERT_TRUE(b->save(path.string().c_str())) << b.msg();
}

TEST(XMLPicturesInterop, OpenpyxlFindsWhatWePlace) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "openpyxl is not installed";
    const fs::path path = scratch() / "placed.xlsx";
    writePlaced(path);
    oracle::Lines want[2];
    for (const Placed &p : placements())
        want[p.sheet].push_back(std::string(p.line) + " " +
                                bytesKey(p.image.data(), unsigned(p.image.size())));
    oracle::Lines expected;
    for (int s = 0; s < 2; ++s) {
        expected.push_back("SHEET " + oracle::hex(s ? L"two" : L"one"));
        std::sort(want[s].begin(), want[s].end());
        expected.insert(expected.end(), want[s].begin(), want[s].end());
        expected.push_back("OTHER 0");
    }
    const oracle::Lines got = oracle::dump("openpyxl-pictures", path.string());
    EXPECT_EQ(got, expected) << oracle::firstDifference(got, expected);
}

// LibreOffice rewrites the anchors from its own geometry, so its offsets
// and far corners move; the top left cells and the bytes stay.
TEST(XMLPicturesInterop, LibreOfficeKeepsWhatWePlace) {
    if (!oracle::has("openpyxl") || !oracle::has("soffice"))
        GTEST_SKIP() << "openpyxl or LibreOffice is not installed";
    const fs::path path = scratch() / "placed_lo.xlsx";
    writePlaced(path);
    const oracle::Lines got = oracle::dump("libreoffice-pictures", path.string());
    ASSERT_FALSE(oracle::failed(got)) << got[0];
    std::string all;
    for (const std::string &l : got) all += l + "\n";
    for (const Placed &p : placements()) {
        std::istringstream in(p.line);
        std::string pic, row, col;
        in >> pic >> row >> col;
        const std::string start = "PIC " + row + " " + col + " ";
        const std::string bytes = bytesKey(p.image.data(), unsigned(p.image.size()));
        bool found = false;
        for (const std::string &l : got)
            found |= l.rfind(start, 0) == 0 && l.size() > bytes.size() &&
                     l.compare(l.size() - bytes.size(), bytes.size(), bytes) == 0;
        EXPECT_TRUE(found) << p.what << " not found in\n" << all;
    }
}

// Books from other producers: the pictures we report are those openpyxl
// finds, and after our save openpyxl finds the same pictures and anchors
// (charts included, as "OTHER").
TEST(XMLPicturesInterop, ForeignPicturesReportedAndKept) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "openpyxl is not installed";
    std::vector<fs::path> files;
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    for (const char *name :
         {"calamine/picture.xlsx", "calamine/pictures_in_cell_and_over_cell.xlsx",
          "libxlsxwriter/image01.xlsx", "libxlsxwriter/image03.xlsx", "libxlsxwriter/image22.xlsx",
          "libxlsxwriter/image44.xlsx", "libxlsxwriter/chart_bar01.xlsx",
          "libxlsxwriter/chart_line03.xlsx"})
        if (fs::exists(corpus / name)) files.push_back(corpus / name);
    if (oracle::has("soffice")) {
        // A book LibreOffice wrote: ours, read and saved by it.
        const fs::path dir = scratch() / "lo";
        fs::create_directories(dir);
        writePlaced(dir / "source.xlsx");
        const std::string cmd = "soffice --headless --norestore -env:UserInstallation=file://" +
                                dir.string() + "/profile --convert-to 'xlsx:Calc MS Excel 2007 " +
                                "XML' --outdir " + (dir / "out").string() + " " +
                                (dir / "source.xlsx").string() + " >/dev/null 2>&1";
        if (std::system(cmd.c_str()) == 0) files.push_back(dir / "out" / "source.xlsx");
    }
    ASSERT_FALSE(files.empty());
    for (const fs::path &file : files) {
        const oracle::Lines theirs = oracle::dump("openpyxl-pictures", file.string());
        ASSERT_FALSE(oracle::failed(theirs)) << file << ": " << theirs[0];
        Book b;
        ASSERT_TRUE(b->load(file.string().c_str())) << file << ": " << b.msg();
        const oracle::Lines ours = ourPictures(*b.b);
        const oracle::Lines near = nearCorners(theirs);
        EXPECT_EQ(ours, near) << file << ": " << oracle::firstDifference(ours, near);
        const fs::path saved = scratch() / ("saved_" + file.filename().string());
        ASSERT_TRUE(b->save(saved.string().c_str())) << b.msg();
        const oracle::Lines after = oracle::dump("openpyxl-pictures", saved.string());
        EXPECT_EQ(after, theirs) << file << ": " << oracle::firstDifference(after, theirs);
    }
}

} // namespace
