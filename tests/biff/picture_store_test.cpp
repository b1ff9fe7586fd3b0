// The book's picture store: refused pictures leave the message and change
// nothing; equal pictures make entries with equal digests.
#include "biff/book_impl.h"
#include "support/binary_book.h"
#include "officeart/drawing_group.h"
#include "support/interop_tools.h"
#include "support/test_images.h"

#include <gtest/gtest.h>

#include <string>

using namespace tabrix;
using namespace bifftest;

namespace {

using Bytes = std::vector<uint8_t>;
using BookPtr = BinaryBook<>;

BookPtr newBook() { return newBinaryBook(); }

Bytes img(const std::string &s) { return Bytes(s.begin(), s.end()); }

std::string fileOf(const std::string &name, const Bytes &bytes) {
    writeFile(tmpPath(name), std::string(bytes.begin(), bytes.end()));
    return tmpPath(name);
}

} // namespace

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
