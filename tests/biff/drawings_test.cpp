// Pictures and comments on binary sheets: placed, saved and loaded again
// with the same anchors, texts and ids; the anchor arithmetic with its
// clamps; the ids of every shape in step with the book's clusters. The
// book's picture store: refused pictures leave the message and change
// nothing; equal pictures make entries with equal digests.
#include "biff/book_impl.h"
#include "support/binary_book.h"
#include "biff/drawing_run.h"
#include "biff/record_ids.h"
#include "biff/sheet_impl.h"
#include "officeart/drawing_group.h"
#include "officeart/sheet_shapes.h"
#include "support/interop_tools.h"
#include "support/record_walk.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Book = BookImplT<char>;
using BookPtr = BinaryBook<>;
using Bytes = std::vector<uint8_t>;

std::string fileOf(const std::string &name, const Bytes &bytes) {
    writeFile(tmpPath(name), std::string(bytes.begin(), bytes.end()));
    return tmpPath(name);
}

BookPtr loadBook(const std::string &path) {
    BookPtr book = newBinaryBook();
    EXPECT_TRUE(book->load(path.c_str())) << path << ": " << book->errorMessage();
    return book;
}

// "id r1 c1 r2 c2 w h ox oy" of each picture of the sheet.
std::vector<std::string> pictures(ISheetT<char> &sheet) {
    std::vector<std::string> out;
    for (int i = 0; i < sheet.pictureSize(); ++i) {
        int v[8] = {};
        int id = sheet.getPicture(i, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7]);
        std::string line = std::to_string(id);
        for (int x : v) line += " " + std::to_string(x);
        out.push_back(line);
    }
    return out;
}

// The drawing records of a sheet of a saved file, as the sheet keeps them.
std::vector<Biff> drawingRecords(const Substream &s) {
    std::vector<Biff> out;
    for (const WalkedRecord &r : drawingRun(s)) out.push_back(Biff{r.id, r.data});
    return out;
}

// Checks that every shape of the saved book has an id of its own, that each
// drawing counts its shapes and last id, and that the drawing group's
// clusters and totals cover them all.
void expectConsistentIds(const std::string &path) {
    WalkedBook walked = walkFile(path);
    ASSERT_EQ(walked.error, "");
    std::vector<uint8_t> groupBytes;
    for (const WalkedRecord &r : walked.substreams[0].records)
        if (r.id == rid::MsoDrawingGroup || (!groupBytes.empty() && r.id == rid::Continue))
            groupBytes.insert(groupBytes.end(), r.data.begin(), r.data.end());
    MsoDrawingGroup group;
    group.read(groupBytes.data(), groupBytes.size());
    OfficeArtFDGGBlock &block = group.clusters();
    std::set<uint32_t> ids;
    uint32_t shapes = 0, drawings = 0;
    for (size_t s = 1; s < walked.substreams.size(); ++s) {
        std::vector<Biff> records = drawingRecords(walked.substreams[s]);
        if (records.empty()) continue;
        DrawingRun run(records);
        DrawingLayout layout = scanDrawing(run.stream());
        ++drawings;
        shapes += layout.csp;
        EXPECT_EQ(layout.csp, layout.shapes.size());
        uint32_t last = 0;
        for (const DrawingShape &sp : layout.shapes) {
            EXPECT_TRUE(ids.insert(sp.spid).second) << "shape id " << sp.spid << " twice";
            last = std::max(last, sp.spid);
            size_t cluster = sp.spid / 1024 - 1;
            ASSERT_LT(cluster, block._clusters.size());
            EXPECT_EQ(block._clusters[cluster].dgid, layout.dgid);
            EXPECT_GE(block._clusters[cluster].cspidCur, sp.spid % 1024 + 1);
        }
        EXPECT_EQ(layout.spidCur, last);
        EXPECT_GT(block.spidMax, last);
    }
    EXPECT_EQ(block.cspSaved, shapes);
    EXPECT_EQ(block.cdgSaved, drawings);
    EXPECT_EQ(block.cidcl, block._clusters.size() + 1);
}

} // namespace

