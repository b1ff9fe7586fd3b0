// TextArena: copying texts into the blocks.
#include "ooxml/sheet/text_arena.h"

#include <algorithm>
#include <cstring>

#include "book/mapped_memory.h"

namespace tabrix {

std::string_view TextArena::push_back(std::string_view text) {
    if (_count % kPage == 0) _views.emplace_back(new std::string_view[kPage]);
    const std::string_view copy = copyIn(text);
    _views.back()[_count++ % kPage] = copy;
    return copy;
}

std::string_view TextArena::copyIn(std::string_view text) {
    if (text.empty()) return std::string_view("", 0);
    const size_t need = text.size() + 1; // with its terminating NUL
    if (need > kLong) {
        // A long text gets a block of its own; the block being filled stays.
        _large.emplace_back(new char[need]);
        char *own = _large.back().get();
        std::memcpy(own, text.data(), text.size());
        own[text.size()] = 0;
        return std::string_view(own, text.size());
    }
    if (need > _left) {
        // A text longer than the next block's size (but not long) still fits.
        const size_t size = std::max(_nextBlock, need);
        _blocks.emplace_back(new char[size]);
        _free = _blocks.back().get();
        _left = size;
        adviseHugePages(_free, _left);
        _nextBlock = std::min(2 * _nextBlock, kLastBlock);
    }
    std::memcpy(_free, text.data(), text.size());
    _free[text.size()] = 0;
    const std::string_view copy(_free, text.size());
    _free += need;
    _left -= need;
    return copy;
}

} // namespace tabrix
