// The book's picture store: each kind of image is recognised by its bytes
// (and by its file name), stored with the headers it must lose, measured,
// handed back by getPicture and kept through saveRaw and loadRaw; refused
// pictures leave the message and change nothing.
#include "biff/book_impl.h"
#include "support/binary_book.h"
#include "officeart/drawing_group.h"
#include "support/interop_tools.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Bytes = std::vector<uint8_t>;
using Book = BookImplT<char>;

using BookPtr = BinaryBook<>;

BookPtr newBook() { return newBinaryBook(); }

Bytes img(const std::string &s) { return Bytes(s.begin(), s.end()); }
Bytes tail(const Bytes &b, size_t from) { return Bytes(b.begin() + long(from), b.end()); }

std::string fileOf(const std::string &name, const Bytes &bytes) {
    writeFile(tmpPath(name), std::string(bytes.begin(), bytes.end()));
    return tmpPath(name);
}

Bytes picture(Book &book, int index, int &code) {
    const char *data = nullptr;
    unsigned size = 0;
    code = book.getPicture(index, &data, &size);
    return data ? Bytes(data, data + size) : Bytes();
}

} // namespace

TEST(PictureStore, KindsSizesAndStoredBytes) {
    struct Case {
        const char *file; // added by name when set, else by bytes
        Bytes bytes;
        int code, width, height;
        size_t stripped; // leading bytes not stored
    };
    const Case cases[] = {
        {nullptr, img(testimages::png(640, 480)), 0, 640, 480, 0},
        {"pic.PNG", img(testimages::png(3, 70000)), 0, 3, 70000, 0},
        {nullptr, img(testimages::jpeg(320, 200)), 1, 320, 200, 0},
        {nullptr, img(testimages::jpeg(4000, 3000, 0xE1)), 1, 4000, 3000, 0},
        {"photo.jpg", img(testimages::jpeg(17, 9, 0xE1)), 1, 17, 9, 0},
        {nullptr, img(testimages::bmp(33, 44)), 3, 33, 44, 14},
        {"b.BMP", img(testimages::bmp(5, 6)), 3, 5, 6, 14},
        {nullptr, img(testimages::dib(12, 34)), 3, 12, 34, 0},
        {nullptr, img(testimages::wmf()), 2, 200, 200, 22},
        {"m.wmf", img(testimages::wmf()), 2, 200, 200, 22},
        {nullptr, img(testimages::emf(150, 75)), 4, 150, 75, 0},
        {"e.EMF", img(testimages::emf(10, 20)), 4, 10, 20, 0},
    };
    BookPtr book = newBook();
    MsoDrawingGroup group;
    for (size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i) {
        const Case &c = cases[i];
        SCOPED_TRACE(i);
        int id = c.file ? book->addPicture(fileOf(c.file, c.bytes).c_str())
                        : book->addPicture2(reinterpret_cast<const char *>(c.bytes.data()),
                                            unsigned(c.bytes.size()));
        ASSERT_EQ(id, int(i)) << book->errorMessage();
        ASSERT_EQ(group.addPicture2(c.bytes.data(), c.bytes.size()), int(i));
        EXPECT_EQ(group.picture(i).width(), c.width);
        EXPECT_EQ(group.picture(i).height(), c.height);
        int code = -1;
        EXPECT_EQ(picture(*book, int(i), code), tail(c.bytes, c.stripped));
        EXPECT_EQ(code, c.code);
    }
    // Saved and loaded, every picture comes back the same.
    BookPtr loaded = loadedBook(savedBytes(*book));
    ASSERT_EQ(loaded->pictureSize(), int(sizeof cases / sizeof cases[0]));
    for (size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i) {
        int code = -1;
        EXPECT_EQ(picture(*loaded, int(i), code), tail(cases[i].bytes, cases[i].stripped)) << i;
        EXPECT_EQ(code, cases[i].code);
    }
    // The group as written reads back to the same bytes.
    Bytes written = group.write();
    MsoDrawingGroup again;
    again.read(written.data(), written.size());
    EXPECT_EQ(again.write(), written);
    EXPECT_EQ(again.pictureCount(), group.pictureCount());
}

TEST(PictureStore, RefusalsLeaveTheStoreAlone) {
    const Bytes png = img(testimages::png(1, 1));
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
    BookPtr book = newBook();
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
    const char *data = nullptr;
    unsigned size = 0;
    book->getPicture(0, &data, &size);
    EXPECT_STREQ(book->errorMessage(), "index is out of range");
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
