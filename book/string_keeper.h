// StringKeeper: holds a text result converted from wide text, valid until the
// next assign.
#ifndef TABRIX_STRING_KEEPER_H
#define TABRIX_STRING_KEEPER_H

#include "book/char_buffer.h"

namespace tabrix {

template <class C> class StringKeeper : public CharBuffer<C> {
public:
    // Converts `wide` to C text (see encoding.h).  A null text cleans the
    // buffer.  Answers false when a character was lost ("?" in its place).
    bool assign(const wchar_t *wide, bool utf8Mode);
    using CharBuffer<C>::assign;
};

extern template class StringKeeper<char>;
extern template class StringKeeper<wchar_t>;

} // namespace tabrix

#endif