TEST(SheetDrawings, PicturesAndCommentsThroughSaveAndLoad) {
    struct Step {
        int sheet;
        const char *comment; // a comment when set, else a picture
        int row, col, pic, w, h, ox, oy;
    };
    // Columns are 64 pixels wide and rows 17 high; on sheet 0 column 5 is
    // hidden and row 4 is 30 pixels high.
    const Step steps[] = {
        {0, nullptr, 1, 1, 0, 100, 50, 0, 0},
        {0, "first note", 2, 2, 0, 129, 75, 0, 0},
        {0, nullptr, 0, 4, 1, 70, 30, 10, 5},
        {1, "\xd0\xbf\xd1\x80\xd0\xb8\xd0\xb2\xd0\xb5\xd1\x82", 0, 0, 0, 64, 17, 0, 0},
        {1, nullptr, 10, 10, 1, 64, 17, 64, 17},
        {0, "second note, then a long one", 7, 0, 0, 40, 40, 0, 0},
        {0, "first note replaced", 2, 2, 0, 200, 20, 0, 0},
    };
    const std::vector<std::string> expected[3] = {
        {"0 1 1 3 2 100 50 0 0", "1 0 4 2 6 70 30 10 5"},
        {"1 10 10 12 12 64 17 64 17"},
        {"0 1 1 3 2 100 50 0 0", "1 0 4 2 6 70 30 10 5"}, // the copy of sheet 0
    };
    const char *comments[][3] = {
        {"2 2", "first note replaced", "tabrix"},
        {"7 0", "second note, then a long one", "someone"},
        {"0 0", "\xd0\xbf\xd1\x80\xd0\xb8\xd0\xb2\xd0\xb5\xd1\x82", "tabrix"}};

    BookPtr book = newBinaryBook();
    ISheetT<char> *sheets[2] = {book->addSheet("One", nullptr), book->addSheet("Two", nullptr)};
    sheets[0]->setCol(5, 5, 8, nullptr, true);
    sheets[0]->setRow(4, 22.5, nullptr, false);
    const std::string png = testimages::png(40, 20), jpeg = testimages::jpeg(70, 30);
    ASSERT_EQ(book->addPicture2(png.data(), unsigned(png.size())), 0);
    ASSERT_EQ(book->addPicture2(jpeg.data(), unsigned(jpeg.size())), 1);
    for (const Step &s : steps) {
        if (s.comment)
            sheets[s.sheet]->writeComment(s.row, s.col, s.comment, s.row == 7 ? "someone" : nullptr,
                                          s.w, s.h);
        else
            sheets[s.sheet]->setPicture2(s.row, s.col, s.pic, s.w, s.h, s.ox, s.oy);
        ASSERT_STREQ(book->errorMessage(), "ok");
    }
    ASSERT_NE(book->addSheet("Copy", sheets[0]), nullptr);
    const std::string path = tmpPath("drawings_placed.xls");
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();
    expectConsistentIds(path);

    BookPtr loaded = loadBook(path);
    for (int round = 0; round < 2; ++round) {
        Book &b = round == 0 ? *book : *loaded;
        for (int s = 0; s < 3; ++s) EXPECT_EQ(pictures(*b.getSheet(s)), expected[s]) << round;
        for (const auto &c : comments) {
            int sheet = std::string(c[0]) == "0 0" ? 1 : 0;
            int row = c[0][0] - '0', col = c[0][2] - '0';
            const char *text = b.getSheet(sheet)->readComment(row, col);
            EXPECT_STREQ(text ? text : "(none)", c[1]) << round;
        }
        EXPECT_EQ(b.getSheet(0)->readComment(1, 1), nullptr);
    }
    // The replaced comment left one note object behind, not two.
    WalkedBook walked = walkFile(path);
    std::vector<Biff> records = drawingRecords(walked.substreams[1]);
    EXPECT_EQ(std::count_if(records.begin(), records.end(),
                            [](const Biff &r) { return r.id == rid::TxO; }),
              2);
}

