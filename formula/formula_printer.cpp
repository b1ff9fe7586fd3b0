#include "formula/formula_printer.h"

#include "book/tberror.h"
#include "formula/formula_parser.h"
#include "formula/ptg.h"

#include <charconv>
#include <cstring>
#include <cwchar>
#include <cwctype>

namespace tabrix {

namespace {

const wchar_t *const kBinary[] = {L"+", L"-",  L"*", L"/",  L"^", L"&",
                                  L"<", L"<=", L"=", L">=", L">", L"<>"};

uint16_t get16(const uint8_t *p) { return uint16_t(p[0] | p[1] << 8); }

[[noreturn]] void fail(const char *message) { throw tberror(message); }

void appendColumn(std::wstring &out, int col) {
    wchar_t letters[8];
    int n = 0;
    for (int c = col + 1; c > 0 && n < 8; c = (c - 1) / 26)
        letters[n++] = wchar_t(L'A' + (c - 1) % 26);
    while (n > 0) out.push_back(letters[--n]);
}

void appendNumber(std::wstring &out, double value) {
    char buf[512];
    auto r = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed);
    if (r.ec != std::errc()) r = std::to_chars(buf, buf + sizeof buf, value);
    for (char *c = buf; c < r.ptr; ++c) out.push_back(wchar_t(*c));
}

void appendUnsigned(std::wstring &out, unsigned value) {
    wchar_t digits[12];
    int n = 0;
    do {
        digits[n++] = wchar_t(L'0' + value % 10);
        value /= 10;
    } while (value);
    while (n > 0) out.push_back(digits[--n]);
}

} // namespace

void appendAddress(std::wstring &out, int row, int col, bool rowRelative, bool colRelative,
                   bool columnOnly) {
    if (!colRelative) out.push_back(L'$');
    appendColumn(out, col);
    if (columnOnly) return;
    if (!rowRelative) out.push_back(L'$');
    appendUnsigned(out, unsigned(row) + 1);
}

std::wstring quoteSheetName(const std::wstring &name) {
    bool plain = !name.empty();
    for (wchar_t c : name)
        if (!std::iswalnum(wint_t(c)) && c != L'_' && c != L'.') plain = false;
    if (plain) return name;
    std::wstring out = L"'";
    for (wchar_t c : name) {
        out.push_back(c);
        if (c == L'\'') out.push_back(c);
    }
    out.push_back(L'\'');
    return out;
}

void FormulaPrinter::push(const wchar_t *text, size_t len) {
    _stack.emplace_back(_buf.size(), len);
    _buf.append(text, len);
}

void FormulaPrinter::fold(size_t count, const std::wstring &open, const std::wstring &sep,
                          const std::wstring &close) {
    const size_t first = _stack.size() - count;
    const size_t start = count ? _stack[first].first : _buf.size();
    _tmp = open;
    for (size_t i = first; i < _stack.size(); ++i) {
        if (i > first) _tmp += sep;
        _tmp.append(_buf, _stack[i].first, _stack[i].second);
    }
    _tmp += close;
    _stack.resize(first);
    _buf.resize(start);
    push(_tmp.data(), _tmp.size());
}

void FormulaPrinter::function(const wchar_t *name, int count) {
    // The word the call stands for, read back as the text parser reads it:
    // a name whose digits don't come back stays a plain word.
    _word = name;
    appendUnsigned(_word, unsigned(count));
    _word.push_back(L'F');
    uint16_t code = 0;
    int n = 0;
    std::wstring_view shown;
    if (!readFunctionWord(_word, _funcs, code, n, &shown)) return pushWord(_word);
    if (_stack.size() < size_t(n)) fail("toInfix error: incorrect function expression");
    _first.assign(shown);
    _first.push_back(L'(');
    static const std::wstring sep = L";", close = L")";
    fold(size_t(n), _first, sep, close);
}

void FormulaPrinter::sheetPrefix(uint16_t index, FormulaBook *book, bool &bad) {
    bad = false;
    _word.clear();
    if (!book || !book->sheetRange(index, _first, _last, bad)) return;
    if (bad) {
        _word = L"#REF!";
        return;
    }
    _word = quoteSheetName(_first == _last ? _first : _first + L":" + _last);
    _word.push_back(L'!');
}

