// Pictures on Open XML sheets: placed, saved, loaded and read back with
// their anchors, kinds and bytes; the messages; the package parts a placed
// picture makes; drawings of real files through a save.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>

#include "book/tberror.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/drawing/drawing.h"
#include "ooxml/package/zip_package.h"
#include "ooxml/xml_book_proxy.h"
#include "support/test_images.h"
#include "support/xml_parts.h"
#include "tabrix.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

using Entries = std::map<std::wstring, std::string>;

// The entries of an archive, or those of the names in `only`.
Entries unzip(const char *bytes, size_t size, const std::set<std::wstring> *only = nullptr) {
    ZipReader r(bytes, size);
    Entries out;
    for (size_t i = 0; i < r.size(); ++i) {
        if (only && !only->count(r.name(i))) continue;
        char *data = nullptr;
        size_t length = 0;
        r.data(i, data, length);
        out[r.name(i)] = std::string(data ? data : "", length);
        std::free(data);
    }
    return out;
}

struct Book {
    IBookT<char> *b = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    ~Book() { b->release(); }
    IBookT<char> *operator->() { return b; }
    std::string msg() { return b->errorMessage(); }
};

bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

// Default cells are 64 by 20 pixels.
TEST(XMLPictures, PlacedSavedAndReadBack) {
    struct Case {
        const char *what;
        std::string image;
        int kind; // what the book's getPicture answers: 0 PNG, 1 JPEG, 3 DIB, 4 EMF
        int sheet, row, col;
        double scale; // 0: setPicture2 with width and height
        int width, height, offsetX, offsetY;
        // expected anchor: bottom-right cell and what is read back
        int rowBottom, colRight, readWidth, readHeight, readX, readY;
        const char *message;
    };
    const Case cases[] = {
        {"png at A1, own size", testimages::png(100, 50), 0, 0, 0, 0, 1.0, 0, 0, 0, 0, 2, 1, 100,
         50, 0, 0, "ok"},
        {"jpeg scaled by 2", testimages::jpeg(40, 30), 1, 0, 3, 2, 2.0, 0, 0, 5, 4, 6, 3, 80, 60, 5,
         4, "ok"},
        {"bmp sized exactly to a cell", testimages::bmp(8, 8), 3, 1, 10, 5, 0, 64, 20, 0, 0, 11, 6,
         64, 20, 0, 0, "ok"},
        {"emf with offsets", testimages::emf(200, 120), 4, 1, 0, 0, 0, 150, 45, 10, 15, 3, 2, 150,
         45, 10, 15, "ok"},
        {"x offset cut to the width", testimages::png(10, 10), 0, 0, 20, 0, 1.0, 0, 0, 70, 0, 20, 1,
         10, 10, 64, 0, "warning: offset_x exceed cell's width"},
        {"y offset cut to the height", testimages::png(10, 10), 0, 0, 30, 0, 1.0, 0, 0, 0, 25, 31,
         0, 10, 10, 0, 20, "warning: offset_y exceed cell's height"},
        {"both offsets cut", testimages::png(10, 10), 0, 1, 40, 0, 1.0, 0, 0, 99, 99, 41, 1, 10, 10,
         64, 20, "warning: offset_x and offset_y exceed cell's size"},
    };
    Book b;
    b->addSheet("one", nullptr);
    b->addSheet("two", nullptr);
    std::vector<int> ids;
    for (const Case &c : cases) {
        const int id = b->addPicture2(c.image.data(), unsigned(c.image.size()));
        ASSERT_GE(id, 0) << c.what << ": " << b.msg();
        ids.push_back(id);
        ISheetT<char> *s = b->getSheet(c.sheet);
        if (c.scale > 0)
            s->setPicture(c.row, c.col, id, c.scale, c.offsetX, c.offsetY);
        else
            s->setPicture2(c.row, c.col, id, c.width, c.height, c.offsetX, c.offsetY);
        EXPECT_EQ(b.msg(), c.message) << c.what;
    }
    const char *bytes = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(b->saveRaw(&bytes, &size)) << b.msg();
    Entries parts = unzip(bytes, size);
    // One drawing a sheet, each named in the sheet's relationships and the
    // content types.
    EXPECT_TRUE(has(parts[L"/xl/worksheets/_rels/sheet1.xml.rels"], "../drawings/drawing1.xml"));
    EXPECT_TRUE(has(parts[L"/xl/worksheets/_rels/sheet2.xml.rels"], "../drawings/drawing2.xml"));
    EXPECT_TRUE(has(parts[L"/[Content_Types].xml"], "/xl/drawings/drawing2.xml"));
    EXPECT_TRUE(has(parts[L"/xl/drawings/_rels/drawing1.xml.rels"], "../media/image1.png"));

    Book again;
    ASSERT_TRUE(again->loadRaw(bytes, size)) << again.msg();
    int onSheet[2] = {0, 0};
    for (size_t i = 0; i < std::size(cases); ++i) {
        const Case &c = cases[i];
        ISheetT<char> *s = again->getSheet(c.sheet);
        int rowTop, colLeft, rowBottom, colRight, width, height, x, y;
        const int id = s->getPicture(onSheet[c.sheet]++, &rowTop, &colLeft, &rowBottom, &colRight,
                                     &width, &height, &x, &y);
        EXPECT_EQ(again.msg(), "ok") << c.what;
        const char *data = nullptr;
        unsigned length = 0;
        ASSERT_GE(id, 0) << c.what;
        EXPECT_EQ(again->getPicture(id, &data, &length), c.kind) << c.what;
        EXPECT_EQ(std::string(data, length), c.image) << c.what;
        EXPECT_EQ(std::vector<int>({rowTop, colLeft, rowBottom, colRight, width, height, x, y}),
                  std::vector<int>({c.row, c.col, c.rowBottom, c.colRight, c.readWidth,
                                    c.readHeight, c.readX, c.readY}))
            << c.what;
    }
    EXPECT_EQ(again->getSheet(0)->pictureSize(), onSheet[0]);
    EXPECT_EQ(again->getSheet(1)->pictureSize(), onSheet[1]);
}