TEST(SheetDrawings, AnchorArithmeticAndClamps) {
    struct Case {
        int row, col, w, h, ox, oy;
        OfficeArtCoord anchor;
        const char *message;
    };
    // Columns 64 pixels, column 2 hidden, rows 17; B8:C9 merged.
    const char *wide = "warning: offset_x exceed cell's width",
               *high = "warning: offset_y exceed cell's height",
               *both = "warning: offset_x and offset_y exceed cell's size";
    const Case cases[] = {
        {0, 0, 64, 17, 0, 0, {0, 0, 0, 0, 1, 0, 1, 0}, "ok"},
        {0, 0, 32, 8, 16, 4, {0, 256, 0, 60, 0, 768, 0, 180}, "ok"},
        {0, 1, 64, 17, 0, 0, {1, 0, 0, 0, 3, 0, 1, 0}, "ok"}, // steps over the hidden column
        {0, 0, 10, 10, 64, 0, {0, 1024, 0, 0, 1, 160, 0, 150}, "ok"},
        {0, 0, 10, 10, 70, 0, {0, 1024, 0, 0, 1, 160, 0, 150}, wide},
        {0, 0, 10, 10, 0, 20, {0, 0, 0, 256, 0, 160, 1, 150}, high},
        {0, 0, 1, 1, 99, 99, {0, 1024, 0, 256, 1, 16, 1, 15}, both},
        {5, 5, -1, 17, 0, 0, {5, 0, 5, 0, 5, 32767, 6, 0}, "ok"},
        {7, 1, -1, -1, 0, 0, {1, 0, 7, 0, 2, 32767, 8, 32767}, "ok"},
        {0, 250, 6400, 17, 0, 0, {250, 0, 0, 0, 255, 1024, 1, 0}, "ok"},
        {0, 0, -2, 10, 0, 0, {}, "picture size is incorrect"},
        {70000, 0, 10, 10, 0, 0, {}, "row must be in range 0-65535"},
        {0, 0, 10, 10, 0, 0, {}, "pictureId is out of range"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(std::to_string(c.row) + "," + std::to_string(c.col) + " " +
                     std::to_string(c.w) + "x" + std::to_string(c.h));
        BookPtr book = newBinaryBook();
        ISheetT<char> *sheet = book->addSheet("S", nullptr);
        sheet->setCol(2, 2, 8, nullptr, true);
        sheet->setMerge(7, 8, 1, 2);
        const std::string png = testimages::png(4, 4);
        if (std::string(c.message) != "pictureId is out of range")
            book->addPicture2(png.data(), unsigned(png.size()));
        sheet->setPicture2(c.row, c.col, 0, c.w, c.h, c.ox, c.oy);
        EXPECT_STREQ(book->errorMessage(), c.message);
        if (c.message[0] != 'o' && c.message[0] != 'w') {
            EXPECT_EQ(sheet->pictureSize(), 0);
            continue;
        }
        ASSERT_EQ(sheet->pictureSize(), 1);
        auto &impl = dynamic_cast<SheetImplT<char> &>(*sheet);
        int ox = std::min(c.ox, impl.colWidthPx(c.col)),
            oy = std::min(c.oy, impl.rowHeightInt(c.row));
        OfficeArtCoord a = impl.calcCoord(c.row, c.col, c.w, c.h, ox, oy);
        std::vector<uint8_t> got, want;
        putCoord(got, a);
        putCoord(want, c.anchor);
        EXPECT_EQ(got, want);
    }
}

TEST(PictureStore, RefusalsLeaveTheStoreAlone) {
    const std::string pngText = testimages::png(1, 1);
    const Bytes png(pngText.begin(), pngText.end());
    const Bytes short4 = {0x89, 'P', 'N', 'G'};
    const Bytes gif = {'G', 'I', 'F', '8', '9', 'a', 0, 0};
    const Bytes jpegNoMarker = {0xFF, 0xD8, 0x00, 0xE0, 0, 0};
    struct Case {
        const char *file;
        const Bytes *bytes;
        const char *message;
    };
    const Case cases[] = {
        {nullptr, &short4, "unknown picture format"},
        {nullptr, &gif, "unknown picture format"},
        {nullptr, &jpegNoMarker, "unknown picture format"},
        {"photo.jpeg", &png, "unknown picture format"},
        {"p.Png", &png, "unknown picture format"},
        {"not-a.jpg", &png, "invalid jpg file"},
        {"missing.png", nullptr, "can't open file"},
    };
    BookPtr book = newBinaryBook();
    for (const Case &c : cases) {
        SCOPED_TRACE(c.message);
        int id = -2;
        if (!c.file)
            id = book->addPicture2(reinterpret_cast<const char *>(c.bytes->data()),
                                   unsigned(c.bytes->size()));
        else if (c.bytes)
            id = book->addPicture(fileOf(c.file, *c.bytes).c_str());
        else
            id = book->addPicture(tmpPath("no/such/dir/missing.png").c_str());
        EXPECT_EQ(id, -1);
        EXPECT_STREQ(book->errorMessage(), c.message);
        EXPECT_EQ(book->pictureSize(), 0);
    }
    // A picture file the book takes, after all the refusals, is its first.
    EXPECT_EQ(book->addPicture(fileOf("taken.png", png).c_str()), 0) << book->errorMessage();
    EXPECT_EQ(book->pictureSize(), 1);
    // Equal bytes make two entries with equal digests.
    MsoDrawingGroup group;
    EXPECT_EQ(group.addPicture2(png.data(), png.size()), 0);
    EXPECT_EQ(group.addPicture2(png.data(), png.size()), 1);
    EXPECT_EQ(group.picture(0).blip()->image(), group.picture(1).blip()->image());
    EXPECT_EQ(Bytes(group.picture(0).blip()->digest(), group.picture(0).blip()->digest() + 16),
              Bytes(group.picture(1).blip()->digest(), group.picture(1).blip()->digest() + 16));
    group.addPicRef(2);
    EXPECT_EQ(group.picture(1).refCount(), 1u);
    EXPECT_THROW(group.addPicRef(3), tberror);
}
