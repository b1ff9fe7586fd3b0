// The memory of a worksheet's cells: the arrays of its rows come from
// pools of a few block sizes, whose chunks are mapped straight from the
// kernel (in huge pages from 2 MiB on).  A million cells then cost a few
// hundred page faults instead of some ten thousand, and the sheet hands
// its chunks back at once when it goes.  Freed arrays return to their
// pool for the next row, so the memory stays bounded by the most the
// sheet held at once.
#pragma once

#include <memory_resource>

namespace binding {

class c_cell_memory {
public:
    c_cell_memory();
    std::pmr::memory_resource *resource() { return &_pools; }

private:
    // Whole chunks from the kernel, each mapped and unmapped on its own.
    class c_mapped : public std::pmr::memory_resource {
        static size_t mapped_size(size_t bytes, size_t alignment);
        void *do_allocate(size_t bytes, size_t alignment) override;
        void do_deallocate(void *p, size_t bytes, size_t alignment) override;
        bool do_is_equal(const std::pmr::memory_resource &o) const noexcept override {
            return this == &o;
        }
    };
    c_mapped _mapped;
    std::pmr::unsynchronized_pool_resource _pools;
};

} // namespace binding
