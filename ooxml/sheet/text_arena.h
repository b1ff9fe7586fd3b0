// TextArena: a growing list of texts packed one after another in blocks
// that never move, so a view of a text stays valid while texts are added.
// A table of a million short texts costs a few large allocations, not a
// million small ones, to build and to free.  Each text is followed by a
// NUL, so a view's data() is also a C string.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace tabrix {

class TextArena {
public:
    size_t size() const { return _count; }
    bool empty() const { return _count == 0; }
    std::string_view operator[](size_t i) const { return _views[i / kPage][i % kPage]; }

    // Copies `text` in and answers the view of the copy.
    std::string_view push_back(std::string_view text);

private:
    std::string_view copyIn(std::string_view text);
    // Blocks double from the first size to the last, so that a small table
    // stays small and a large one takes few blocks.
    static constexpr size_t kFirstBlock = 16 * 1024, kLastBlock = 4 * 1024 * 1024;
    static constexpr size_t kLong = 64 * 1024; // a text this long gets its own block
    // The views, in pages that are never moved or copied as the list grows.
    static constexpr size_t kPage = 4096;
    std::vector<std::unique_ptr<std::string_view[]>> _views;
    size_t _count = 0;
    std::vector<std::unique_ptr<char[]>> _blocks, _large; // packed texts; long ones alone
    char *_free = nullptr;                                // the unused end of the last block
    size_t _left = 0;
    size_t _nextBlock = kFirstBlock;
};

} // namespace tabrix
