// IBookT: a workbook.  The book owns its sheets, formats, fonts, pictures
// and text results; release() is the only way to end it.
#ifndef TABRIX_IBOOKT_H
#define TABRIX_IBOOKT_H

#include "tabrix/ISheetT.h"

namespace tabrix {

template <class C> class IBookT {
public:
    // Reads a workbook file, replacing the book's contents; false with errorMessage() on failure.
    virtual bool load(const C *filename) = 0;
    // Writes the book to a file in its own format; false with errorMessage() on failure.
    virtual bool save(const C *filename) = 0;
    // Like load, from `size` bytes in memory, which the book copies.
    virtual bool loadRaw(const char *data, unsigned size) = 0;
    // Like save, into a buffer the book owns until its next save; *data and *size point at it.
    virtual bool saveRaw(const char **data, unsigned *size) = 0;
    // Appends a sheet named `name`, a copy of initSheet when that is not null; null on failure.
    virtual ISheetT<C> *addSheet(const C *name, ISheetT<C> *initSheet) = 0;
    // Like addSheet, at position index (0 to sheetCount()); later sheets move up by one.
    virtual ISheetT<C> *insertSheet(int index, const C *name, ISheetT<C> *initSheet) = 0;
    // The sheet at index, from 0; null outside 0 to sheetCount() - 1.
    virtual ISheetT<C> *getSheet(int index) = 0;
    // Whether the sheet at index is a worksheet, a chart, or unknown (also out of range).
    virtual SheetType sheetType(int index) = 0;
    // Deletes the sheet at index; its handle becomes invalid. False when out of range.
    virtual bool delSheet(int index) = 0;
    // The number of sheets, charts included.
    virtual int sheetCount() = 0;
    // A new cell format, a copy of initFormat (may be of another book) or the default one.
    virtual IFormatT<C> *addFormat(IFormatT<C> *initFormat) = 0;
    // A new font, a copy of initFont or the default font; null on failure.
    virtual IFontT<C> *addFont(IFontT<C> *initFont) = 0;
    // The identifier of a number format string ("0.00%"), adding it once; 0 on failure.
    virtual int addCustomNumFormat(const C *customNumFormat) = 0;
    // The format string of a number format identifier; null for an unknown one.
    virtual const C *customNumFormat(int fmt) = 0;
    // The cell format at index, from 0 to formatSize() - 1; null outside.
    virtual IFormatT<C> *format(int index) = 0;
    // The number of cell formats of the book.
    virtual int formatSize() = 0;
    // The font at index, from 0 to fontSize() - 1; null outside.
    virtual IFontT<C> *font(int index) = 0;
    // The number of fonts of the book.
    virtual int fontSize() = 0;
    // The serial number of a date and time in the book's date system (1900 or 1904).
    virtual double datePack(int year, int month, int day, int hour, int min, int sec, int msec) = 0;
    // Splits a serial number into date and time; the time outputs may be null; false out of range.
    virtual bool dateUnpack(double value, int *year, int *month, int *day, int *hour, int *min,
                            int *sec, int *msec) = 0;
    // A palette index for red, green, blue (0-255 each), taking an entry if needed.
    virtual Color colorPack(int red, int green, int blue) = 0;
    // The red, green and blue (0-255) of a palette colour.
    virtual void colorUnpack(Color color, int *red, int *green, int *blue) = 0;
    // The index of the sheet shown first when the file is opened.
    virtual int activeSheet() = 0;
    // Makes the sheet at index the one shown first; out of range fails.
    virtual void setActiveSheet(int index) = 0;
    // The number of pictures the book holds.
    virtual int pictureSize() = 0;
    // The bytes of picture index, owned by the book; answers the picture kind, 0 on failure.
    virtual int getPicture(int index, const char **data, unsigned *size) = 0;
    // Adds a picture from an image file; answers its identifier for setPicture, -1 on failure.
    virtual int addPicture(const C *filename) = 0;
    // Like addPicture, from `size` bytes of an image in memory.
    virtual int addPicture2(const char *data, unsigned size) = 0;
    // The name of the default font, and its size in points in *fontSize (may be null).
    virtual const C *defaultFont(int *fontSize) = 0;
    // Sets the name and size in points of the default font.
    virtual void setDefaultFont(const C *fontName, int fontSize) = 0;
    // Whether formulas are shown in R1C1 rather than A1 references.
    virtual bool refR1C1() = 0;
    // Shows formulas in R1C1 (true) or A1 (false) references.
    virtual void setRefR1C1(bool refR1C1) = 0;
    // Whether colours pass as packed red-green-blue values rather than palette indexes.
    virtual bool rgbMode() = 0;
    // Makes colours pass as packed red-green-blue values (true) or palette indexes.
    virtual void setRgbMode(bool rgbMode) = 0;
    // The library's own version as one integer (0x03050408).
    virtual int version() = 0;
    // The version of the binary stream header: 0x0600, or 0x0500 for an older file loaded.
    virtual int biffVersion() = 0;
    // Whether serial numbers count from 1904 rather than 1900.
    virtual bool isDate1904() = 0;
    // Counts later serial numbers from 1904 (true) or 1900; stored cells keep their values.
    virtual void setDate1904(bool date1904) = 0;
    // Whether the book is saved as a template.
    virtual bool isTemplate() = 0;
    // Saves the book as a template (true) or as a workbook.
    virtual void setTemplate(bool tmpl) = 0;
    // Only "UTF-8" is accepted: char text is then read and written as UTF-8.
    virtual bool setLocale(const char *locale) = 0;
    // The message of the last operation: "ok" after success, else what went wrong.
    virtual const C *errorMessage() = 0;
    // Destroys the book with its sheets, formats, fonts and pictures.
    virtual void release() = 0;
    virtual ~IBookT() {}
};

} // namespace tabrix

#endif
