// IStyleOwner: what a font or a format needs from the book that owns it —
// the message, the text mode, rgbMode, the font vector and the custom
// number format texts.  StyleTable implements it; a book may too.
#ifndef TABRIX_BIFF_STYLE_OWNER_H
#define TABRIX_BIFF_STYLE_OWNER_H
#include "book/mem_pool.h"
#include "book/xstring.h"
#include "tabrix/IFontT.h"
#include <cstddef>
namespace tabrix {
template <class C> class IStyleOwner {
public:
    virtual ~IStyleOwner() {}
    virtual XString &message() = 0;
    virtual bool utf8Mode() const = 0;
    virtual bool rgbMode() = 0;
    virtual void setRgbMode(bool rgbMode) = 0;
    virtual MemPool &pool() = 0;
    // Position of `font` in the font vector, or -1.
    virtual int fontPosition(const IFontT<C> *font) const = 0;
    // The font at `pos`; out of range throws "index is out of range".
    virtual IFontT<C> *fontAt(size_t pos) = 0;
    // The text of custom number format `id`, or null with the message set.
    virtual const C *customNumFormat(int id) = 0;
};
} // namespace tabrix
#endif
