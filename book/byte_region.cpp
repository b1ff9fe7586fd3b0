#include "book/byte_region.h"

#include "book/mapped_memory.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace tabrix {

namespace {
// Mapped regions are whole huge pages, so that huge pages can back them.
size_t hugePages(size_t bytes) {
    return (bytes + kHugePageBytes - 1) / kHugePageBytes * kHugePageBytes;
}
} // namespace

ByteRegion::~ByteRegion() { release(); }

ByteRegion::ByteRegion(ByteRegion &&other) noexcept
    : _bytes(other._bytes), _capacity(other._capacity), _mapped(other._mapped) {
    other._bytes = nullptr;
    other._capacity = 0;
    other._mapped = false;
}

ByteRegion &ByteRegion::operator=(ByteRegion &&other) noexcept {
    if (this != &other) {
        release();
        std::swap(_bytes, other._bytes);
        std::swap(_capacity, other._capacity);
        std::swap(_mapped, other._mapped);
    }
    return *this;
}

void ByteRegion::release() {
    if (_mapped)
        unmapRegion(_bytes, _capacity);
    else
        std::free(_bytes);
    _bytes = nullptr;
    _capacity = 0;
    _mapped = false;
}

void ByteRegion::grow(size_t need, size_t used) {
    if (need <= _capacity) return;
    size_t want = _capacity + _capacity / 2;
    if (want < need) want = need;
    if (want < 64) want = 64;
    if (_mapped) {
        // Whole huge pages once that large, so that they can back it.
        want = hugePages(want);
        _bytes = static_cast<char *>(remapRegion(_bytes, _capacity, want));
    } else if (want < kMapFrom) {
        void *p = std::realloc(_bytes, want);
        if (!p) throw std::bad_alloc();
        _bytes = static_cast<char *>(p);
    } else {
        want = hugePages(want);
        char *p = static_cast<char *>(mapZeroed(want));
        if (used) std::memcpy(p, _bytes, used);
        std::free(_bytes);
        _bytes = p;
        _mapped = true;
    }
    _capacity = want;
}

void ByteRegion::shrink(size_t used) {
    if (used == 0) {
        release();
        return;
    }
    if (!_mapped) {
        if (used < _capacity) {
            if (void *p = std::realloc(_bytes, used)) {
                _bytes = static_cast<char *>(p);
                _capacity = used;
            }
        }
        return;
    }
    size_t keep = wholePages(used);
    if (keep < _capacity) {
        _bytes = static_cast<char *>(remapRegion(_bytes, _capacity, keep));
        _capacity = keep;
    }
}

} // namespace tabrix
