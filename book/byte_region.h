// ByteRegion: a growable run of bytes for the large arrays of a book, the
// cell vectors and the bytes of a save.  A small region comes from malloc;
// from 256 KiB on it is mapped from the kernel and grows by moving page
// tables, so growing never copies what was written and each page is
// touched once.
#ifndef TABRIX_BYTE_REGION_H
#define TABRIX_BYTE_REGION_H

#include <cstddef>

namespace tabrix {

class ByteRegion {
public:
    ByteRegion() = default;
    ~ByteRegion();
    ByteRegion(const ByteRegion &) = delete;
    ByteRegion &operator=(const ByteRegion &) = delete;
    ByteRegion(ByteRegion &&other) noexcept;
    ByteRegion &operator=(ByteRegion &&other) noexcept;

    char *bytes() const { return _bytes; }
    size_t capacityBytes() const { return _capacity; }
    // Makes room for at least `need` bytes keeping the first `used`; grows
    // by half again at least.  Throws std::bad_alloc.
    void grow(size_t need, size_t used);
    // Gives back what lies beyond `used` bytes, as far as the holding allows.
    void shrink(size_t used);
    void release();

private:
    // Regions from this size on are mapped; smaller ones come from malloc.
    static const size_t kMapFrom = size_t(256) << 10;
    char *_bytes = nullptr;
    size_t _capacity = 0;
    bool _mapped = false;
};

} // namespace tabrix

#endif
