// XMLBookProxy: the Open XML book as callers see it.  It holds one
// implementation, for Transitional (normal) or Strict packages, forwards
// every operation to it, and lets load() try the other form once when the
// first attempt fails.
#ifndef TABRIX_XML_BOOK_PROXY_H
#define TABRIX_XML_BOOK_PROXY_H

#include "book/operation_table.h"
#include "tabrix/IBookT.h"

namespace tabrix {

// Builds the implementations the proxy switches between.
template <class C> class XMLBookFactory {
public:
    virtual ~XMLBookFactory() {}
    virtual IBookT<C> *create(bool strict) = 0;
    // Whether `book` is an implementation for Transitional packages.
    virtual bool isNormal(IBookT<C> *book) = 0;
    // How far the last failed load of `book` got; of two failed attempts
    // the further one tells the cause.
    virtual int loadProgress(IBookT<C> *) { return 0; }
};

// The factory of this build: the Open XML book of each form.
template <class C> XMLBookFactory<C> &defaultXMLBookFactory();

template <class C> class XMLBookProxy : public IBookT<C> {
public:
    // Starts in normal mode.  The factory must outlive the proxy.
    explicit XMLBookProxy(XMLBookFactory<C> &factory = defaultXMLBookFactory<C>());
    ~XMLBookProxy() override;

    void switchToNormalMode() { switchTo(false); }
    void switchToStrictMode() { switchTo(true); }
    bool isNormalMode() { return _impl && _factory.isNormal(_impl); }
    IBookT<C> *impl() { return _impl; }

    bool load(const C *filename) override;
#define TABRIX_PROXY_FORWARD(R, name, params, args, neutral)                                       \
    R name params override { return _impl->name args; }
#define TABRIX_PROXY_OWN(R, name, params, args, neutral)
    TABRIX_BOOK_OPERATIONS(TABRIX_PROXY_FORWARD, TABRIX_PROXY_OWN)
#undef TABRIX_PROXY_FORWARD
#undef TABRIX_PROXY_OWN
    const C *errorMessage() override { return _impl->errorMessage(); }
    void release() override { delete this; }

private:
    void switchTo(bool strict);

    XMLBookFactory<C> &_factory;
    IBookT<C> *_impl = nullptr;
};

extern template class XMLBookProxy<char>;
extern template class XMLBookProxy<wchar_t>;

} // namespace tabrix

#endif