TEST(XMLPictures, Messages) {
    struct Case {
        const char *what;
        std::function<int(IBookT<char> &, ISheetT<char> &)> act;
        int result;
        const char *message;
    };
    const std::string png = testimages::png(4, 4);
    const Case cases[] = {
        {"setPicture of no picture",
         [](IBookT<char> &, ISheetT<char> &s) { return s.setPicture(0, 0, 1, 1.0, 0, 0), 0; }, 0,
         "pictureId is out of range"},
        {"setPicture2 of a negative id",
         [](IBookT<char> &, ISheetT<char> &s) { return s.setPicture2(0, 0, -1, 5, 5, 0, 0), 0; }, 0,
         "pictureId is out of range"},
        {"getPicture of a sheet without a drawing",
         [](IBookT<char> &, ISheetT<char> &s) {
             return s.getPicture(0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr);
         },
         -1, "can't find drawing object"},
        {"getPicture past the last picture",
         [](IBookT<char> &, ISheetT<char> &s) {
             s.setPicture(0, 0, 0, 1.0, 0, 0);
             return s.getPicture(1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr);
         },
         -1, "picture index is out of range"},
        {"the same picture twice",
         [](IBookT<char> &, ISheetT<char> &s) {
             s.setPicture(0, 0, 0, 1.0, 0, 0);
             s.setPicture(5, 5, 0, 1.0, 0, 0);
             return s.getPicture(1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr) +
                    10 * s.pictureSize();
         },
         20, "ok"},
        {"a copy of the sheet shares its drawing",
         [](IBookT<char> &b, ISheetT<char> &s) {
             s.setPicture(0, 0, 0, 1.0, 0, 0);
             ISheetT<char> *copy = b.addSheet("b", &s);
             copy->setPicture(3, 3, 0, 1.0, 0, 0);
             return s.pictureSize() + 10 * copy->pictureSize();
         },
         22, "ok"},
    };
    for (const Case &c : cases) {
        Book b;
        ISheetT<char> *s = b->addSheet("a", nullptr);
        ASSERT_EQ(b->addPicture2(png.data(), unsigned(png.size())), 0);
        EXPECT_EQ(c.act(*b.b, *s), c.result) << c.what;
        EXPECT_EQ(b.msg(), c.message) << c.what;
    }
}

