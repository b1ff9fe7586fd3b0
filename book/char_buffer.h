// CharBuffer: a zero-terminated text buffer that keeps short texts in an
// inline array and moves to the heap only for texts of 1000 elements or more.
#ifndef TABRIX_CHAR_BUFFER_H
#define TABRIX_CHAR_BUFFER_H

#include <cstddef>

namespace tabrix {

template <class C> class CharBuffer {
public:
    static const size_t kInline = 1000;

    CharBuffer() { clean(); }
    ~CharBuffer() { release(); }
    CharBuffer(const CharBuffer &) = delete;
    CharBuffer &operator=(const CharBuffer &) = delete;

    void assign(const C *text, size_t len);
    void assign(const C *text);
    void append(const C *text, size_t len);
    void append(const C *text);
    // Empties the buffer and gives back heap memory.
    void clean();
    // Makes room for `len` elements (plus the terminator) and sets the
    // length; kept elements stay, new ones are zero.
    void resize(size_t len);
    const C *c_str() const { return _data; }
    size_t length() const { return _length; }
    size_t capacity() const { return _capacity; }
    bool onHeap() const { return _data != _inline; }
    C &operator[](size_t i) { return _data[i]; }

private:
    void reserve(size_t len);
    void release();

    C _inline[kInline];
    C *_data = _inline;
    size_t _length = 0;
    size_t _capacity = kInline - 1;
};

extern template class CharBuffer<char>;
extern template class CharBuffer<wchar_t>;

} // namespace tabrix

#endif
