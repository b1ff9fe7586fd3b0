// XString: one text kept in narrow and wide form, each rebuilt from the
// other only when asked for.
#ifndef TABRIX_XSTRING_H
#define TABRIX_XSTRING_H

#include <string>

namespace tabrix {

class XString {
public:
    // A null text changes nothing.
    void assign(const char *text);
    void assign(const wchar_t *text);
    void clear();
    // The wanted side, converted first when stale (see encoding.h for the
    // modes); invalid UTF-8 throws.
    template <class C> const C *c_str(bool utf8Mode);
    // Set when the last conversion lost a character.
    bool conversionFailed() const { return _conversionFailed; }

private:
    bool _narrowStale = false;
    bool _wideStale = false;
    std::string _narrow;
    std::wstring _wide;
    bool _conversionFailed = false;
};

template <> const char *XString::c_str<char>(bool utf8Mode);
template <> const wchar_t *XString::c_str<wchar_t>(bool utf8Mode);

} // namespace tabrix

#endif
