// Stand-in bodies: nothing of the stylesheet is done yet.
#include "ooxml/styles/styles.h"

namespace tabrix {

namespace {
[[noreturn]] void notYet() { throw tberror(kNotSupportedYet); }
} // namespace

template <class C> Styles<C>::Styles(binding::e_edition, bool) {}
template <class C> Styles<C>::Styles(binding::e_edition, const char *, size_t, bool) {}
template <class C> Styles<C>::~Styles() = default;
template <class C> void Styles<C>::save(std::string &) { notYet(); }
template <class C> IFormatT<C> *Styles<C>::addFormat(IFormatT<C> *) { notYet(); }
template <class C> IFontT<C> *Styles<C>::addFont(IFontT<C> *) { notYet(); }
template <class C> IFormatT<C> *Styles<C>::format(int) { notYet(); }
template <class C> IFontT<C> *Styles<C>::font(int) { notYet(); }
template <class C> int Styles<C>::formatSize() { notYet(); }
template <class C> int Styles<C>::fontSize() { notYet(); }
template <class C> const C *Styles<C>::customNumFormat(int) { notYet(); }
template <class C> int Styles<C>::addCustomNumFormat(const C *) { notYet(); }
template <class C> const C *Styles<C>::defaultFont(int *) { notYet(); }
template <class C> void Styles<C>::setDefaultFont(const C *, int) { notYet(); }
template <class C> bool Styles<C>::rgbMode() { notYet(); }
template <class C> void Styles<C>::setRgbMode(bool) { notYet(); }
template <class C> Color Styles<C>::colorPack(int, int, int) { notYet(); }
template <class C> void Styles<C>::colorUnpack(Color, int *, int *, int *) { notYet(); }
template <class C> void Styles<C>::setUtf8Mode(bool) {}
template <class C> uint32_t Styles<C>::getStyleID(IFormatT<C> *) { notYet(); }
template <class C> IFormatT<C> *Styles<C>::formatByIndex(uint32_t) { return nullptr; }
template <class C> bool Styles<C>::isDate(uint32_t) { return false; }
template <class C> int Styles<C>::maxDigWidth() { notYet(); }

template class Styles<char>;
template class Styles<wchar_t>;

} // namespace tabrix
