// XString: one text kept in narrow and wide form, each rebuilt from the
// other only when asked for.
#ifndef TABRIX_XSTRING_H
#define TABRIX_XSTRING_H

#include <string>
#include <string_view>

namespace tabrix {

class XString {
public:
    // A null text changes nothing.
    void assign(const char *text);
    void assign(const wchar_t *text);
    void assign(std::string_view text); // narrow
    void clear();
    // assign("ok"), free when the text is "ok" already, as it is after
    // every operation that went well.
    void setOk() {
        if (_ok) return;
        assign("ok");
        _ok = true;
    }
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
    bool _ok = false; // the text is "ok", set by setOk()
};

// The frame of every public operation resets its message through this.
inline void markOk(XString &message) { message.setOk(); }

template <> const char *XString::c_str<char>(bool utf8Mode);
template <> const wchar_t *XString::c_str<wchar_t>(bool utf8Mode);

} // namespace tabrix

#endif
