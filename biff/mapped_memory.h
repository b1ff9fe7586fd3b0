// Memory mapped straight from the kernel for the large, growing arrays of a
// sheet: it comes zero-filled, takes physical memory only where touched,
// and grows by moving page tables instead of copying bytes.  Regions of a
// huge page and more are advised to be backed by huge pages, so that one
// fault fills 2 MiB instead of 4 KiB.
#ifndef TABRIX_BIFF_MAPPED_MEMORY_H
#define TABRIX_BIFF_MAPPED_MEMORY_H

#include <cstddef>

namespace tabrix {

constexpr size_t kHugePageBytes = size_t(2) << 20;

// `bytes` of zeroed memory; throws std::bad_alloc.
void *mapZeroed(size_t bytes);
// The same, starting on a huge-page boundary.
void *mapHugeAligned(size_t bytes);
// A region of `from` bytes made `to` bytes long, moved if need be; the
// bytes kept keep their contents, new ones are zero.  Throws std::bad_alloc
// and then leaves the region as it was.
void *remapRegion(void *p, size_t from, size_t to);
void unmapRegion(void *p, size_t bytes);
// `bytes` rounded up to whole pages of the system.
size_t wholePages(size_t bytes);

} // namespace tabrix

#endif
