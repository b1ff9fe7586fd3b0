// A binary book owned by a test, with its internals in reach: made new with
// UTF-8 texts, saved to bytes, and loaded from bytes or a file.
#ifndef TABRIX_TESTS_BIFF_BINARY_BOOK_H
#define TABRIX_TESTS_BIFF_BINARY_BOOK_H

#include "biff/book_impl.h"
#include "support/book_kinds.h"

#include <gtest/gtest.h>

#include <string>

namespace bifftest {

template <class C = char> using BinaryBook = bookkinds::Owned<tabrix::BookImplT<C>>;

// A new binary book; texts in UTF-8.
template <class C = char> BinaryBook<C> newBinaryBook() {
    BinaryBook<C> b(new tabrix::BinaryBookT<C>());
    b->setLocale("UTF-8");
    return b;
}

// The bytes saveRaw gives for `b` ("" when it fails, which fails the test).
template <class B> std::string savedBytes(B &b) {
    const char *data = nullptr;
    unsigned size = 0;
    EXPECT_TRUE(b.saveRaw(&data, &size)) << b.errorMessage();
    return std::string(data ? data : "", size);
}

// A new binary book loaded from `bytes`; the load must succeed.
inline BinaryBook<> loadedBook(const std::string &bytes) {
    BinaryBook<> b = newBinaryBook();
    EXPECT_TRUE(b->loadRaw(bytes.data(), unsigned(bytes.size()))) << b->errorMessage();
    return b;
}

} // namespace bifftest

#endif
