#include "ooxml/styles/styles.h"

#include "book/failure_frame.h"
#include "book/tberror.h"

namespace tabrix {

template <class C>
Styles<C>::Styles(binding::e_edition edition, bool) : _part(edition, binding::PART_STYLESHEET) {}
template <class C>
Styles<C>::Styles(binding::e_edition edition, const char *bytes, size_t size, bool)
    : _part(edition, binding::PART_STYLESHEET, bytes, size) {}
template <class C> Styles<C>::~Styles() = default;
template <class C> void Styles<C>::save(std::string &out) { _part.save(out); }
template <class C> IFormatT<C> *Styles<C>::addFormat(IFormatT<C> *) {
    throw tberror(kNotSupportedYet);
}
template <class C> IFontT<C> *Styles<C>::addFont(IFontT<C> *) { throw tberror(kNotSupportedYet); }
template <class C> IFormatT<C> *Styles<C>::format(int) { throw tberror(kNotSupportedYet); }
template <class C> IFontT<C> *Styles<C>::font(int) { throw tberror(kNotSupportedYet); }
template <class C> int Styles<C>::formatSize() { return 0; }
template <class C> int Styles<C>::fontSize() { return 0; }
template <class C> const C *Styles<C>::customNumFormat(int) { throw tberror(kNotSupportedYet); }
template <class C> int Styles<C>::addCustomNumFormat(const C *) { throw tberror(kNotSupportedYet); }
template <class C> const C *Styles<C>::defaultFont(int *) { throw tberror(kNotSupportedYet); }
template <class C> void Styles<C>::setDefaultFont(const C *, int) {
    throw tberror(kNotSupportedYet);
}
template <class C> bool Styles<C>::rgbMode() { return false; }
template <class C> void Styles<C>::setRgbMode(bool) { throw tberror(kNotSupportedYet); }
template <class C> Color Styles<C>::colorPack(int, int, int) { throw tberror(kNotSupportedYet); }
template <class C> void Styles<C>::colorUnpack(Color, int *, int *, int *) {
    throw tberror(kNotSupportedYet);
}
template <class C> void Styles<C>::setUtf8Mode(bool) {}
template <class C> uint32_t Styles<C>::getStyleID(IFormatT<C> *) {
    throw tberror(kNotSupportedYet);
}
template <class C> IFormatT<C> *Styles<C>::formatByIndex(uint32_t) { return nullptr; }
template <class C> bool Styles<C>::isDate(uint32_t) { return false; }
template <class C> int Styles<C>::maxDigWidth() { return 7; }

template class Styles<char>;
template class Styles<wchar_t>;

} // namespace tabrix
