// How a flat entry point reaches an interface operation: it casts the handle
// and hands every argument on, converting only what the C signature spells
// differently (int for bool and enumerations, void* for interface pointers).
// It checks nothing.
#ifndef TABRIX_FLAT_CALL_H
#define TABRIX_FLAT_CALL_H

#include <type_traits>

namespace tabrix {

// An out-flag: the operation writes a bool, the flat caller gets 0 or 1 in
// its int, which may be null.  Lives until the end of the call's full
// expression, then copies back.
class FlatBoolOut {
public:
    explicit FlatBoolOut(int *target) : _target(target) {}
    ~FlatBoolOut() {
        if (_target) *_target = _value ? 1 : 0;
    }
    FlatBoolOut(const FlatBoolOut &) = delete;
    operator bool *() { return &_value; }

private:
    int *_target;
    bool _value = false;
};

template <class P, class A> auto fromFlat(A a) {
    if constexpr (std::is_same_v<P, bool>)
        return a != 0;
    else if constexpr (std::is_enum_v<P>)
        return static_cast<P>(a);
    else if constexpr (std::is_same_v<P, bool *>)
        return FlatBoolOut(a);
    else if constexpr (std::is_same_v<A, void *>)
        return static_cast<P>(a);
    else if constexpr (std::is_same_v<A, void **>)
        return reinterpret_cast<P>(a);
    else
        return static_cast<P>(a);
}

template <class R, class V> R toFlat(V v) {
    if constexpr (std::is_same_v<V, bool>)
        return static_cast<unsigned char>(v);
    else if constexpr (std::is_enum_v<V>)
        return static_cast<R>(v);
    else
        return v;
}

template <class R, class T, class MR, class... P, class... A>
R flatCall(MR (T::*op)(P...), void *handle, A... args) {
    static_assert(sizeof...(P) == sizeof...(A), "flat signature differs from the operation");
    T *object = static_cast<T *>(handle);
    if constexpr (std::is_void_v<MR>)
        (object->*op)(fromFlat<P>(args)...);
    else
        return toFlat<R>((object->*op)(fromFlat<P>(args)...));
}

} // namespace tabrix

#define TB_FLAT_ARGS(...) __VA_ARGS__

#endif
