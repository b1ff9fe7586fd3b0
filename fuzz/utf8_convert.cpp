// Arbitrary bytes through the UTF-8 conversions: as UTF-8 text, and as
// 16-bit units of wide text.  Bad input must end in the failure frame's
// message; good input must come back unchanged.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "book/failure_frame.h"
#include "book/xstring.h"

using namespace tabrix;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (!data) return 0;
    std::string narrow(reinterpret_cast<const char *>(data), size);
    narrow = narrow.c_str(); // up to the first zero, as a C text
    XString message, x;
    x.assign(narrow.c_str());
    std::wstring wide = guarded(message, std::wstring(L"\x1"),
                                [&] { return std::wstring(x.c_str<wchar_t>(true)); });
    if (wide != L"\x1") {
        XString back;
        back.assign(wide.c_str());
        if (narrow != back.c_str<char>(true)) std::abort();
    }

    std::wstring units;
    for (size_t i = 0; i + 1 < size; i += 2) {
        wchar_t u = static_cast<wchar_t>(data[i] | (data[i + 1] << 8));
        if (u == 0) break;
        units.push_back(u);
    }
    XString w;
    w.assign(units.c_str());
    std::string utf8 =
        guarded(message, std::string("\x1"), [&] { return std::string(w.c_str<char>(true)); });
    if (utf8 != "\x1") {
        XString again;
        again.assign(utf8.c_str());
        if (units != again.c_str<wchar_t>(true)) std::abort();
    }
    return 0;
}