void FormulaPrinter::operand(const uint8_t *p, uint8_t op, FormulaBook *book, bool relative,
                             int baseRow, int baseCol) {
    auto loc = [&](const uint8_t *q, std::wstring &out, bool shift, bool columnOnly) {
        RgceLoc l;
        l.read(q);
        int row = l.row(), col = l.col();
        if (shift && l.rowRelative()) row = (row + baseRow) & 0xFFFF;
        if (shift && l.colRelative()) col = (col + baseCol) & 0xFF;
        appendAddress(out, row, col, l.rowRelative(), l.colRelative(), columnOnly);
    };
    auto area = [&](const uint8_t *q, std::wstring &out, bool shift, bool columnOnly) {
        const uint8_t first[4] = {q[0], q[1], q[4], q[5]}, last[4] = {q[2], q[3], q[6], q[7]};
        loc(first, out, shift, columnOnly);
        out.push_back(L':');
        loc(last, out, shift, columnOnly);
    };
    const uint8_t b = ptg::base(op);
    _word.clear();
    bool bad = false;
    switch (b) {
    case ptg::kFunc: {
        int fixed = 0;
        const uint16_t code = get16(p + 1);
        const wchar_t *name = _funcs.name(code, &fixed);
        return function(name, fixed);
    }
    case ptg::kFuncVar: {
        const uint16_t code = get16(p + 2);
        if (code & 0x8000) return push(L"?", 1);
        return function(_funcs.name(code), p[1]);
    }
    case ptg::kName:
        if (op != ptg::kName + ptg::kValueClass || !book ||
            !book->definedName(uint32_t(get16(p + 1)) | uint32_t(get16(p + 3)) << 16, _word))
            _word = L"?";
        return pushWord(_word);
    case ptg::kRef:
    case ptg::kRefN: loc(p + 1, _word, relative, false); return pushWord(_word);
    case ptg::kArea:
    case ptg::kAreaN: area(p + 1, _word, relative, false); return pushWord(_word);
    case ptg::kRef3d:
        sheetPrefix(get16(p + 1), book, bad);
        loc(p + 3, _word, false, false);
        return pushWord(_word);
    case ptg::kArea3d:
        sheetPrefix(get16(p + 1), book, bad);
        area(p + 3, _word, false, bad);
        return pushWord(_word);
    case ptg::kRefErr:
    case ptg::kAreaErr:
    case ptg::kRefErr3d:
    case ptg::kAreaErr3d: return push(L"#REF!", 5);
    case ptg::kMemErr: return push(L"ERR", 3);
    case ptg::kMemNoMem: return push(L"NOMEM", 5);
    default: return push(L"?", 1);
    }
}

const std::wstring &FormulaPrinter::print(const uint8_t *tokens, size_t n, FormulaBook *book,
                                          bool relative, int baseRow, int baseCol) {
    _buf.clear();
    _stack.clear();
    static const std::wstring none, minus = L"-", plus = L"+", percent = L"%", open = L"(",
                                    close = L")";
    for (size_t i = 0; i < n;) {
        const uint8_t *p = tokens + i;
        const size_t len = ptg::payloadLength(p, n - i);
        if (len > n - i - 1) fail("GetFormula move1 error");
        i += 1 + len;
        const uint8_t op = p[0];
        if (op >= ptg::kAdd && op <= ptg::kNe) {
            if (_stack.size() < 2) fail("toInfix error: expected two operands for binary operator");
            static const std::wstring ops[12] = {kBinary[0], kBinary[1], kBinary[2],  kBinary[3],
                                                 kBinary[4], kBinary[5], kBinary[6],  kBinary[7],
                                                 kBinary[8], kBinary[9], kBinary[10], kBinary[11]};
            fold(2, none, ops[op - ptg::kAdd], none);
            continue;
        }
        switch (op) {
        case ptg::kUplus:
        case ptg::kUminus:
            if (_stack.empty())
                fail(op == ptg::kUplus ? "toInfix error: incorrect unary plus expression"
                                       : "toInfix error: incorrect unary minus expression");
            fold(1, op == ptg::kUplus ? plus : minus, none, none);
            break;
        case ptg::kPercent:
            if (_stack.empty()) fail("toInfix error: incorrect percent expression");
            fold(1, none, none, percent);
            break;
        case ptg::kParen:
            if (_stack.empty()) fail("toInfix error: incorrect brackets");
            fold(1, open, none, close);
            break;
        case ptg::kMissArg: push(L"MISS", 4); break;
        case ptg::kStr: {
            const bool wide = p[2] & 1;
            _word = L"\"";
            for (size_t k = 0; k < p[1]; ++k) {
                const wchar_t c = wide ? wchar_t(get16(p + 3 + 2 * k)) : wchar_t(p[3 + k]);
                _word.push_back(c);
                if (c == L'"') _word.push_back(c);
            }
            _word.push_back(L'"');
            pushWord(_word);
            break;
        }
        case ptg::kAttr:
            if (p[1] == ptg::kAttrSum) function(L"SUM", 1);
            break;
        case ptg::kErr: {
            const wchar_t *text = ptg::errorText(p[1]);
            if (!text) text = L"ERR";
            push(text, std::wcslen(text));
            break;
        }
        case ptg::kBool: push(p[1] ? L"TRUE" : L"FALSE", p[1] ? 4 : 5); break;
        case ptg::kInt:
            _word.clear();
            appendUnsigned(_word, get16(p + 1));
            pushWord(_word);
            break;
        case ptg::kNum: {
            double d = 0;
            std::memcpy(&d, p + 1, 8);
            _word.clear();
            appendNumber(_word, d);
            pushWord(_word);
            break;
        }
        default:
            if (op >= 0x20)
                operand(p, op, book, relative, baseRow, baseCol);
            else
                push(L"?", 1);
        }
    }
    if (_stack.size() != 1) fail("can't build infix formula string");
    _result.assign(_buf, _stack[0].first, _stack[0].second);
    return _result;
}

} // namespace tabrix
