// The cell memory: pools over mapped chunks.
#include "ooxml/binding/engine/cell_memory.h"

#include <algorithm>
#include <new>

#include "book/mapped_memory.h"

namespace binding {

namespace {

// Blocks up to the array of a full row (16,384 cells, grown to twice that)
// are pooled; chunks grow to some megabytes, where huge pages take them.
std::pmr::pool_options poolOptions() {
    std::pmr::pool_options o;
    o.max_blocks_per_chunk = 1u << 16;
    o.largest_required_pool_block = 2u << 20;
    return o;
}

} // namespace

c_cell_memory::c_cell_memory() : _pools(poolOptions(), &_mapped) {}

// A mapping starts on a page, and from a huge page's size on, on a huge
// page: a larger alignment is asked for with a size of at least as much.
size_t c_cell_memory::c_mapped::mapped_size(size_t bytes, size_t alignment) {
    if (alignment > 4096) bytes = std::max(bytes, tabrix::kHugePageBytes);
    return tabrix::wholePages(bytes);
}

void *c_cell_memory::c_mapped::do_allocate(size_t bytes, size_t alignment) {
    if (alignment > tabrix::kHugePageBytes) throw std::bad_alloc();
    return tabrix::mapZeroed(mapped_size(bytes, alignment));
}

void c_cell_memory::c_mapped::do_deallocate(void *p, size_t bytes, size_t alignment) {
    tabrix::unmapRegion(p, mapped_size(bytes, alignment));
}

} // namespace binding
