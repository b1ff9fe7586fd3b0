#include "book/mapped_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <new>

namespace tabrix {

namespace {

void adviseHuge(void *p, size_t bytes) {
    if (bytes >= kHugePageBytes) madvise(p, bytes, MADV_HUGEPAGE);
}

// Zeroed memory starting on a huge-page boundary.
void *mapHugeAligned(size_t bytes) {
    char *raw = static_cast<char *>(mmap(nullptr, bytes + kHugePageBytes, PROT_READ | PROT_WRITE,
                                         MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    if (raw == MAP_FAILED) throw std::bad_alloc();
    char *start =
        raw + (kHugePageBytes - reinterpret_cast<uintptr_t>(raw) % kHugePageBytes) % kHugePageBytes;
    if (start > raw) munmap(raw, size_t(start - raw));
    size_t tail = kHugePageBytes - size_t(start - raw);
    if (tail) munmap(start + bytes, tail);
    adviseHuge(start, bytes);
    return start;
}

} // namespace

void adviseHugePages(void *p, size_t bytes) {
    const uintptr_t start = reinterpret_cast<uintptr_t>(p);
    const uintptr_t from = (start + kHugePageBytes - 1) / kHugePageBytes * kHugePageBytes;
    const uintptr_t to = (start + bytes) / kHugePageBytes * kHugePageBytes;
    if (p && to > from) adviseHuge(reinterpret_cast<void *>(from), to - from);
}

size_t wholePages(size_t bytes) {
    static const size_t page = size_t(sysconf(_SC_PAGESIZE));
    return (bytes + page - 1) / page * page;
}

void *mapZeroed(size_t bytes) {
    if (bytes >= kHugePageBytes) return mapHugeAligned(bytes);
    void *p = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) throw std::bad_alloc();
    return p;
}

void *remapRegion(void *p, size_t from, size_t to) {
    if (to >= kHugePageBytes && to > from) {
        // Grown into a fresh huge-page aligned region: the old pages move
        // over by their page tables, the new part can take huge pages.
        void *q = mapZeroed(to);
        if (mremap(p, from, from, MREMAP_MAYMOVE | MREMAP_FIXED, q) == MAP_FAILED) {
            munmap(q, to);
            throw std::bad_alloc();
        }
        return q;
    }
    void *q = mremap(p, from, to, MREMAP_MAYMOVE);
    if (q == MAP_FAILED) throw std::bad_alloc();
    return q;
}

void unmapRegion(void *p, size_t bytes) {
    if (p && bytes) munmap(p, bytes);
}

} // namespace tabrix
