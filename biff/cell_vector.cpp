#include "biff/cell_vector.h"

#include "biff/records/blank.h"
#include "biff/records/bool_err.h"
#include "biff/records/label_sst.h"
#include "biff/records/number.h"
#include "biff/records/rk.h"

#include <cstring>

namespace tabrix {

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
