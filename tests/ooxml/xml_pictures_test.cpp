// Pictures on Open XML sheets: placed, saved, loaded and read back with
// their anchors, kinds and bytes, and the messages.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "support/packages.h"
#include "support/test_images.h"
#include "tabrix.h"

using namespace tabrix;

namespace {

struct Book {
    IBookT<char> *b = static_cast<IBookT<char> *>(tbCreateXMLBookA());
    ~Book() { b->release(); }
    IBookT<char> *operator->() { return b; }
    std::string msg() { return b->errorMessage(); }
    std::string bytes() {
        const char *data = nullptr;
        unsigned size = 0;
        EXPECT_TRUE(b->saveRaw(&data, &size)) << msg();
        return std::string(data ? data : "", size);
    }
};

// Anchor cells, size and offsets of a sheet's picture, then its kind and
// whether its bytes are `image`.
std::vector<int> readBack(IBookT<char> &book, int sheet, int index, const std::string &image) {
    std::vector<int> v(8);
    const int id = book.getSheet(sheet)->getPicture(index, &v[0], &v[1], &v[2], &v[3], &v[4], &v[5],
                                                    &v[6], &v[7]);
    const char *data = nullptr;
    unsigned size = 0;
    v.push_back(book.getPicture(id, &data, &size));
    v.push_back(data && std::string(data, size) == image);
    return v;
}

// Default cells are 64 by 20 pixels.  Kinds: 0 PNG, 1 JPEG, 3 DIB, 4 EMF.
TEST(XMLPictures, PlacedSavedAndReadBack) {
    using namespace testimages;
    struct Case {
        std::string image;
        double scale;          // 0: setPicture2 with the width and height
        std::vector<int> at;   // sheet, row, col, width, height, offsets
        std::vector<int> read; // as readBack gives it
        const char *message;
    };
    // clang-format off
    const Case cases[] = {
        {png(100, 50), 1, {0, 0, 0, 0, 0, 0, 0}, {0, 0, 2, 1, 100, 50, 0, 0, 0, 1}, "ok"},
        {jpeg(40, 30), 2, {0, 3, 2, 0, 0, 5, 4}, {3, 2, 6, 3, 80, 60, 5, 4, 1, 1}, "ok"},
        {bmp(8, 8), 0, {1, 10, 5, 64, 20, 0, 0}, {10, 5, 11, 6, 64, 20, 0, 0, 3, 1}, "ok"},
        {emf(200, 120), 0, {1, 0, 0, 150, 45, 10, 15}, {0, 0, 3, 2, 150, 45, 10, 15, 4, 1},
         "ok"},
        {png(10, 10), 1, {0, 20, 0, 0, 0, 70, 0}, {20, 0, 20, 1, 10, 10, 64, 0, 0, 1},
         "warning: offset_x exceed cell's width"},
        {png(10, 10), 1, {0, 30, 0, 0, 0, 0, 25}, {30, 0, 31, 0, 10, 10, 0, 20, 0, 1},
         "warning: offset_y exceed cell's height"},
        {png(10, 10), 1, {1, 40, 0, 0, 0, 99, 99}, {40, 0, 41, 1, 10, 10, 64, 20, 0, 1},
         "warning: offset_x and offset_y exceed cell's size"},
    };
    // clang-format on
    Book b;
    b->addSheet("one", nullptr);
    b->addSheet("two", nullptr);
    for (const Case &c : cases) {
        const int id = b->addPicture2(c.image.data(), unsigned(c.image.size()));
        const std::vector<int> &a = c.at;
        if (c.scale > 0)
            b->getSheet(a[0])->setPicture(a[1], a[2], id, c.scale, a[5], a[6]);
        else
            b->getSheet(a[0])->setPicture2(a[1], a[2], id, a[3], a[4], a[5], a[6]);
        EXPECT_EQ(b.msg(), c.message) << a[1];
    }
    const std::string saved = b.bytes();
    // Each image is kept byte for byte in a part of its own, numbered by kind.
    packages::Parts parts = packages::unzip(saved.data(), saved.size());
    std::string media;
    for (const auto &p : parts)
        if (p.first.rfind(L"/xl/media/", 0) == 0)
            media += std::string(p.first.begin() + 10, p.first.end()) + " ";
    EXPECT_EQ(media, "image1.bmp image1.emf image1.jpg image1.png image2.png image3.png "
                     "image4.png ");
    EXPECT_EQ(parts[L"/xl/media/image1.png"], cases[0].image);
    EXPECT_NE(parts[L"/[Content_Types].xml"].find("Extension=\"png\" ContentType=\"image/png\""),
              std::string::npos);
    Book again;
    ASSERT_TRUE(again->loadRaw(saved.data(), unsigned(saved.size()))) << again.msg();
    int onSheet[2] = {0, 0};
    for (const Case &c : cases)
        EXPECT_EQ(readBack(*again.b, c.at[0], onSheet[c.at[0]]++, c.image), c.read) << c.at[1];
    EXPECT_EQ(again->getSheet(1)->pictureSize(), onSheet[1]);
    // A loaded book numbers its pictures in the order of the archive.
    EXPECT_EQ(again->getPicture(0, nullptr, nullptr), 3);
}

TEST(XMLPictures, Messages) {
    using B = IBookT<char>;
    using S = ISheetT<char>;
    struct Case {
        std::function<int(B &, S &)> act;
        int result;
        const char *message;
    };
    auto get = [](S &s, int i) {
        return s.getPicture(i, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                            nullptr);
    };
    const Case cases[] = {
        {[](B &, S &s) { return s.setPicture(0, 0, 1, 1.0, 0, 0), 0; }, 0,
         "pictureId is out of range"},
        {[](B &, S &s) { return s.setPicture2(0, 0, -1, 5, 5, 0, 0), 0; }, 0,
         "pictureId is out of range"},
        {[&](B &, S &s) { return get(s, 0); }, -1, "can't find drawing object"},
        {[&](B &, S &s) { return s.setPicture(0, 0, 0, 1, 0, 0), get(s, 1); }, -1,
         "picture index is out of range"},
        // One image twice on a sheet; a copy of the sheet shares its drawing.
        {[&](B &b, S &s) {
             s.setPicture(0, 0, 0, 1.0, 0, 0);
             s.setPicture(5, 5, 0, 1.0, 0, 0);
             b.addSheet("b", &s)->setPicture(3, 3, 0, 1.0, 0, 0);
             return get(s, 2) + 10 * s.pictureSize();
         },
         30, "ok"},
    };
    const std::string png = testimages::png(4, 4);
    for (const Case &c : cases) {
        Book b;
        ISheetT<char> *s = b->addSheet("a", nullptr);
        ASSERT_EQ(b->addPicture2(png.data(), unsigned(png.size())), 0);
        EXPECT_EQ(c.act(*b.b, *s), c.result) << c.message;
        EXPECT_EQ(b.msg(), c.message);
    }
}

} // namespace
