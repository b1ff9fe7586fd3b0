// CellVector: the vector of one kind of plain cell record (RK, Number,
// LabelSst, Blank, BoolErr).  Elements are trivially copyable, so a small
// vector grows with realloc and a large one lives in memory mapped from the
// kernel, which grows without copying: a sheet filled cell by cell never
// copies its cells and touches each page of them once.
#ifndef TABRIX_BIFF_CELL_VECTOR_H
#define TABRIX_BIFF_CELL_VECTOR_H

#include "biff/byte_region.h"

#include <cstddef>
#include <new>
#include <type_traits>

namespace tabrix {

template <class T> class CellVector {
    static_assert(std::is_trivially_copyable<T>::value, "cells are copied as bytes");

public:
    typedef T value_type;
    typedef T *iterator;
    typedef const T *const_iterator;

    CellVector() = default;
    CellVector(const CellVector &other) { *this = other; }
    CellVector &operator=(const CellVector &other);
    CellVector(CellVector &&other) noexcept = default;
    CellVector &operator=(CellVector &&other) noexcept = default;

    size_t size() const { return _size; }
    bool empty() const { return _size == 0; }
    size_t capacity() const { return _store.capacityBytes() / sizeof(T); }
    T *data() { return reinterpret_cast<T *>(_store.bytes()); }
    const T *data() const { return reinterpret_cast<const T *>(_store.bytes()); }
    T &operator[](size_t i) { return data()[i]; }
    const T &operator[](size_t i) const { return data()[i]; }
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