// Custom column widths and row heights move the far corner, and the size
// read back adds them up again.
TEST(XMLPictures, SizedCells) {
    Book made;
    made->addSheet("a", nullptr);
    const char *bytes = nullptr;
    unsigned size = 0;
    ASSERT_TRUE(made->saveRaw(&bytes, &size));
    Entries parts = unzip(bytes, size);
    std::string &sheet = parts[L"/xl/worksheets/sheet1.xml"];
    const size_t at = sheet.find("<sheetData/>");
    ASSERT_NE(at, std::string::npos) << sheet;
    // Columns B:C are 140 pixels, row 2 is 40 and row 4 hidden.
    sheet.replace(at, 12,
                  "<cols><col min=\"2\" max=\"3\" width=\"20\" customWidth=\"1\"/></cols>"
                  "<sheetData><row r=\"2\" ht=\"30\" customHeight=\"1\"/>"
                  "<row r=\"4\" hidden=\"1\"/></sheetData>");
    ZipWriter w;
    for (const auto &p : parts) w.add(p.first, p.second.data(), p.second.size());
    w.close();
    char *zipped = nullptr;
    size_t zippedSize = 0;
    w.getRaw(zipped, zippedSize);
    Book b;
    const bool loaded = b->loadRaw(zipped, unsigned(zippedSize));
    std::free(zipped);
    ASSERT_TRUE(loaded) << b.msg();
    const std::string png = testimages::png(200, 85);
    b->getSheet(0)->setPicture(0, 0, b->addPicture2(png.data(), unsigned(png.size())), 1.0, 0, 0);
    int rowTop, colLeft, rowBottom, colRight, width, height, x, y;
    b->getSheet(0)->getPicture(0, &rowTop, &colLeft, &rowBottom, &colRight, &width, &height, &x,
                               &y);
    EXPECT_EQ(std::vector<int>({rowBottom, colRight, width, height}),
              std::vector<int>({4, 1, 200, 85}));
    ASSERT_TRUE(b->saveRaw(&bytes, &size));
    EXPECT_TRUE(has(unzip(bytes, size)[L"/xl/drawings/drawing1.xml"],
                    "<xdr:to><xdr:col>1</xdr:col><xdr:colOff>1295400</xdr:colOff><xdr:row>4</"
                    "xdr:row><xdr:rowOff>47625</xdr:rowOff></xdr:to>"));
}

// A Strict book takes a picture in its own edition and reads it back.
TEST(XMLPictures, StrictBook) {
    const fs::path file = fs::path(TABRIX_CORPUS_DIR) / "public/calamine/strict_iso_paths.xlsx";
    if (!fs::exists(file)) GTEST_SKIP() << "no corpus";
    const std::string png = testimages::png(70, 30);
    Book b;
    ASSERT_TRUE(b->load(file.string().c_str())) << b.msg();
    const int id = b->addPicture2(png.data(), unsigned(png.size()));
    b->getSheet(0)->setPicture(2, 1, id, 1.0, 3, 4);
    ASSERT_EQ(b.msg(), "ok");
    // Loading by name tries both editions.
    const std::string path = ::testing::TempDir() + "strict_pictures.xlsx";
    ASSERT_TRUE(b->save(path.c_str())) << b.msg();
    Book again;
    ASSERT_TRUE(again->load(path.c_str())) << again.msg();
    std::remove(path.c_str());
    int rowTop, colLeft, rowBottom, colRight, width, height, x, y;
    const int got = again->getSheet(0)->getPicture(0, &rowTop, &colLeft, &rowBottom, &colRight,
                                                   &width, &height, &x, &y);
    ASSERT_GE(got, 0) << again.msg();
    const char *data = nullptr;
    unsigned length = 0;
    again->getPicture(got, &data, &length);
    EXPECT_EQ(std::string(data, length), png);
    EXPECT_EQ(std::vector<int>({rowTop, colLeft, width, height, x, y}),
              std::vector<int>({2, 1, 70, 30, 3, 4}));
}

