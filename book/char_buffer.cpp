#include "book/char_buffer.h"

#include <cstring>
#include <cwchar>

namespace tabrix {

namespace {
size_t textLength(const char *s) { return std::strlen(s); }
size_t textLength(const wchar_t *s) { return std::wcslen(s); }
} // namespace

template <class C> void CharBuffer<C>::release() {
    if (_data != _inline) delete[] _data;
    _data = _inline;
    _capacity = kInline - 1;
}

template <class C> void CharBuffer<C>::clean() {
    release();
    _length = 0;
    _inline[0] = 0;
}

// Grows to hold `len` elements: double the capacity, or `len` if more.
template <class C> void CharBuffer<C>::reserve(size_t len) {
    if (len <= _capacity) return;
    size_t cap = _capacity * 2;
    if (cap < len) cap = len;
    C *data = new C[cap + 1];
    std::memcpy(data, _data, (_length + 1) * sizeof(C));
    release();
    _data = data;
    _capacity = cap;
}

template <class C> void CharBuffer<C>::assign(const C *text, size_t len) {
    _length = 0;
    _data[0] = 0;
    append(text, len);
}

template <class C> void CharBuffer<C>::assign(const C *text) { assign(text, textLength(text)); }

template <class C> void CharBuffer<C>::append(const C *text, size_t len) {
    reserve(_length + len);
    std::memmove(_data + _length, text, len * sizeof(C));
    _length += len;
    _data[_length] = 0;
}

template <class C> void CharBuffer<C>::append(const C *text) { append(text, textLength(text)); }

template <class C> void CharBuffer<C>::resize(size_t len) {
    reserve(len);
    for (size_t i = _length; i < len; ++i) _data[i] = 0;
    _length = len;
    _data[_length] = 0;
}

template class CharBuffer<char>;
template class CharBuffer<wchar_t>;

} // namespace tabrix
