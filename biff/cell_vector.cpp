#include "biff/cell_vector.h"

#include "biff/mapped_memory.h"
#include "biff/records/blank.h"
#include "biff/records/bool_err.h"
#include "biff/records/label_sst.h"
#include "biff/records/number.h"
#include "biff/records/rk.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace tabrix {

CellStorage::~CellStorage() { release(); }

CellStorage::CellStorage(CellStorage &&other) noexcept
    : _bytes(other._bytes), _capacity(other._capacity), _mapped(other._mapped) {
    other._bytes = nullptr;
    other._capacity = 0;
    other._mapped = false;
}

CellStorage &CellStorage::operator=(CellStorage &&other) noexcept {
    if (this != &other) {
        release();
        std::swap(_bytes, other._bytes);
        std::swap(_capacity, other._capacity);
        std::swap(_mapped, other._mapped);
    }
    return *this;
}

void CellStorage::release() {
    if (_mapped)
        unmapRegion(_bytes, _capacity);
    else
        std::free(_bytes);
    _bytes = nullptr;
    _capacity = 0;
    _mapped = false;
}

void CellStorage::grow(size_t need, size_t used) {
    if (need <= _capacity) return;
    size_t want = _capacity + _capacity / 2;
    if (want < need) want = need;
    if (want < 64) want = 64;
    if (_mapped) {
        // Whole huge pages once that large, so that they can back it.
        want = want >= kHugePageBytes
                   ? (want + kHugePageBytes - 1) / kHugePageBytes * kHugePageBytes
                   : wholePages(want);
        _bytes = static_cast<char *>(remapRegion(_bytes, _capacity, want));
    } else if (want < kMapFrom) {
        void *p = std::realloc(_bytes, want);
        if (!p) throw std::bad_alloc();
        _bytes = static_cast<char *>(p);
    } else {
        want = wholePages(want);
        char *p = static_cast<char *>(mapZeroed(want));
        if (used) std::memcpy(p, _bytes, used);
        std::free(_bytes);
        _bytes = p;
        _mapped = true;
    }
    _capacity = want;
}

void CellStorage::shrink(size_t used) {
    if (used == 0) {
        release();
        return;
    }
    if (!_mapped) {
        if (used < _capacity) {
            if (void *p = std::realloc(_bytes, used)) {
                _bytes = static_cast<char *>(p);
                _capacity = used;
            }
        }
        return;
    }
    size_t keep = wholePages(used);
    if (keep < _capacity) {
        _bytes = static_cast<char *>(remapRegion(_bytes, _capacity, keep));
        _capacity = keep;
    }
}

template <class T> CellVector<T> &CellVector<T>::operator=(const CellVector &other) {
    if (this == &other) return *this;
    _size = 0;
    reserve(other._size);
    if (other._size) std::memcpy(static_cast<void *>(data()), other.data(), other._size * sizeof(T));
    _size = other._size;
    return *this;
}

template class CellVector<RK>;
template class CellVector<Number>;
template class CellVector<LabelSst>;
template class CellVector<Blank>;
template class CellVector<BoolErr>;

} // namespace tabrix
