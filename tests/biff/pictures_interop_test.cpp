// Pictures against an independent reader: python's olefile opens the
// container and a small walker lists the drawing group's bytes and each
// stored picture.  Pictures we add come back there and through our own
// load; files with pictures written by others (the corpus, LibreOffice,
// gnumeric) list the same pictures through getPicture and keep their
// drawing group byte for byte through a save.
#include "biff/book_impl.h"
#include "support/binary_book.h"
#include "support/interop_tools.h"
#include "support/oracle.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Bytes = std::vector<uint8_t>;
using Book = BookImplT<char>;

using BookPtr = BinaryBook<>;

// Prints "group <hex>" with the joined drawing group bytes, then one line
// "pic <getPicture code> <hex of the image>" for each store entry.
const char *kWalker = R"PY(
import struct, sys, olefile
s = olefile.OleFileIO(sys.argv[1]).openstream('Workbook').read()
p, group, inside = 0, b'', False
while p + 4 <= len(s):
    rid, ln = struct.unpack_from('<HH', s, p)
    if rid == 235 or (inside and rid == 60):
        group += s[p + 4:p + 4 + ln]
        inside = True
    else:
        inside = False
    p += 4 + ln
print('group', group.hex() or '-')
codes = {0xF01A: 4, 0xF01B: 2, 0xF01C: 5, 0xF01D: 1, 0xF01E: 0, 0xF01F: 3, 0xF020: 6}
two = {981, 535, 1347, 1131, 1763, 1761, 1961, 1765}
def records(b, at, end):
    while at + 8 <= end:
        vi, t, ln = struct.unpack_from('<HHI', b, at)
        yield vi, t, at + 8, at + 8 + ln
        at += 8 + ln
for vi, t, a, e in records(group, 0, len(group)):
    for vi, t, a, e in records(group, a, e):
        if t != 0xF001:
            continue
        for vi, t, a, e in records(group, a, e):
            if t != 0xF007:
                continue
            for bvi, bt, ba, be in records(group, a + 36 + group[a + 33], e):
                head = (32 if (bvi >> 4) in two else 16) + (34 if bt in (0xF01A, 0xF01B, 0xF01C) else 1)
                print('pic', codes.get(bt, -1), group[ba + head:be].hex())
)PY";

std::vector<std::string> walk(const std::string &path) {
    return runPython("dgg_walk.py", kWalker, "'" + path + "'");
}

std::string hex(const char *data, unsigned size) {
    std::string out;
    char two[3];
    for (unsigned i = 0; i < size; ++i) {
        std::snprintf(two, sizeof two, "%02x", unsigned(uint8_t(data[i])));
        out += two;
    }
    return out;
}

// The lines the walker prints for our book's pictures.
std::vector<std::string> ourPictures(Book &book) {
    std::vector<std::string> lines;
    for (int i = 0; i < book.pictureSize(); ++i) {
        const char *data = nullptr;
        unsigned size = 0;
        int code = book.getPicture(i, &data, &size);
        lines.push_back("pic " + std::to_string(code) + " " + hex(data, size));
    }
    return lines;
}

} // namespace

TEST(PicturesInterop, AddedPicturesReadByAnotherWalker) {
    if (!oracle::has("olefile")) GTEST_SKIP() << "python3-olefile missing";
    const Bytes images[] = {pngImage(64, 32), jpegImage(0xE0, 10, 20), jpegImage(0xE1, 30, 40),
                            bmpImage(7, 8),   dibImage(9, 10),         wmfImage(),
                            emfImage(100, 50)};
    BookPtr book = newBinaryBook();
    book->addSheet("Sheet1", nullptr);
    for (const Bytes &b : images)
        ASSERT_GE(book->addPicture2(reinterpret_cast<const char *>(b.data()), unsigned(b.size())),
                  0);
    std::string path = tmpPath("pictures_added.xls");
    ASSERT_TRUE(book->save(path.c_str())) << book->errorMessage();
    std::vector<std::string> expected = ourPictures(*book);
    std::vector<std::string> lines = walk(path);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end()), expected);

    BookPtr loaded = newBinaryBook();
    ASSERT_TRUE(loaded->load(path.c_str())) << loaded->errorMessage();
    EXPECT_EQ(ourPictures(*loaded), expected);
}

TEST(PicturesInterop, OtherWritersPicturesAndGroupKept) {
    if (!oracle::has("olefile")) GTEST_SKIP() << "python3-olefile missing";
    std::vector<std::string> files;
    for (const std::string &f : corpusXlsFiles())
        if (f.find("picture") != std::string::npos) files.push_back(f);
    for (const std::string &f :
         xlsFromXlsx(std::string(TABRIX_CORPUS_DIR) + "/public/libxlsxwriter/image01.xlsx",
                     freshDir("pictures_made"), true))
        files.push_back(f);
    ASSERT_GE(files.size(), 3u);

    for (const std::string &f : files) {
        SCOPED_TRACE(f);
        std::vector<std::string> lines = walk(f);
        ASSERT_FALSE(lines.empty());
        ASSERT_NE(lines.size(), 1u) << "no pictures";
        BookPtr book = newBinaryBook();
        ASSERT_TRUE(book->load(f.c_str())) << book->errorMessage();
        EXPECT_EQ(ourPictures(*book), std::vector<std::string>(lines.begin() + 1, lines.end()));
        std::string saved = tmpPath("pictures_resaved.xls");
        ASSERT_TRUE(book->save(saved.c_str())) << book->errorMessage();
        std::vector<std::string> again = walk(saved);
        ASSERT_FALSE(again.empty());
        EXPECT_EQ(again[0], lines[0]) << "drawing group changed";

        // With one more picture, the old ones stay and the new one follows.
        const Bytes png = pngImage(5, 5);
        ASSERT_EQ(
            book->addPicture2(reinterpret_cast<const char *>(png.data()), unsigned(png.size())),
            int(lines.size()) - 1);
        ASSERT_TRUE(book->save(saved.c_str())) << book->errorMessage();
        std::vector<std::string> more = walk(saved);
        ASSERT_EQ(more.size(), lines.size() + 1);
        EXPECT_EQ(std::vector<std::string>(more.begin() + 1, more.end() - 1),
                  std::vector<std::string>(lines.begin() + 1, lines.end()));
        EXPECT_EQ(more.back(), ourPictures(*book).back());
    }
}
