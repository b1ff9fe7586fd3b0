// Small but well-formed image files of each kind a book stores, built in
// memory with the given pixel size where the format carries one.
#ifndef TABRIX_TESTS_BIFF_TEST_IMAGES_H
#define TABRIX_TESTS_BIFF_TEST_IMAGES_H

#include <cstdint>
#include <vector>

namespace bifftest {

using ImageBytes = std::vector<uint8_t>;

ImageBytes pngImage(uint32_t width, uint32_t height);
// app is the marker after the start of image: 0xE0 JFIF, 0xE1 EXIF.
ImageBytes jpegImage(uint8_t app, uint16_t width, uint16_t height);
// A bitmap info header (40 bytes) and one row of pixels.
ImageBytes dibImage(int32_t width, int32_t height);
// The same behind a 14-byte bitmap file header.
ImageBytes bmpImage(int32_t width, int32_t height);
// A metafile behind a 22-byte placeable header.
ImageBytes wmfImage();
// An enhanced metafile whose bounds end at (right, bottom).
ImageBytes emfImage(int32_t right, int32_t bottom);

} // namespace bifftest

#endif
