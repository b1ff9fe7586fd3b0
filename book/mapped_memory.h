// Memory mapped straight from the kernel for the large arrays of a book:
// it comes zero-filled, takes physical memory only where touched, and
// grows by moving page tables instead of copying bytes.  Regions of a huge
// page and more start on a huge-page boundary and are advised to be backed
// by huge pages: one fault then fills 2 MiB instead of 4 KiB, and a fault
// is far dearer than filling the memory it brings.
#ifndef TABRIX_BOOK_MAPPED_MEMORY_H
#define TABRIX_BOOK_MAPPED_MEMORY_H

#include <cstddef>

namespace tabrix {

constexpr size_t kHugePageBytes = size_t(2) << 20;

// `bytes` of zeroed memory, huge-page aligned from kHugePageBytes on;
// throws std::bad_alloc.
void *mapZeroed(size_t bytes);
// A region of `from` bytes made `to` bytes long, moved if need be; the
// bytes kept keep their contents, new ones are zero.  Throws std::bad_alloc
// and then leaves the region as it was.
void *remapRegion(void *p, size_t from, size_t to);
void unmapRegion(void *p, size_t bytes);
// Advises the whole huge pages inside a buffer of another allocator (a
// large string or array about to be filled) to be backed by huge pages;
// pages already touched stay as they are.
void adviseHugePages(void *p, size_t bytes);
// `bytes` rounded up to whole pages of the system.
size_t wholePages(size_t bytes);

} // namespace tabrix

#endif
