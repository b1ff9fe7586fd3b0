#include "book/string_keeper.h"

#include <string>
#include <type_traits>

#include "book/encoding.h"

namespace tabrix {

template <class C> bool StringKeeper<C>::assign(const wchar_t *wide, bool utf8Mode) {
    if (!wide) {
        this->clean();
        return true;
    }
    if constexpr (std::is_same_v<C, wchar_t>) {
        CharBuffer<wchar_t>::assign(wide);
        return true;
    } else {
        std::string narrow;
        bool ok = toNarrow(wide, utf8Mode, narrow);
        CharBuffer<char>::assign(narrow.data(), narrow.size());
        return ok;
    }
}

template class StringKeeper<char>;
template class StringKeeper<wchar_t>;

} // namespace tabrix
