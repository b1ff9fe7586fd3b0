// The kinds of book the behaviour tests run for: each makes a new, empty
// book behind the public interface.  A kind joins the list once it saves
// and loads what it holds.
#ifndef TABRIX_TESTS_SUPPORT_BOOK_KINDS_H
#define TABRIX_TESTS_SUPPORT_BOOK_KINDS_H

#include "tabrix.h"
#include "tabrix/IBookT.h"

#include <gtest/gtest.h>

#include <string>

namespace bookkinds {

struct BookKind {
    const char *name;
    tabrix::IBookT<char> *(*make)();
};

inline const BookKind kBookKinds[] = {
    {"binary", [] { return static_cast<tabrix::IBookT<char> *>(tbCreateBookA()); }},
    {"xlsx", [] { return static_cast<tabrix::IBookT<char> *>(tbCreateXMLBookA()); }},
};

// A test's name suffix: the kind's name.
inline std::string kindName(const ::testing::TestParamInfo<BookKind> &info) {
    return info.param.name;
}

} // namespace bookkinds

#endif
