#include "book/str_util.h"

#include <cctype>
#include <cwctype>

namespace tabrix {

bool StrUtil::replace(std::wstring &text, const std::wstring &from, const std::wstring &to) {
    if (text.empty() || from.empty())
        return false;
    bool replaced = false;
    size_t pos = 0;
    while ((pos = text.find(from, pos)) != std::wstring::npos) {
        text.replace(pos, from.size(), to);
        pos += to.size();
        replaced = true;
    }
    return replaced;
}

bool StrUtil::split(const std::wstring &text, const std::wstring &separators,
                    std::wstring &left, std::wstring &right) {
    size_t p = text.find_first_of(separators);
    if (p == std::wstring::npos)
        return false;
    left = text.substr(0, p);
    size_t rest = p + separators.size();
    right = rest < text.size() ? text.substr(rest) : std::wstring();
    return true;
}

std::wstring StrUtil::quote(const std::wstring &text) {
    if (text.find_first_of(L" -") == std::wstring::npos)
        return text;
    std::wstring out = L"'";
    for (wchar_t c : text) {
        out.push_back(c);
        if (c == L'\'')
            out.push_back(c);
    }
    out.push_back(L'\'');
    return out;
}

std::wstring StrUtil::unquote(const std::wstring &text) {
    std::wstring t = text;
    if (t.size() > 2 && t.front() == L'\'' && t.back() == L'\'')
        t = t.substr(1, t.size() - 2);
    replace(t, L"''", L"'");
    return t;
}

int sicmp(const std::string &a, const std::string &b) {
    if (a.size() != b.size())
        return 1;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return 1;
    return 0;
}

int sicmp(const std::wstring &a, const std::wstring &b) {
    if (a.size() != b.size())
        return 1;
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
        if (x != y)
            return x < y ? -1 : 1;
    }
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

} // namespace tabrix
