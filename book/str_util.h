// Small text helpers of the formula and XML code, and case-insensitive
// comparison.
#ifndef TABRIX_STR_UTIL_H
#define TABRIX_STR_UTIL_H

#include <string>

namespace tabrix {

class StrUtil {
public:
    // Replaces every `from` with `to` in place, searching on behind each
    // inserted `to`.  False, nothing changed, when `text` or `from` is empty
    // or nothing matched.
    static bool replace(std::wstring &text, const std::wstring &from, const std::wstring &to);
    // Cuts `text` at its first character that is any of `separators`:
    // `left` is what comes before, `right` what follows after as many
    // characters as `separators` holds.  False, `left` and `right`
    // untouched, when no separator occurs.
    static bool split(const std::wstring &text, const std::wstring &separators, std::wstring &left,
                      std::wstring &right);
    // A text with a blank or "-" comes back in single quotes with its quotes
    // doubled; any other unchanged.
    static std::wstring quote(const std::wstring &text);
    // Takes off surrounding single quotes (text longer than 2) and undoubles
    // quotes.
    static std::wstring unquote(const std::wstring &text);
    // Characters XML can't carry (controls other than tab, line feed and
    // carriage return, surrogate units, 0xFFFE and up) as "_xHHHH_".
    static std::wstring xmlEsc(const std::wstring &text);
    // Decodes every "_xHHHH_" (four hexadecimal digits, either case).
    static std::wstring xmlUnEsc(const std::wstring &text);
};

// Case-insensitive equality, 0 when equal (tolower / towlower per element).
int sicmp(const std::string &a, const std::string &b);
int sicmp(const std::wstring &a, const std::wstring &b);
// Case-insensitive order: negative, 0 or positive.
int sicmp2(const std::wstring &a, const std::wstring &b);

struct CaseInsensitiveLess {
    bool operator()(const std::wstring &a, const std::wstring &b) const { return sicmp2(a, b) < 0; }
};

} // namespace tabrix

#endif
