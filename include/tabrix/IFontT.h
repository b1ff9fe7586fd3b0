// IFontT: a font of a book; IFontPrivate adds what the library itself needs.
#ifndef TABRIX_IFONTT_H
#define TABRIX_IFONTT_H

#include "tabrix/enums.h"

namespace tabrix {

template <class C> class IFontT {
public:
    virtual int size() = 0;
    virtual void setSize(int size) = 0;
    virtual bool italic() = 0;
    virtual void setItalic(bool italic) = 0;
    virtual bool strikeOut() = 0;
    virtual void setStrikeOut(bool strikeOut) = 0;
    virtual Color color() = 0;
    virtual void setColor(Color color) = 0;
    virtual bool bold() = 0;
    virtual void setBold(bool bold) = 0;
    virtual Script script() = 0;
    virtual void setScript(Script script) = 0;
    virtual Underline underline() = 0;
    virtual void setUnderline(Underline underline) = 0;
    virtual const C *name() = 0;
    virtual bool setName(const C *name) = 0;
    virtual ~IFontT() {}
};

// The is... operations tell whether a font states the attribute itself; a
// binary font always does.
template <class C> class IFontPrivate : public IFontT<C> {
public:
    virtual bool isSize() = 0;
    virtual bool isItalic() = 0;
    virtual bool isStrikeOut() = 0;
    virtual bool isColor() = 0;
    virtual bool isBold() = 0;
    virtual bool isScript() = 0;
    virtual bool isUnderline() = 0;
    virtual bool isName() = 0;
    virtual bool rgbMode() = 0;
    virtual void setRgbMode(bool rgbMode) = 0;
};

} // namespace tabrix

#endif
