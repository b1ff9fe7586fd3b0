// TextArena: copying texts into the blocks.
#include "ooxml/sheet/text_arena.h"

#include <cstring>

namespace tabrix {

std::string_view TextArena::push_back(std::string_view text) {
    if (text.empty()) return _views.emplace_back();
    if (text.size() > kBlock / 4) {
        // A long text gets a block of its own; the block being filled stays.
        _large.emplace_back(new char[text.size()]);
        std::memcpy(_large.back().get(), text.data(), text.size());
        return _views.emplace_back(_large.back().get(), text.size());
    }
    if (text.size() > _left) {
        _blocks.emplace_back(new char[kBlock]);
        _free = _blocks.back().get();
        _left = kBlock;
    }
    std::memcpy(_free, text.data(), text.size());
    const std::string_view copy(_free, text.size());
    _free += text.size();
    _left -= text.size();
    return _views.emplace_back(copy);
}

} // namespace tabrix
