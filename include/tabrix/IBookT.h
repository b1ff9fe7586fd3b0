// IBookT: a workbook.  The book owns its sheets, formats, fonts, pictures
// and text results; release() is the only way to end it.
#ifndef TABRIX_IBOOKT_H
#define TABRIX_IBOOKT_H

#include "tabrix/ISheetT.h"

namespace tabrix {

template <class C> class IBookT {
public:
    virtual bool load(const C *filename) = 0;
    virtual bool save(const C *filename) = 0;
    virtual bool loadRaw(const char *data, unsigned size) = 0;
    virtual bool saveRaw(const char **data, unsigned *size) = 0;
    virtual ISheetT<C> *addSheet(const C *name, ISheetT<C> *initSheet) = 0;
    virtual ISheetT<C> *insertSheet(int index, const C *name, ISheetT<C> *initSheet) = 0;
    virtual ISheetT<C> *getSheet(int index) = 0;
    virtual SheetType sheetType(int index) = 0;
    virtual bool delSheet(int index) = 0;
    virtual int sheetCount() = 0;
    virtual IFormatT<C> *addFormat(IFormatT<C> *initFormat) = 0;
    virtual IFontT<C> *addFont(IFontT<C> *initFont) = 0;
    virtual int addCustomNumFormat(const C *customNumFormat) = 0;
    virtual const C *customNumFormat(int fmt) = 0;
    virtual IFormatT<C> *format(int index) = 0;
    virtual int formatSize() = 0;
    virtual IFontT<C> *font(int index) = 0;
    virtual int fontSize() = 0;
    virtual double datePack(int year, int month, int day, int hour, int min, int sec,
                            int msec) = 0;
    virtual bool dateUnpack(double value, int *year, int *month, int *day, int *hour, int *min,
                            int *sec, int *msec) = 0;
    virtual Color colorPack(int red, int green, int blue) = 0;
    virtual void colorUnpack(Color color, int *red, int *green, int *blue) = 0;
    virtual int activeSheet() = 0;
    virtual void setActiveSheet(int index) = 0;
    virtual int pictureSize() = 0;
    virtual int getPicture(int index, const char **data, unsigned *size) = 0;
    virtual int addPicture(const C *filename) = 0;
    virtual int addPicture2(const char *data, unsigned size) = 0;
    virtual const C *defaultFont(int *fontSize) = 0;
    virtual void setDefaultFont(const C *fontName, int fontSize) = 0;
    virtual bool refR1C1() = 0;
    virtual void setRefR1C1(bool refR1C1) = 0;
    virtual bool rgbMode() = 0;
    virtual void setRgbMode(bool rgbMode) = 0;
    virtual int version() = 0;
    virtual int biffVersion() = 0;
    virtual bool isDate1904() = 0;
    virtual void setDate1904(bool date1904) = 0;
    virtual bool isTemplate() = 0;
    virtual void setTemplate(bool tmpl) = 0;
    virtual bool setLocale(const char *locale) = 0;
    virtual const C *errorMessage() = 0;
    virtual void release() = 0;
    virtual ~IBookT() {}
};

} // namespace tabrix

#endif