// A drawing of every anchor kind: pictures of one-cell and two-cell anchors
// counted in order, the chart and the group shape left alone and written
// back, a new picture counted last.
TEST(XMLPictures, DrawingAnchors) {
    const std::string xml =
        "<xdr:wsDr xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/"
        "spreadsheetDrawing\" xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" "
        "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
        "<xdr:twoCellAnchor><xdr:from><xdr:col>4</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>1"
        "</xdr:row><xdr:rowOff>0</xdr:rowOff></xdr:from><xdr:to><xdr:col>9</xdr:col><xdr:colOff>0"
        "</xdr:colOff><xdr:row>15</xdr:row><xdr:rowOff>0</xdr:rowOff></xdr:to><xdr:graphicFrame "
        "macro=\"\"><xdr:nvGraphicFramePr><xdr:cNvPr id=\"3\" name=\"Chart 1\"/>"
        "<xdr:cNvGraphicFramePr/></xdr:nvGraphicFramePr><xdr:xfrm/><a:graphic><a:graphicData "
        "uri=\"urn:chart\"/></a:graphic></xdr:graphicFrame><xdr:clientData/></xdr:twoCellAnchor>"
        "<xdr:oneCellAnchor><xdr:from><xdr:col>1</xdr:col><xdr:colOff>19050</xdr:colOff><xdr:row>2"
        "</xdr:row><xdr:rowOff>9525</xdr:rowOff></xdr:from><xdr:ext cx=\"952500\" "
        "cy=\"476250\"/><xdr:pic><xdr:nvPicPr><xdr:cNvPr id=\"2\" name=\"P\"/><xdr:cNvPicPr/>"
        "</xdr:nvPicPr><xdr:blipFill><a:blip r:embed=\"rId7\"/></xdr:blipFill><xdr:spPr/>"
        "</xdr:pic><xdr:clientData/></xdr:oneCellAnchor>"
        "<xdr:absoluteAnchor><xdr:pos x=\"0\" y=\"0\"/><xdr:ext cx=\"9\" cy=\"9\"/><xdr:grpSp>"
        "<xdr:nvGrpSpPr><xdr:cNvPr id=\"4\" name=\"G\"/><xdr:cNvGrpSpPr/></xdr:nvGrpSpPr>"
        "<xdr:grpSpPr/></xdr:grpSp><xdr:clientData/></xdr:absoluteAnchor></xdr:wsDr>";
    Drawing d(binding::TRANSITIONAL, xml.data(), xml.size());
    ASSERT_EQ(d.pictureSize(), 1);
    DrawingPicture p = d.picture(0);
    EXPECT_EQ(p.kind, DrawingPicture::OneCell);
    EXPECT_EQ(
        std::vector<int64_t>({p.from.col, p.from.row, p.from.colOff, p.from.rowOff, p.cx, p.cy}),
        std::vector<int64_t>({1, 2, 19050, 9525, 952500, 476250}));
    EXPECT_EQ(p.embed, "rId7");
    d.addAnchor(3, 4, 5, 6, 1, 2, 3, 4, "rId8");
    std::string out;
    d.save(out);
    Drawing again(binding::TRANSITIONAL, out.data(), out.size());
    ASSERT_EQ(again.pictureSize(), 2);
    p = again.picture(1);
    EXPECT_EQ(std::vector<int64_t>({p.from.row, p.from.col, p.to.row, p.to.col, p.from.colOff,
                                    p.from.rowOff, p.to.colOff, p.to.rowOff}),
              std::vector<int64_t>({3, 4, 5, 6, 9525, 19050, 28575, 38100}));
    EXPECT_EQ(p.embed, "rId8");
    EXPECT_TRUE(has(out, "Chart 1") && has(out, "grpSp")) << out;
    EXPECT_THROW(again.picture(2), tberror);
}

// Drawings of the corpus are read by the binding, come back through a save
// unchanged, and each picture they hold is found in the book.
TEST(XMLPictures, CorpusDrawingsKeptAndPicturesFound) {
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    if (!fs::exists(corpus)) GTEST_SKIP() << "no corpus";
    int drawings = 0, pictures = 0;
    for (const auto &e : fs::recursive_directory_iterator(corpus)) {
        const std::string ext = e.path().extension().string();
        if (ext != ".xlsx" && ext != ".xlsm") continue;
        XMLBookProxy<char> book;
        if (!book.load(e.path().string().c_str())) continue; // the book test covers loading
        auto *impl = dynamic_cast<XMLBookImplT<char> *>(book.impl());
        ASSERT_TRUE(impl);
        std::set<std::wstring> names;
        for (const auto &p : impl->parts())
            if (impl->contentTypes().contentType(p.first) ==
                L"application/vnd.openxmlformats-officedocument.drawing+xml") {
                EXPECT_TRUE(dynamic_cast<Drawing *>(p.second)) << e.path() << " kept as bytes";
                names.insert(p.first);
            }
        if (names.empty()) continue;
        const std::string file = xmlparts::slurp(e.path());
        const Entries before = unzip(file.data(), file.size(), &names);
        for (int i = 0; i < book.sheetCount(); ++i) {
            ISheetT<char> *s = book.getSheet(i);
            if (!s || book.sheetType(i) != SHEETTYPE_SHEET) continue;
            for (int k = 0; k < s->pictureSize(); ++k, ++pictures) {
                int w = 0, h = 0;
                const int id =
                    s->getPicture(k, nullptr, nullptr, nullptr, nullptr, &w, &h, nullptr, nullptr);
                EXPECT_GE(id, 0) << e.path() << " picture " << k << ": " << book.errorMessage();
                EXPECT_TRUE(w >= 0 && h >= 0) << e.path();
            }
        }
        const char *bytes = nullptr;
        unsigned size = 0;
        ASSERT_TRUE(book.saveRaw(&bytes, &size)) << e.path();
        Entries saved = unzip(bytes, size, &names);
        std::map<std::wstring, std::string, CaseInsensitiveLess> savedParts(saved.begin(),
                                                                            saved.end());
        for (const auto &d : before) {
            ++drawings;
            const std::string source = xmlparts::canonicalXml(d.second);
            EXPECT_FALSE(source.empty()) << e.path();
            EXPECT_EQ(xmlparts::canonicalXml(savedParts[d.first]), source) << e.path();
        }
    }
    EXPECT_GT(drawings, 100);
    EXPECT_GT(pictures, 20);
}

} // namespace
