// The creation entry points.
#include "tabrix.h"

#include "book/book_factory.h"

using namespace tabrix;

namespace {
template <class Make> void *orNull(Make make) {
    try {
        return make();
    } catch (...) {
        return nullptr;
    }
}
} // namespace

extern "C" {
TBBook tbCreateBookA(void) { return orNull(newBinaryBook<char>); }
TBBook tbCreateBookCA(void) { return newBinaryBook<char>(); }
void *tbCreateBookW(void) { return orNull(newBinaryBook<wchar_t>); }
TBBook tbCreateXMLBookA(void) { return orNull(newXMLBook<char>); }
TBBook tbCreateXMLBookCA(void) { return newXMLBook<char>(); }
void *tbCreateXMLBookW(void) { return orNull(newXMLBook<wchar_t>); }
}
