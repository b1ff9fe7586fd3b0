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
    virtual bool refR1C1() = 0;
    virtual bool utf8Mode() = 0;
};

} // namespace tabrix
