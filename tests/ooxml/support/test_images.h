// Small images of each kind the pictures tests place: valid enough for
// their headers to give the size (and, for PNG and BMP, for any decoder).
#ifndef TABRIX_TESTS_OOXML_TEST_IMAGES_H
#define TABRIX_TESTS_OOXML_TEST_IMAGES_H

#include <string>

namespace testimages {

// A solid RGB picture of width x height pixels.
std::string png(int width, int height);
std::string bmp(int width, int height);
// A baseline JPEG header with its frame size and no scan.
std::string jpeg(int width, int height);
// An enhanced metafile of a header and an end record, with the bounds.
std::string emf(int width, int height);

} // namespace testimages

#endif
