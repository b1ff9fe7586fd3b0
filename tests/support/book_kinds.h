// The kinds of book the behaviour tests run for: each makes a new, empty
// book behind the public interface.  A kind joins the list once it saves
// and loads what it holds.
#ifndef TABRIX_TESTS_SUPPORT_BOOK_KINDS_H
#define TABRIX_TESTS_SUPPORT_BOOK_KINDS_H

#include "tabrix.h"
#include "tabrix/IBookT.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace bookkinds {

// What differs by design between the kinds: the last row and column, the
// message of a read beyond them (null: the range message, as for writes),
// the message of a copy from a cell that is not there, whether the
// letters of a quoted text in a custom number format make it a date format,
// and whether a deleted sheet's handle stays usable.
struct BookKind {
    const char *name;
    tabrix::IBookT<char> *(*make)();
    int lastRow;
    int lastCol;
    const char *readBeyond;
    const char *noSourceCell;
    bool quotedLettersMakeDates;
    bool deletedSheetsStay;
};

inline const BookKind kBookKinds[] = {
    {"binary", [] { return static_cast<tabrix::IBookT<char> *>(tbCreateBookA()); }, 65535, 255,
     nullptr, "empty cell", false, true},
    {"xlsx", [] { return static_cast<tabrix::IBookT<char> *>(tbCreateXMLBookA()); }, 1048575, 16383,
     "cell is not found", "source cell is not found", true, false},
};

// Releases a book of any kind or character type through its own release().
struct BookDeleter {
    template <class B> void operator()(B *b) const {
        if (b) b->release();
    }
};
template <class B> using Owned = std::unique_ptr<B, BookDeleter>;
using BookPtr = Owned<tabrix::IBookT<char>>;

// A new book of the kind, with UTF-8 texts.
inline BookPtr newBook(const BookKind &kind) {
    BookPtr b(kind.make());
    b->setLocale("UTF-8");
    return b;
}

// `b` saved in memory and loaded into a new book of the kind.
inline BookPtr reloaded(const BookKind &kind, tabrix::IBookT<char> &b) {
    const char *data = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(b.saveRaw(&data, &size)) << b.errorMessage();
    BookPtr back = newBook(kind);
    EXPECT_TRUE(back->loadRaw(data, size)) << back->errorMessage();
    return back;
}

// A test's name suffix: the kind's name.
inline std::string kindName(const ::testing::TestParamInfo<BookKind> &info) {
    return info.param.name;
}

} // namespace bookkinds

#endif
