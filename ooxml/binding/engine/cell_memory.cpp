// The cell memory: free lists of block sizes over mapped regions.
#include "ooxml/binding/engine/cell_memory.h"

#include <algorithm>
#include <new>

#include "book/mapped_memory.h"

namespace binding {

namespace {

// The block sizes: steps of 16 bytes up to 256, then four steps to each
// doubling (at most a fifth of a block unused) up to the largest listed.
struct s_size_class {
    size_t index, bytes;
};

s_size_class size_class(size_t n) {
    if (n <= 256) {
        const size_t i = n ? (n - 1) / 16 : 0;
        return {i, (i + 1) * 16};
    }
    const size_t m = n - 1;
    const size_t p = size_t(63 - __builtin_clzll(m)); // 8 and up
    const size_t step = (m >> (p - 2)) & 3;
    return {16 + (p - 8) * 4 + step, (5 + step) << (p - 2)};
}

// Blocks aligned beyond the lists' 16 bytes, and large ones, are mapped
// on their own.
bool listed(size_t bytes, size_t alignment) {
    return alignment <= 16 && bytes <= c_cell_memory::k_largest_listed;
}

} // namespace

thread_local bool c_cell_memory::s_discarding = false;

c_cell_memory::~c_cell_memory() {
    for (const auto &[p, bytes] : _regions) tabrix::unmapRegion(p, bytes);
}

void *c_cell_memory::carve(size_t bytes) {
    if (bytes > _left) {
        // The rest of the region is left.  A small first region keeps a
        // small sheet small; a sheet that outgrows it takes regions of a
        // huge page, each filled in one fault.
        const size_t size = std::max(_next_region, bytes);
        _free = static_cast<char *>(tabrix::mapZeroed(size));
        _regions.emplace_back(_free, size);
        _left = size;
        _next_region = k_last_region;
    }
    void *p = _free;
    _free += bytes;
    _left -= bytes;
    return p;
}

void *c_cell_memory::do_allocate(size_t bytes, size_t alignment) {
    if (!listed(bytes, alignment)) {
        if (alignment > 4096) throw std::bad_alloc();
        return tabrix::mapZeroed(tabrix::wholePages(bytes));
    }
    const s_size_class c = size_class(bytes);
    if (s_free *f = _lists[c.index]) {
        _lists[c.index] = f->next;
        return f;
    }
    return carve(c.bytes);
}

void c_cell_memory::do_deallocate(void *p, size_t bytes, size_t alignment) {
    if (!p) return;
    if (!listed(bytes, alignment)) {
        tabrix::unmapRegion(p, tabrix::wholePages(bytes));
        return;
    }
    s_free *f = static_cast<s_free *>(p);
    const size_t i = size_class(bytes).index;
    f->next = _lists[i];
    _lists[i] = f;
}

} // namespace binding
