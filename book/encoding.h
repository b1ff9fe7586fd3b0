// Conversions between the caller's text and the library's wide text.  Wide
// text holds UTF-16 code units in 32-bit elements: a code point above 0xFFFF
// is a surrogate pair.  In UTF-8 mode narrow text is UTF-8; otherwise it is
// whatever the process's C locale says.
#ifndef TABRIX_ENCODING_H
#define TABRIX_ENCODING_H

#include <string>

namespace tabrix {

// A caller's wide text (one code point an element) to the library's UTF-16
// units: a code point above 0xFFFF becomes its surrogate pair.
void codePointsToUnits(const wchar_t *text, std::wstring &out);
// The library's units back to code points for a wide caller: each surrogate
// pair becomes one character; a lone surrogate stays as it is.  Answers
// `units` itself when it holds no pair, else the text left in `buffer`.
const wchar_t *unitsToCodePoints(const wchar_t *units, std::wstring &buffer);

// UTF-8 to wide; invalid UTF-8 throws the decoder's exception.
void utf8ToWide(const char *text, std::wstring &out);
// Wide to UTF-8; an unpaired surrogate throws the encoder's exception.
void wideToUtf8(const wchar_t *text, std::string &out);
// Multibyte text of the C locale to wide.  Answers false, with `out` empty,
// when the text doesn't convert.
bool localeToWide(const char *text, std::wstring &out);
// Wide to multibyte text of the C locale.  A character that doesn't convert
// becomes "?" and the answer is false.
bool wideToLocale(const wchar_t *text, std::string &out);

// Either of the two above, as the mode says.  Answer false: a character was
// lost.
inline bool toWide(const char *text, bool utf8Mode, std::wstring &out) {
    if (utf8Mode) {
        utf8ToWide(text, out);
        return true;
    }
    return localeToWide(text, out);
}
inline bool toNarrow(const wchar_t *text, bool utf8Mode, std::string &out) {
    if (utf8Mode) {
        wideToUtf8(text, out);
        return true;
    }
    return wideToLocale(text, out);
}

} // namespace tabrix

#endif
