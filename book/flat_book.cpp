// The flat book entry points, one per row of TB_BOOK_ENTRIES.
#include "tabrix.h"

#include "book/flat_call.h"
#include "tabrix/IBookT.h"

using tabrix::IBookT;

#define TB_DEFINE_BOOK_ENTRY(ret, Name, op, params, args)                                          \
    ret tbBook##Name##A params {                                                                   \
        return tabrix::flatCall<ret>(&IBookT<char>::op, TB_FLAT_ARGS args);                        \
    }

extern "C" {
TB_BOOK_ENTRIES(TB_DEFINE_BOOK_ENTRY)
}
