// What an Open XML sheet asks of the book that owns it.
#pragma once

#include "ooxml/sheet/shared_strings.h"
#include "ooxml/styles/styles.h"

namespace tabrix {

template <class C> class SheetServicesT {
public:
    virtual ~SheetServicesT() = default;
    virtual SharedStrings &sharedStrings() = 0;      // the book's table, made on first use
    virtual SharedStrings *sharedStringsIfAny() = 0; // null when the book has none
    virtual Styles<C> &styles() = 0;                 // made on first use
    virtual bool r1c1Mode() = 0; // the book's reference mode, without the call's frame
    virtual bool utf8Mode() = 0;
};

} // namespace tabrix
