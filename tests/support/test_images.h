// Small but well-formed image files of each kind a book stores, built in
// memory with the given pixel size where the format carries one.  PNG and
// BMP are whole, so that decoders take them too; JPEG and the metafiles
// carry the headers the size readers look at.
#ifndef TABRIX_TESTS_SUPPORT_TEST_IMAGES_H
#define TABRIX_TESTS_SUPPORT_TEST_IMAGES_H

#include <string>

namespace testimages {

std::string png(int width, int height);
// app is the marker after the start of image: 0xE0 JFIF, 0xE1 EXIF.
std::string jpeg(int width, int height, unsigned char app = 0xE0);
// A bitmap info header (40 bytes) and its pixels.
std::string dib(int width, int height);
// The same behind a 14-byte bitmap file header.
std::string bmp(int width, int height);
// A metafile behind a 22-byte placeable header.
std::string wmf();
// An enhanced metafile whose bounds end at (right, bottom).
std::string emf(int right, int bottom);

} // namespace testimages

#endif
