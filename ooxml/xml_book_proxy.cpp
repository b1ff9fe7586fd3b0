#include "ooxml/xml_book_proxy.h"

#include "book/book_factory.h"
#include "ooxml/book/xml_book_impl.h"

namespace tabrix {

namespace {

template <class C> class XMLBookImplFactory : public XMLBookFactory<C> {
public:
    IBookT<C> *create(bool strict) override {
        return new XMLBookT<C>(strict ? binding::STRICT : binding::TRANSITIONAL);
    }
    bool isNormal(IBookT<C> *book) override {
        auto *impl = dynamic_cast<XMLBookImplT<C> *>(book);
        return impl && impl->edition() == binding::TRANSITIONAL;
    }
    int loadProgress(IBookT<C> *book) override {
        auto *impl = dynamic_cast<XMLBookImplT<C> *>(book);
        return impl ? impl->loadProgress() : 0;
    }
};

} // namespace

template <class C> XMLBookFactory<C> &defaultXMLBookFactory() {
    static XMLBookImplFactory<C> factory;
    return factory;
}

template <class C>
XMLBookProxy<C>::XMLBookProxy(XMLBookFactory<C> &factory)
    : _factory(factory), _impl(factory.create(false)) {}

template <class C> XMLBookProxy<C>::~XMLBookProxy() {
    if (_impl) _impl->release();
}

// The old implementation goes, with whatever it held.
template <class C> void XMLBookProxy<C>::switchTo(bool strict) {
    IBookT<C> *fresh = _factory.create(strict);
    if (fresh != _impl) {
        IBookT<C> *old = _impl;
        _impl = fresh;
        if (old) old->release();
    }
}

// One attempt in the current form, then one in the other.  When both fail,
// the attempt that got further stays, so that its message tells the real
// cause rather than that the file is of the other form.
template <class C> bool XMLBookProxy<C>::load(const C *filename) {
    try {
        if (_impl->load(filename)) return true;
        IBookT<C> *first = _impl;
        _impl = _factory.create(_factory.isNormal(first));
        const bool loaded = _impl->load(filename);
        if (loaded || _factory.loadProgress(first) <= _factory.loadProgress(_impl)) {
            first->release();
            return loaded;
        }
        _impl->release();
        _impl = first;
        return false;
    } catch (...) {
        return false;
    }
}

template XMLBookFactory<char> &defaultXMLBookFactory<char>();
template XMLBookFactory<wchar_t> &defaultXMLBookFactory<wchar_t>();
template class XMLBookProxy<char>;
template class XMLBookProxy<wchar_t>;

template <class C> IBookT<C> *newXMLBook() { return new XMLBookProxy<C>(); }
template IBookT<char> *newXMLBook<char>();
template IBookT<wchar_t> *newXMLBook<wchar_t>();

} // namespace tabrix
