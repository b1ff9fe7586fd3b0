// The part factory: what object a package entry becomes, by content type.
#pragma once

#include <string>

#include "ooxml/package/xfile.h"

namespace tabrix {

template <class C> class XMLBookImplT;

// A chart sheet, kept as bytes; a class of its own so that the book can
// tell it from other opaque parts.
class XMLChartSheet : public BinaryFile {
public:
    using BinaryFile::BinaryFile;
};

template <class C> class XGenerator {
public:
    // The object of an entry: null for the workbook's main types (the book
    // reads those itself), a bound part for the types the book models, and
    // a byte-exact BinaryFile for every other type.  Throws tberror.
    static XFile *create(XMLBookImplT<C> &book, const char *bytes, size_t size,
                         const std::wstring &contentType);
    // Whether a content type is one of the four workbook main types.
    static bool isWorkbookType(const std::wstring &contentType);
};

extern template class XGenerator<char>;
extern template class XGenerator<wchar_t>;

} // namespace tabrix
