// TextArena: copying texts into the blocks.
#include "ooxml/sheet/text_arena.h"

#include <algorithm>
#include <cstring>

#include "book/mapped_memory.h"

namespace tabrix {

std::string_view TextArena::push_back(std::string_view text) {
    if (text.empty()) return _views.emplace_back();
    if (text.size() > kLong) {
        // A long text gets a block of its own; the block being filled stays.
        _large.emplace_back(new char[text.size()]);
        std::memcpy(_large.back().get(), text.data(), text.size());
        return _views.emplace_back(_large.back().get(), text.size());
    }
    if (text.size() > _left) {
        _blocks.emplace_back(new char[_nextBlock]);
        _free = _blocks.back().get();
        _left = _nextBlock;
        adviseHugePages(_free, _left);
        _nextBlock = std::min(2 * _nextBlock, kLastBlock);
    }
    std::memcpy(_free, text.data(), text.size());
    const std::string_view copy(_free, text.size());
    _free += text.size();
    _left -= text.size();
    return _views.emplace_back(copy);
}

} // namespace tabrix
