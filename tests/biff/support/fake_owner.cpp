#include "fake_owner.h"

namespace bifftest {

using namespace tabrix;

template <class C> FakeOwner<C>::FakeOwner() { _styles.init(); }

template <class C> FakeOwner<C>::~FakeOwner() = default;

template <class C> SheetImplT<C> &FakeOwner<C>::addSheet(const std::wstring &name) {
    _sheets.emplace_back(new BinarySheetT<C>(*this, name));
    return *_sheets.back();
}

template <class C> SheetImplT<C> &FakeOwner<C>::addCopy(const SheetImplT<C> &src) {
    _sheets.emplace_back(new BinarySheetT<C>(src, *this));
    return *_sheets.back();
}

template <class C> SheetImplT<C> *FakeOwner<C>::sheetAt(int index) {
    if (index < 0 || size_t(index) >= _sheets.size()) return nullptr;
    return _sheets[size_t(index)].get();
}

template <class C> int FakeOwner<C>::getTabIndex(const SheetImplT<C> *sheet) {
    for (size_t i = 0; i < _sheets.size(); ++i)
        if (_sheets[i].get() == sheet) return int(i);
    return 0;
}

template class FakeOwner<char>;
template class FakeOwner<wchar_t>;

} // namespace bifftest
