// How a book hands a wide text to its caller: through one of its XStrings,
// converted to the caller's character type.  A lost character leaves the
// warning in the book's message.
#ifndef TABRIX_TEXT_RESULT_H
#define TABRIX_TEXT_RESULT_H

#include <cstring>
#include <cwchar>
#include <string>

#include "book/encoding.h"
#include "book/xstring.h"

namespace tabrix {

extern const char *const kConversionWarning;

// A wide caller gets code points; a narrow one its encoding of the units.
inline const wchar_t *forCaller(const wchar_t *wide, std::wstring &, const char *) { return wide; }
inline const wchar_t *forCaller(const wchar_t *wide, std::wstring &scratch, const wchar_t *) {
    return unitsToCodePoints(wide, scratch);
}

template <class C>
const C *textResult(XString &buffer, XString &message, const wchar_t *wide, bool utf8Mode) {
    if (!wide) return nullptr;
    std::wstring scratch;
    buffer.assign(forCaller(wide, scratch, static_cast<const C *>(nullptr)));
    const C *text = buffer.template c_str<C>(utf8Mode);
    message.assign(buffer.conversionFailed() ? kConversionWarning : "ok");
    return text;
}

// Length of a caller's text in its own elements.
inline size_t tslen(const char *text) { return std::strlen(text); }
inline size_t tslen(const wchar_t *text) { return std::wcslen(text); }

// A caller's text as the library's wide text of UTF-16 units (null gives an
// empty text).  A narrow text that doesn't convert in the C locale gives an
// empty text and the answer false; invalid UTF-8 throws.
inline bool wideText(const char *text, bool utf8Mode, std::wstring &out) {
    if (!text) {
        out.clear();
        return true;
    }
    return toWide(text, utf8Mode, out);
}
inline bool wideText(const wchar_t *text, bool, std::wstring &out) {
    if (text)
        codePointsToUnits(text, out);
    else
        out.clear();
    return true;
}

// The length that the formats' text limits count: UTF-16 units, so that a
// character above U+FFFF counts 2 whatever the caller's encoding.
template <class C> size_t utf16Length(const C *text, bool utf8Mode) {
    std::wstring wide;
    wideText(text, utf8Mode, wide);
    return wide.size();
}

} // namespace tabrix

#endif
