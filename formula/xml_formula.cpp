#include "formula/xml_formula.h"

#include "book/excel_util.h"

#include <cwctype>

namespace tabrix {

namespace {

bool isWordStart(wchar_t c) { return std::iswalnum(wint_t(c)) || c == L'$'; }
bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// A row or column part of R1C1: digits (absolute, from 1), [n] or [-n]
// (offset), or nothing (offset 0).  Advances `i`.
bool readPart(std::wstring_view t, size_t &i, long &value, bool &relative) {
    value = 0;
    relative = true;
    if (i < t.size() && t[i] == L'[') {
        size_t k = i + 1;
        const bool negative = k < t.size() && t[k] == L'-';
        if (negative) ++k;
        const size_t digits = k;
        while (k < t.size() && isDigit(t[k]) && value < 10000000)
            value = value * 10 + (t[k++] - L'0');
        if (k == digits || k >= t.size() || t[k] != L']') return false;
        if (negative) value = -value;
        i = k + 1;
        return true;
    }
    const size_t digits = i;
    while (i < t.size() && isDigit(t[i]) && value < 10000000) value = value * 10 + (t[i++] - L'0');
    if (i > digits) {
        relative = false;
        return value >= 1;
    }
    return true;
}

void appendPart(std::wstring &out, bool relative, int value, int base) {
    if (!relative) {
        out += std::to_wstring(value + 1);
    } else if (value != base) {
        out.push_back(L'[');
        out += std::to_wstring(value - base);
        out.push_back(L']');
    }
}

template <class Convert> void convert(std::wstring &text, Convert &&one) {
    removeSpaces(text);
    std::wstring out;
    std::wstring_view rest(text);
    while (!rest.empty()) {
        const size_t n = XMLFormula::getToken(rest);
        out += one(rest.substr(0, n));
        rest.remove_prefix(n);
    }
    text.swap(out);
}

} // namespace

void removeSpaces(std::wstring &text) {
    bool dq = false, sq = false;
    size_t o = 0;
    for (wchar_t c : text) {
        if (c == L'"' && !sq)
            dq = !dq;
        else if (c == L'\'' && !dq)
            sq = !sq;
        if (c == L' ' && !dq && !sq) continue;
        text[o++] = c;
    }
    text.resize(o);
}

size_t XMLFormula::getToken(std::wstring_view t) {
    if (t.empty()) return 0;
    const bool word = isWordStart(t[0]);
    size_t i = 1;
    while (i < t.size()) {
        const wchar_t c = t[i];
        if (word && c == L'[') {
            const wchar_t p = t[i - 1];
            if (p == L'R' || p == L'r' || p == L'C' || p == L'c') {
                const size_t close = t.find(L']', i);
                i = close == std::wstring_view::npos ? t.size() : close + 1;
                continue;
            }
        }
        if (isWordStart(c) != word) break;
        ++i;
    }
    return i;
}

std::wstring XMLFormula::toA1(std::wstring_view t, int row, int col, bool biff) {
    size_t i = 0;
    long r = 0, c = 0;
    bool rowRel = true, colRel = true;
    if (t.empty() || (t[0] != L'R' && t[0] != L'r')) return std::wstring(t);
    ++i;
    if (!readPart(t, i, r, rowRel)) return std::wstring(t);
    if (i >= t.size() || (t[i] != L'C' && t[i] != L'c')) return std::wstring(t);
    ++i;
    if (!readPart(t, i, c, colRel) || i != t.size()) return std::wstring(t);
    r = rowRel ? r + row : r - 1;
    c = colRel ? c + col : c - 1;
    if (rowRel && r < 0) r += biff ? 0x10000 : 0x100000;
    if (colRel && c < 0) c += biff ? 256 : 16384;
    if (r < 0 || c < 0) return std::wstring(t);
    return ExcelUtil::rowColToAddr(int(r), int(c), rowRel, colRel);
}

std::wstring XMLFormula::toR1C1(std::wstring_view t, int row, int col) {
    size_t i = 0;
    if (i < t.size() && t[i] == L'$') ++i;
    const size_t letters = i;
    while (i < t.size() && std::iswalpha(wint_t(t[i]))) ++i;
    if (i == letters || i > 4) return std::wstring(t);
    if (i < t.size() && t[i] == L'$') ++i;
    const size_t digits = i;
    while (i < t.size() && isDigit(t[i])) ++i;
    if (i == digits || i - digits > 8 || i != t.size()) return std::wstring(t);
    const std::wstring addr(t);
    int r = 0, c = 0;
    bool rowRel = true, colRel = true;
    ExcelUtil::addrToRowCol(addr.c_str(), &r, &c, &rowRel, &colRel);
    std::wstring out = L"R";
    appendPart(out, rowRel, r, row);
    out.push_back(L'C');
    appendPart(out, colRel, c, col);
    return out;
}

void XMLFormula::toRefA1(std::wstring &text, int row, int col, bool biff) {
    convert(text, [&](std::wstring_view t) { return toA1(t, row, col, biff); });
}

void XMLFormula::toRefR1C1(std::wstring &text, int row, int col) {
    convert(text, [&](std::wstring_view t) { return toR1C1(t, row, col); });
}

} // namespace tabrix
