// PendingBookT: the book handed out while a workbook format has no
// implementation in this build.  It keeps the settings a caller may make
// (locale, flags, message) and answers every operation that needs the file
// format with its neutral value and the text it was built with, e.g.
// "Open XML workbooks are not available yet".
#ifndef TABRIX_PENDING_BOOK_H
#define TABRIX_PENDING_BOOK_H

#include <string>

#include "book/xstring.h"
#include "tabrix/IBookT.h"

namespace tabrix {

template <class C> class PendingBookT : public IBookT<C> {
public:
    explicit PendingBookT(const char *unavailable);

    bool load(const C *filename) override;
    bool save(const C *filename) override;
    bool loadRaw(const char *data, unsigned size) override;
    bool saveRaw(const char **data, unsigned *size) override;
    ISheetT<C> *addSheet(const C *name, ISheetT<C> *initSheet) override;
    ISheetT<C> *insertSheet(int index, const C *name, ISheetT<C> *initSheet) override;
    ISheetT<C> *getSheet(int index) override;
    SheetType sheetType(int index) override;
    bool delSheet(int index) override;
    int sheetCount() override { return 0; }
    IFormatT<C> *addFormat(IFormatT<C> *initFormat) override;
    IFontT<C> *addFont(IFontT<C> *initFont) override;
    int addCustomNumFormat(const C *customNumFormat) override;
    const C *customNumFormat(int fmt) override;
    IFormatT<C> *format(int index) override;
    int formatSize() override { return 0; }
    IFontT<C> *font(int index) override;
    int fontSize() override { return 0; }
    double datePack(int year, int month, int day, int hour, int min, int sec, int msec) override;
    bool dateUnpack(double value, int *year, int *month, int *day, int *hour, int *min,
                    int *sec, int *msec) override;
    Color colorPack(int red, int green, int blue) override;
    void colorUnpack(Color color, int *red, int *green, int *blue) override;
    int activeSheet() override { return 0; }
    void setActiveSheet(int) override {}
    int pictureSize() override { return 0; }
    int getPicture(int index, const char **data, unsigned *size) override;
    int addPicture(const C *filename) override;
    int addPicture2(const char *data, unsigned size) override;
    const C *defaultFont(int *fontSize) override;
    void setDefaultFont(const C *fontName, int fontSize) override;
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
    // Sets the message to the unavailable text and answers `neutral`.
    template <class R> R unavailable(R neutral);
    void unavailable();

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
