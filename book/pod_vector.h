// PodVector: a vector of trivially copyable elements for the large arrays
// of a book: each kind of plain cell record (RK, Number, LabelSst, Blank,
// BoolErr) and the entries of the shared string table.  A small vector
// grows with realloc and a large one lives in memory mapped from the
// kernel, which grows without copying: a sheet filled cell by cell never
// copies its cells and touches each page of them once.
#ifndef TABRIX_POD_VECTOR_H
#define TABRIX_POD_VECTOR_H

#include "book/byte_region.h"

#include <cstddef>
#include <cstring>
#include <new>
#include <stdexcept>
#include <type_traits>

namespace tabrix {

template <class T> class PodVector {
    static_assert(std::is_trivially_copyable<T>::value, "elements are copied as bytes");

public:
    typedef T value_type;
    typedef T *iterator;
    typedef const T *const_iterator;

    PodVector() = default;
    PodVector(const PodVector &other) { *this = other; }
    PodVector &operator=(const PodVector &other) {
        if (this == &other) return *this;
        _size = 0;
        reserve(other._size);
        if (other._size)
            std::memcpy(static_cast<void *>(data()), other.data(), other._size * sizeof(T));
        _size = other._size;
        return *this;
    }
    PodVector(PodVector &&other) noexcept = default;
    PodVector &operator=(PodVector &&other) noexcept = default;

    size_t size() const { return _size; }
    bool empty() const { return _size == 0; }
    size_t capacity() const { return _store.capacityBytes() / sizeof(T); }
    T *data() { return reinterpret_cast<T *>(_store.bytes()); }
    const T *data() const { return reinterpret_cast<const T *>(_store.bytes()); }
    T &operator[](size_t i) { return data()[i]; }
    const T &operator[](size_t i) const { return data()[i]; }
    const T &at(size_t i) const {
        if (i >= _size) throw std::out_of_range("PodVector::at");
        return data()[i];
    }
    T &back() { return data()[_size - 1]; }
    const T &back() const { return data()[_size - 1]; }
    iterator begin() { return data(); }
    iterator end() { return data() + _size; }
    const_iterator begin() const { return data(); }
    const_iterator end() const { return data() + _size; }

    // A default element at the end.
    T &emplace_back() {
        if (_size == capacity()) _store.grow((_size + 1) * sizeof(T), _size * sizeof(T));
        T *e = new (data() + _size) T();
        ++_size;
        return *e;
    }
    void push_back(const T &value) { emplace_back() = value; }
    void reserve(size_t n) {
        if (n > capacity()) _store.grow(n * sizeof(T), _size * sizeof(T));
    }
    void shrink_to_fit() { _store.shrink(_size * sizeof(T)); }
    // Empties the vector and keeps its memory.
    void clear() { _size = 0; }

private:
    ByteRegion _store;
    size_t _size = 0;
};

} // namespace tabrix

#endif
