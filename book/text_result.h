// How a book hands a wide text to its caller: through one of its XStrings,
// converted to the caller's character type.  A lost character leaves the
// warning in the book's message.
#ifndef TABRIX_TEXT_RESULT_H
#define TABRIX_TEXT_RESULT_H

#include "book/xstring.h"

namespace tabrix {

extern const char *const kConversionWarning;

template <class C>
const C *textResult(XString &buffer, XString &message, const wchar_t *wide, bool utf8Mode) {
    if (!wide)
        return nullptr;
    buffer.assign(wide);
    const C *text = buffer.template c_str<C>(utf8Mode);
    message.assign(buffer.conversionFailed() ? kConversionWarning : "ok");
    return text;
}

} // namespace tabrix

#endif
