#include "ooxml/xml_book_proxy.h"

#include "book/book_factory.h"
#include "book/pending_book.h"

namespace tabrix {

const char *const kXMLUnavailable = "Open XML workbooks are not available yet";

namespace {

// Stands in for the Open XML implementation of one form until it exists.
template <class C> class PendingXMLBookT : public PendingBookT<C> {
public:
    explicit PendingXMLBookT(bool strict) : PendingBookT<C>(kXMLUnavailable), _strict(strict) {}
    bool strict() const { return _strict; }

private:
    bool _strict;
};

template <class C> class PendingXMLBookFactory : public XMLBookFactory<C> {
public:
    IBookT<C> *create(bool strict) override { return new FramedBookT<PendingXMLBookT<C>>(strict); }
    bool isNormal(IBookT<C> *book) override {
        auto *pending = dynamic_cast<PendingXMLBookT<C> *>(book);
        return pending && !pending->strict();
    }
};

} // namespace

template <class C> XMLBookFactory<C> &defaultXMLBookFactory() {
    static PendingXMLBookFactory<C> factory;
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

// One attempt in the current form, then one in the other; the proxy stays in
// the form of the second attempt, so errorMessage tells why that one failed.
template <class C> bool XMLBookProxy<C>::load(const C *filename) {
    try {
        if (_impl->load(filename)) return true;
        if (isNormalMode())
            switchToStrictMode();
        else
            switchToNormalMode();
        return _impl->load(filename);
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
