#include "book/str_util.h"

#include <cctype>
#include <cwchar>
#include <cwctype>

namespace tabrix {

bool StrUtil::replace(std::wstring &text, const std::wstring &from, const std::wstring &to) {
    if (text.empty() || from.empty()) return false;
    bool replaced = false;
    size_t pos = 0;
    while ((pos = text.find(from, pos)) != std::wstring::npos) {
        text.replace(pos, from.size(), to);
        pos += to.size();
        replaced = true;
    }
    return replaced;
}

bool StrUtil::split(const std::wstring &text, const std::wstring &separators, std::wstring &left,
                    std::wstring &right) {
    size_t p = text.find_first_of(separators);
    if (p == std::wstring::npos) return false;
    left = text.substr(0, p);
    size_t rest = p + separators.size();
    right = rest < text.size() ? text.substr(rest) : std::wstring();
    return true;
}

std::wstring StrUtil::quote(const std::wstring &text) {
    if (text.find_first_of(L" -") == std::wstring::npos) return text;
    std::wstring out = L"'";
    for (wchar_t c : text) {
        out.push_back(c);
        if (c == L'\'') out.push_back(c);
    }
    out.push_back(L'\'');
    return out;
}

std::wstring StrUtil::unquote(const std::wstring &text) {
    std::wstring t = text;
    if (t.size() > 2 && t.front() == L'\'' && t.back() == L'\'') t = t.substr(1, t.size() - 2);
    replace(t, L"''", L"'");
    return t;
}

std::wstring StrUtil::xmlEsc(const std::wstring &text) {
    std::wstring out;
    for (wchar_t c : text) {
        unsigned long u = static_cast<unsigned long>(c);
        bool control = u < 32 && c != L'\t' && c != L'\n' && c != L'\r';
        if (control || (u >= 0xD800 && u <= 0xDFFF) || u >= 0xFFFE) {
            wchar_t buf[16];
            std::swprintf(buf, 16, L"_x%04lX_", u);
            out += buf;
        } else {
            out.push_back(c);
        }
    }
    return out;
}

namespace {
int hexDigit(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}
} // namespace

std::wstring StrUtil::xmlUnEsc(const std::wstring &text) {
    std::wstring out;
    size_t i = 0;
    while (i < text.size()) {
        if (text.compare(i, 2, L"_x") == 0 && i + 6 < text.size() && text[i + 6] == L'_') {
            int value = 0;
            bool ok = true;
            for (size_t k = i + 2; k < i + 6 && ok; ++k) {
                int d = hexDigit(text[k]);
                ok = d >= 0;
                value = value * 16 + d;
            }
            if (ok) {
                out.push_back(static_cast<wchar_t>(value));
                i += 7;
                continue;
            }
        }
        out.push_back(text[i++]);
    }
    return out;
}

int sicmp(const std::string &a, const std::string &b) {
    if (a.size() != b.size()) return 1;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return 1;
    return 0;
}

int sicmp(const std::wstring &a, const std::wstring &b) {
    if (a.size() != b.size()) return 1;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::towlower(static_cast<wint_t>(a[i])) != std::towlower(static_cast<wint_t>(b[i])))
            return 1;
    return 0;
}

int sicmp2(const std::wstring &a, const std::wstring &b) {
    size_t n = a.size() < b.size() ? a.size() : b.size();
    for (size_t i = 0; i < n; ++i) {
        wint_t x = std::towlower(static_cast<wint_t>(a[i]));
        wint_t y = std::towlower(static_cast<wint_t>(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

} // namespace tabrix
