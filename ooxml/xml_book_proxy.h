// XMLBookProxy: the Open XML book as callers see it.  It holds one
// implementation, for Transitional (normal) or Strict packages, forwards
// every operation to it, and lets load() try the other form once when the
// first attempt fails.
#ifndef TABRIX_XML_BOOK_PROXY_H
#define TABRIX_XML_BOOK_PROXY_H

#include "tabrix/IBookT.h"

namespace tabrix {

// Builds the implementations the proxy switches between.
template <class C> class XMLBookFactory {
public:
    virtual ~XMLBookFactory() {}
    virtual IBookT<C> *create(bool strict) = 0;
    // Whether `book` is an implementation for Transitional packages.
    virtual bool isNormal(IBookT<C> *book) = 0;
};

// The factory of this build: its implementations fail every load and save
// with kXMLUnavailable.
template <class C> XMLBookFactory<C> &defaultXMLBookFactory();

extern const char *const kXMLUnavailable;

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
    bool save(const C *filename) override { return _impl->save(filename); }
    bool loadRaw(const char *data, unsigned size) override { return _impl->loadRaw(data, size); }
    bool saveRaw(const char **data, unsigned *size) override { return _impl->saveRaw(data, size); }
    ISheetT<C> *addSheet(const C *name, ISheetT<C> *initSheet) override {
        return _impl->addSheet(name, initSheet);
    }
    ISheetT<C> *insertSheet(int index, const C *name, ISheetT<C> *initSheet) override {
        return _impl->insertSheet(index, name, initSheet);
    }
    ISheetT<C> *getSheet(int index) override { return _impl->getSheet(index); }
    SheetType sheetType(int index) override { return _impl->sheetType(index); }
    bool delSheet(int index) override { return _impl->delSheet(index); }
    int sheetCount() override { return _impl->sheetCount(); }
    IFormatT<C> *addFormat(IFormatT<C> *initFormat) override {
        return _impl->addFormat(initFormat);
    }
    IFontT<C> *addFont(IFontT<C> *initFont) override { return _impl->addFont(initFont); }
    int addCustomNumFormat(const C *customNumFormat) override {
        return _impl->addCustomNumFormat(customNumFormat);
    }
    const C *customNumFormat(int fmt) override { return _impl->customNumFormat(fmt); }
    IFormatT<C> *format(int index) override { return _impl->format(index); }
    int formatSize() override { return _impl->formatSize(); }
    IFontT<C> *font(int index) override { return _impl->font(index); }
    int fontSize() override { return _impl->fontSize(); }
    double datePack(int year, int month, int day, int hour, int min, int sec,
                    int msec) override {
        return _impl->datePack(year, month, day, hour, min, sec, msec);
    }
    bool dateUnpack(double value, int *year, int *month, int *day, int *hour, int *min,
                    int *sec, int *msec) override {
        return _impl->dateUnpack(value, year, month, day, hour, min, sec, msec);
    }
    Color colorPack(int red, int green, int blue) override {
        return _impl->colorPack(red, green, blue);
    }
    void colorUnpack(Color color, int *red, int *green, int *blue) override {
        _impl->colorUnpack(color, red, green, blue);
    }
    int activeSheet() override { return _impl->activeSheet(); }
    void setActiveSheet(int index) override { _impl->setActiveSheet(index); }
    int pictureSize() override { return _impl->pictureSize(); }
    int getPicture(int index, const char **data, unsigned *size) override {
        return _impl->getPicture(index, data, size);
    }
    int addPicture(const C *filename) override { return _impl->addPicture(filename); }
    int addPicture2(const char *data, unsigned size) override {
        return _impl->addPicture2(data, size);
    }
    const C *defaultFont(int *fontSize) override { return _impl->defaultFont(fontSize); }
    void setDefaultFont(const C *fontName, int fontSize) override {
        _impl->setDefaultFont(fontName, fontSize);
    }
    bool refR1C1() override { return _impl->refR1C1(); }
    void setRefR1C1(bool refR1C1) override { _impl->setRefR1C1(refR1C1); }
    bool rgbMode() override { return _impl->rgbMode(); }
    void setRgbMode(bool rgbMode) override { _impl->setRgbMode(rgbMode); }
    int version() override { return _impl->version(); }
    int biffVersion() override { return _impl->biffVersion(); }
    bool isDate1904() override { return _impl->isDate1904(); }
    void setDate1904(bool date1904) override { _impl->setDate1904(date1904); }
    bool isTemplate() override { return _impl->isTemplate(); }
    void setTemplate(bool tmpl) override { _impl->setTemplate(tmpl); }
    bool setLocale(const char *locale) override { return _impl->setLocale(locale); }
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
