// Pictures on Open XML sheets against independent readers: what we place
// is found by openpyxl's drawing reader, and by it again after LibreOffice
// has rewritten the book, at the right cells with the same bytes; books
// with pictures and charts written by others report their pictures as
// openpyxl sees them and keep them through our save.
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
#include "support/packages.h"
#include "support/test_images.h"
#include "tabrix.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

fs::path scratch(const std::string &name) { return packages::scratch("pictures_interop", name); }

// The fields of a dump line ("PIC row col row2 col2 dx dy dx2 dy2 size
// crc32") at `keep`; other lines as they are.
std::string fields(const std::string &line, std::vector<size_t> keep) {
    std::istringstream in(line);
    std::vector<std::string> f;
    for (std::string w; in >> w;) f.push_back(w);
    if (f.size() != 11) return line;
    std::string out = "PIC";
    for (size_t k : keep) out += " " + f[k];
    return out;
}

oracle::Lines fields(const oracle::Lines &lines, const std::vector<size_t> &keep) {
    oracle::Lines out;
    for (const std::string &l : lines)
        if (l.rfind("OTHER", 0) != 0) out.push_back(fields(l, keep));
    std::sort(out.begin(), out.end());
    return out;
}

// Ours in the dump's form, without the far corner: "PIC row col dx dy size crc32".
oracle::Lines ourPictures(IBookT<char> &book) {
    oracle::Lines out;
    for (int i = 0; i < book.sheetCount(); ++i) {
        if (book.sheetType(i) != SHEETTYPE_SHEET) continue;
        ISheetT<char> *s = book.getSheet(i);
        const std::string name = s->name();
        out.push_back("SHEET " + oracle::hex(std::wstring(name.begin(), name.end()).c_str()));
        for (int k = 0; k < s->pictureSize(); ++k) {
            int row, col, x, y;
            const char *data = nullptr;
            unsigned size = 0;
            book.getPicture(
                s->getPicture(k, &row, &col, nullptr, nullptr, nullptr, nullptr, &x, &y), &data,
                &size);
            char crc[16];
            std::snprintf(crc, sizeof crc, "%08lx", crc32(0, (const Bytef *)data, size));
            std::ostringstream line;
            line << "PIC " << row << " " << col << " " << x << " " << y << " " << size << " "
                 << crc;
            out.push_back(line.str());
        }
    }
    std::sort(out.begin(), out.end());
    return out;
}

// Two sheets, a picture of each kind; the lines openpyxl should give,
// sorted ("SHEET" lines sort first).  Default cells are 64 by 20 pixels.
oracle::Lines writePlaced(const fs::path &path) {
    struct Placed {
        std::string image;
        int sheet, row, col, width, height, x, y;
        const char *anchor;
    };
    const Placed placed[] = {
        {testimages::png(100, 50), 0, 0, 0, 100, 50, 0, 0, "0 0 2 1 0 0 36 10"},
        {testimages::jpeg(40, 30), 0, 3, 2, 80, 60, 5, 4, "3 2 6 3 5 4 21 4"},
        {testimages::bmp(30, 20), 1, 10, 5, 64, 20, 0, 0, "10 5 11 6 0 0 0 0"},
        {testimages::emf(200, 120), 1, 0, 0, 150, 45, 10, 15, "0 0 3 2 10 15 32 0"},
    };
    IBookT<char> *b = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    oracle::Lines want = {"OTHER 0", "OTHER 0", "SHEET " + oracle::hex(L"one"),
                          "SHEET " + oracle::hex(L"two")};
    b->addSheet("one", nullptr);
    b->addSheet("two", nullptr);
    for (const Placed &p : placed) {
        const int id = b->addPicture2(p.image.data(), unsigned(p.image.size()));
        b->getSheet(p.sheet)->setPicture2(p.row, p.col, id, p.width, p.height, p.x, p.y);
        char crc[16];
        std::snprintf(crc, sizeof crc, "%08lx",
                      crc32(0, (const Bytef *)p.image.data(), uInt(p.image.size())));
        want.push_back(std::string("PIC ") + p.anchor + " " + std::to_string(p.image.size()) + " " +
                       crc);
    }
    EXPECT_TRUE(b->save(path.string().c_str())) << b->errorMessage();
    b->release();
    std::sort(want.begin(), want.end());
    return want;
}

oracle::Lines sorted(oracle::Lines lines) {
    std::sort(lines.begin(), lines.end());
    return lines;
}

// LibreOffice rewrites the anchors from its own geometry: the top left
// cells and the bytes stay.
TEST(XMLPicturesInterop, OpenpyxlAndLibreOfficeFindWhatWePlace) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "openpyxl is not installed";
    const fs::path path = scratch("placed.xlsx");
    const oracle::Lines want = writePlaced(path);
    const oracle::Lines got = sorted(oracle::dump("openpyxl-pictures", path.string()));
    EXPECT_EQ(got, want) << oracle::firstDifference(got, want);
    if (!oracle::has("soffice")) GTEST_SKIP() << "LibreOffice is not installed";
    const oracle::Lines lo = oracle::dump("libreoffice-pictures", path.string());
    EXPECT_EQ(fields(lo, {1, 2, 9, 10}), fields(want, {1, 2, 9, 10}));
}

// Books from other producers (and ours rewritten by LibreOffice): the
// pictures we report are those openpyxl finds, and after our save openpyxl
// finds the same pictures, anchors and other objects (charts).
TEST(XMLPicturesInterop, ForeignPicturesReportedAndKept) {
    if (!oracle::has("openpyxl")) GTEST_SKIP() << "openpyxl is not installed";
    std::vector<fs::path> files;
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    for (const char *name :
         {"calamine/picture.xlsx", "calamine/pictures_in_cell_and_over_cell.xlsx",
          "libxlsxwriter/image01.xlsx", "libxlsxwriter/image22.xlsx", "libxlsxwriter/image44.xlsx",
          "libxlsxwriter/chart_bar01.xlsx"})
        if (fs::exists(corpus / name)) files.push_back(corpus / name);
    if (oracle::has("soffice")) {
        writePlaced(scratch("source.xlsx"));
        const fs::path dir = scratch("lo");
        const std::string cmd = "soffice --headless --norestore -env:UserInstallation=file://" +
                                dir.string() + "/profile --convert-to 'xlsx:Calc MS Excel 2007 " +
                                "XML' --outdir " + dir.string() + " " +
                                scratch("source.xlsx").string() + " >/dev/null 2>&1";
        if (std::system(cmd.c_str()) == 0) files.push_back(dir / "source.xlsx");
    }
    ASSERT_FALSE(files.empty());
    for (const fs::path &file : files) {
        const oracle::Lines theirs = oracle::dump("openpyxl-pictures", file.string());
        ASSERT_FALSE(oracle::failed(theirs)) << file << ": " << theirs[0];
        IBookT<char> *b = static_cast<IBookT<char> *>(tbCreateXMLBookA());
        ASSERT_TRUE(b->load(file.string().c_str())) << file << ": " << b->errorMessage();
        EXPECT_EQ(ourPictures(*b), fields(theirs, {1, 2, 5, 6, 9, 10})) << file;
        const fs::path saved = scratch("saved_" + file.filename().string());
        EXPECT_TRUE(b->save(saved.string().c_str())) << b->errorMessage();
        b->release();
        EXPECT_EQ(oracle::dump("openpyxl-pictures", saved.string()), theirs) << file;
    }
}

} // namespace
