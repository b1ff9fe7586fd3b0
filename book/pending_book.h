// PendingBookT: the book handed out while a workbook format has no
// implementation in this build.  It keeps the settings a caller may make
// (locale, flags) and answers every operation that needs the file format
// with the text it was built with, e.g. "Open XML workbooks are not
// available yet".  It is used framed: FramedBookT<PendingBookT<C>>.
#ifndef TABRIX_PENDING_BOOK_H
#define TABRIX_PENDING_BOOK_H

#include <string>

#include "book/operation_frame.h"
#include "book/unsupported_operations.h"
#include "book/xstring.h"

namespace tabrix {

template <class C> class PendingBookT : public UnsupportedBookT<C> {
public:
    ISheetT<C> *getSheet(int index) override;
    SheetType sheetType(int index) override;
    bool delSheet(int index) override;
    int sheetCount() override { return 0; }
    int formatSize() override { return 0; }
    int fontSize() override { return 0; }
    int activeSheet() override { return 0; }
    void setActiveSheet(int index) override;
    int pictureSize() override { return 0; }
    bool refR1C1() override { return _refR1C1; }
    void setRefR1C1(bool refR1C1) override { _refR1C1 = refR1C1; }
    bool rgbMode() override { return _rgbMode; }
    void setRgbMode(bool rgbMode) override { _rgbMode = rgbMode; }
    int version() override;
    int biffVersion() override { return 0x0600; }
    bool isDate1904() override { return _date1904; }
    void setDate1904(bool date1904) override { _date1904 = date1904; }
    bool isTemplate() override { return _template; }
    void setTemplate(bool tmpl) override { _template = tmpl; }
    bool setLocale(const char *locale) override;
    const C *errorMessage() override;
    void release() override { delete this; }

    bool utf8Mode() const { return _utf8Mode; }

protected:
    explicit PendingBookT(const char *unavailable);
    const char *unsupported() const override { return _unavailable.c_str(); }
    XString &frameMessage() { return _message; }

private:
    std::string _unavailable;
    XString _message;
    std::string _savedLocale;
    bool _utf8Mode = false;
    bool _refR1C1 = false;
    bool _rgbMode = false;
    bool _date1904 = false;
    bool _template = false;
};

extern template class PendingBookT<char>;
extern template class PendingBookT<wchar_t>;

} // namespace tabrix

#endif
