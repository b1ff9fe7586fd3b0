// The memory of a worksheet's cells: the arrays of its rows and the extras
// of its cells (formula texts and rarer content) come from free lists of a
// few dozen block sizes, carved from regions mapped straight from the
// kernel.  After a small first region, regions are 2 MiB in huge pages, so a
// million cells cost a few hundred page faults instead of some ten
// thousand, and an allocation or a release is a pointer or two moved.  A
// freed block goes back to the list of its size for the next one, so the
// memory stays bounded by the most the sheet held at once; the sheet
// hands its regions back at once when it goes.  Not thread-safe, like the
// sheet.
#pragma once

#include <cstddef>
#include <memory_resource>
#include <utility>
#include <vector>

namespace binding {

class c_cell_memory final : public std::pmr::memory_resource {
public:
    c_cell_memory() = default;
    c_cell_memory(const c_cell_memory &) = delete;
    c_cell_memory &operator=(const c_cell_memory &) = delete;
    ~c_cell_memory() override;

    // While a sheet goes as a whole, with its memory: what is released
    // there then need not go back to the lists (see c_cell).
    static bool discarding() { return s_discarding; }
    class c_discarding {
    public:
        c_discarding() : _was(s_discarding) { s_discarding = true; }
        ~c_discarding() { s_discarding = _was; }
        c_discarding(const c_discarding &) = delete;
        c_discarding &operator=(const c_discarding &) = delete;

    private:
        bool _was;
    };

    // Blocks up to this size come from the lists; larger ones are mapped
    // one by one.
    static constexpr size_t k_largest_listed = size_t(256) << 10;

private:
    static constexpr size_t k_classes = 56;
    static constexpr size_t k_first_region = size_t(64) << 10, k_last_region = size_t(2) << 20;

    void *do_allocate(size_t bytes, size_t alignment) override;
    void do_deallocate(void *p, size_t bytes, size_t alignment) override;
    bool do_is_equal(const std::pmr::memory_resource &o) const noexcept override {
        return this == &o;
    }
    void *carve(size_t bytes);

    struct s_free {
        s_free *next;
    };
    s_free *_lists[k_classes] = {};
    char *_free = nullptr; // the unused end of the last region
    size_t _left = 0;
    size_t _next_region = k_first_region;
    std::vector<std::pair<void *, size_t>> _regions;
    static thread_local bool s_discarding;
};

} // namespace binding
