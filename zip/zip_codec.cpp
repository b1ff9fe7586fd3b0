#include "zip/zip_codec.h"

#include <bzlib.h>
#include <libdeflate.h>
#include <memory>

#include "book/mapped_memory.h"
#include "zip/zip_exception.h"

namespace tabrix {
namespace {

struct CompressorFree {
    void operator()(libdeflate_compressor *c) const { libdeflate_free_compressor(c); }
};
struct DecompressorFree {
    void operator()(libdeflate_decompressor *d) const { libdeflate_free_decompressor(d); }
};

// The default level: 6, and 5 for members of 4 MiB and more (a large
// worksheet or string table), where it takes a third to a half of the time
// of 6 for some more bytes.
int defaultLevel(size_t n) { return n >= (4u << 20) ? 5 : 6; }

} // namespace

bool zipDeflate(const unsigned char *in, size_t n, int level, std::vector<unsigned char> &out) {
    std::unique_ptr<libdeflate_compressor, CompressorFree> c(
        libdeflate_alloc_compressor(level < 0 ? defaultLevel(n) : level));
    if (!c) throw CZipException(CZipException::noMemory);
    // The compressor wants its bound as room, which is left uninitialised:
    // only the pages the result takes are touched.  Only a result smaller
    // than the input is worth keeping.
    const size_t room = libdeflate_deflate_compress_bound(c.get(), n);
    std::unique_ptr<unsigned char[]> buffer(new unsigned char[room]);
    adviseHugePages(buffer.get(), room);
    size_t got = n ? libdeflate_deflate_compress(c.get(), in, n, buffer.get(), room) : 0;
    out.assign(buffer.get(), buffer.get() + got);
    return got != 0 && got < n;
}

void zipInflate(const unsigned char *in, size_t n, unsigned char *out, size_t outSize) {
    std::unique_ptr<libdeflate_decompressor, DecompressorFree> d(libdeflate_alloc_decompressor());
    if (!d) throw CZipException(CZipException::noMemory);
    size_t got = 0;
    // The output area is exactly the declared size: more or less is damage.
    libdeflate_result r = libdeflate_deflate_decompress(d.get(), in, n, out, outSize, &got);
    if (r == LIBDEFLATE_INSUFFICIENT_SPACE) throw CZipException(CZipException::zlibBuffer);
    if (r != LIBDEFLATE_SUCCESS || got != outSize) throw CZipException(504);
}

void zipBunzip(const unsigned char *in, size_t n, unsigned char *out, size_t outSize) {
    bz_stream s{};
    if (BZ2_bzDecompressInit(&s, 0, 0) != BZ_OK) throw CZipException(602);
    s.next_in = const_cast<char *>(reinterpret_cast<const char *>(in));
    s.avail_in = 0;
    s.next_out = reinterpret_cast<char *>(out);
    s.avail_out = 0;
    size_t inLeft = n, outLeft = outSize;
    int r = BZ_OK;
    // bzip2 counts in unsigned int, so larger members go through in slices.
    while (r == BZ_OK) {
        if (s.avail_in == 0 && inLeft) {
            s.avail_in = static_cast<unsigned>(std::min<size_t>(inLeft, 1u << 30));
            inLeft -= s.avail_in;
        }
        if (s.avail_out == 0) {
            if (!outLeft) {
                // Output is full: a well-formed member ends here.
                char probe;
                s.next_out = &probe;
                s.avail_out = 1;
                r = BZ2_bzDecompress(&s);
                if (r != BZ_STREAM_END || s.avail_out == 0) r = BZ_OUTBUFF_FULL;
                break;
            }
            s.avail_out = static_cast<unsigned>(std::min<size_t>(outLeft, 1u << 30));
            outLeft -= s.avail_out;
        }
        unsigned before = s.avail_in + s.avail_out;
        r = BZ2_bzDecompress(&s);
        if (r == BZ_OK && s.avail_in + s.avail_out == before && !inLeft) r = BZ_UNEXPECTED_EOF;
    }
    bool whole = r == BZ_STREAM_END && s.avail_out == 0 && outLeft == 0;
    BZ2_bzDecompressEnd(&s);
    if (whole) return;
    // bzip2's codes -1 to -9 are the archive's 600 to 608; a short member is data damage.
    throw CZipException(r < 0 && r >= -9 ? 599 - r : CZipException::bzData);
}

uint32_t zipCrc32(const unsigned char *p, size_t n) { return libdeflate_crc32(0, p, n); }

} // namespace tabrix
