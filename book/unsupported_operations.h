// Bases that implement every operation of the tables by throwing the text
// of unsupported(): a back end derives from one and overrides what it has,
// and the frame turns the rest into that message and the neutral result.
// errorMessage and release stay for the back end.
#ifndef TABRIX_UNSUPPORTED_OPERATIONS_H
#define TABRIX_UNSUPPORTED_OPERATIONS_H

#include "book/failure_frame.h"
#include "book/operation_table.h"
#include "book/tberror.h"
#include "tabrix/IBookT.h"

namespace tabrix {

template <class... A> void ignoreArguments(const A &...) {}

#define TABRIX_UNSUPPORTED_OPERATION(R, name, params, args, neutral)                               \
    R name params override {                                                                       \
        ignoreArguments args;                                                                      \
        throw tberror(unsupported());                                                              \
    }

template <class Char> class UnsupportedBookT : public IBookT<Char> {
public:
    using C = Char;
    using CharType = Char;
    TABRIX_BOOK_OPERATIONS(TABRIX_UNSUPPORTED_OPERATION, TABRIX_UNSUPPORTED_OPERATION)

protected:
    // The text of an operation this book does not have.
    virtual const char *unsupported() const { return kNotSupportedYet; }
};

template <class Char> class UnsupportedSheetT : public ISheetT<Char> {
public:
    using C = Char;
    using CharType = Char;
    TABRIX_SHEET_OPERATIONS(TABRIX_UNSUPPORTED_OPERATION)

protected:
    virtual const char *unsupported() const { return kNotSupportedYet; }
};

#undef TABRIX_UNSUPPORTED_OPERATION

} // namespace tabrix

#endif
