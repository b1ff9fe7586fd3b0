// Whole-member compression: deflate through libdeflate, bzip2 for method 12.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tabrix {

// Deflates `in` at `level` (-1: the default, 6, or 5 from 8 MiB on). Returns false when the
// deflated form would not be smaller than the input.
bool zipDeflate(const unsigned char *in, size_t n, int level, std::vector<unsigned char> &out);
// Inflates into exactly `outSize` bytes; anything else throws CZipException 504.
void zipInflate(const unsigned char *in, size_t n, unsigned char *out, size_t outSize);
// Decompresses a bzip2 member into exactly `outSize` bytes (codes 600-609).
void zipBunzip(const unsigned char *in, size_t n, unsigned char *out, size_t outSize);
uint32_t zipCrc32(const unsigned char *p, size_t n);

} // namespace tabrix
