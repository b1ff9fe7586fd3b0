// The creation entry points.
#include "tabrix.h"

#include "biff/book_impl.h"
#include "ooxml/xml_book_proxy.h"

using namespace tabrix;

namespace {
template <class Make> void *orNull(Make make) {
    try {
        return make();
    } catch (...) {
        return nullptr;
    }
}

template <class C> IBookT<C> *newBook() { return new BinaryBookT<C>(); }
template <class C> IBookT<C> *newXMLBook() { return new XMLBookProxy<C>(); }
} // namespace

extern "C" {
TBBook tbCreateBookA(void) { return orNull(newBook<char>); }
TBBook tbCreateBookCA(void) { return newBook<char>(); }
void *tbCreateBookW(void) { return orNull(newBook<wchar_t>); }
TBBook tbCreateXMLBookA(void) { return orNull(newXMLBook<char>); }
TBBook tbCreateXMLBookCA(void) { return newXMLBook<char>(); }
void *tbCreateXMLBookW(void) { return orNull(newXMLBook<wchar_t>); }
}
