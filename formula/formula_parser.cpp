#include "formula/formula_parser.h"

#include "book/str_util.h"
#include "book/tberror.h"
#include "formula/ptg.h"

#include <charconv>
#include <cstring>
#include <cwchar>
#include <cwctype>

namespace tabrix {

namespace {

struct Operator {
    const wchar_t *text;
    int priority;
    uint8_t ptg;
};
// Operators by number; the first two are the unary forms.
const Operator kOperators[] = {
    {L"uMinus", 9, ptg::kUminus}, {L"uPlus", 9, ptg::kUplus}, {L"%", 8, ptg::kPercent},
    {L"^", 7, ptg::kPower},       {L"*", 6, ptg::kMul},       {L"/", 6, ptg::kDiv},
    {L"+", 5, ptg::kAdd},         {L"-", 5, ptg::kSub},       {L"<", 4, ptg::kLt},
    {L">", 4, ptg::kGt},          {L"<=", 4, ptg::kLe},       {L">=", 4, ptg::kGe},
    {L"=", 3, ptg::kEq},          {L"<>", 3, ptg::kNe},       {L"&", 2, ptg::kConcat},
};
const uint8_t kUminus = 0, kUplus = 1, kPlus = 6, kMinus = 7;
const int kSeparatorPriority = 1;
const int kOpenPriority = 0;
const int kOtherPriority = -1;
const size_t kOperatorCount = sizeof kOperators / sizeof kOperators[0];

const uint16_t kToday = 221, kOffset = 78, kSumProduct = 228;

bool isStop(wchar_t c) {
    switch (c) {
    case L'+':
    case L'-':
    case L'*':
    case L'/':
    case L'(':
    case L')':
    case L'^':
    case L'<':
    case L'>':
    case L'=':
    case L';':
    case L'&':
    case L'%':
    case L',': return true;
    default: return false;
    }
}

bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// The operator number of a token, -1 for none; separators give -2.
int operatorOf(std::wstring_view t) {
    if (t.size() == 1) {
        switch (t[0]) {
        case L';':
        case L',': return -2;
        case L'%': return 2;
        case L'^': return 3;
        case L'*': return 4;
        case L'/': return 5;
        case L'+': return 6;
        case L'-': return 7;
        case L'<': return 8;
        case L'>': return 9;
        case L'=': return 12;
        case L'&': return 14;
        default: return -1;
        }
    }
    if (t.size() == 2 && t[1] == L'=' && t[0] == L'<') return 10;
    if (t.size() == 2 && t[1] == L'=' && t[0] == L'>') return 11;
    if (t.size() == 2 && t[1] == L'>' && t[0] == L'<') return 13;
    return -1;
}

bool is(std::wstring_view t, wchar_t c) { return t.size() == 1 && t[0] == c; }

bool isAlpha(wchar_t c) {
    if (c < 0x80) return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
    return isAlpha(c);
}

// Names whose own digits the count swallowed get them back.
void fixFuncWithDigits(std::wstring_view &name, std::wstring_view &tail,
                       std::wstring_view original) {
    auto mend = [&](std::wstring_view stem, std::wstring_view digits, size_t minTail) {
        if (name == stem && tail.size() > minTail && tail.substr(0, digits.size()) == digits) {
            name = original.substr(0, stem.size() + digits.size());
            tail.remove_prefix(digits.size());
        }
    };
    mend(L"LOG", L"10", 1);
    mend(L"DAYS", L"360", 2);
    mend(L"ATAN", L"2", 0);
}

[[noreturn]] void incorrectToken() { throw tberror("incorrect token in formula"); }

void put16(std::vector<uint8_t> &out, unsigned v) {
    out.push_back(uint8_t(v));
    out.push_back(uint8_t(v >> 8));
}

// A reference in A1 form: optional "$", letters, optional "$", digits, and
// a trailing "R" asking for the reference class.
bool isReference(std::wstring_view t, int &row, int &col, bool &refClass, bool &rowRelative,
                 bool &colRelative) {
    refClass = false;
    rowRelative = colRelative = true;
    size_t i = 0;
    if (i < t.size() && t[i] == L'$') {
        colRelative = false;
        ++i;
    }
    const size_t letters = i;
    while (i < t.size() && isAlpha(t[i])) ++i;
    const size_t lettersEnd = i;
    if (lettersEnd == letters) return false;
    if (i < t.size() && t[i] == L'$') {
        rowRelative = false;
        ++i;
    }
    const size_t digits = i;
    while (i < t.size() && isDigit(t[i])) ++i;
    const size_t digitsEnd = i;
    if (i + 1 == t.size() && t[i] == L'R') {
        refClass = true;
        ++i;
    }
    if (digitsEnd == digits || i != t.size()) return false;
    uint64_t c = 0;
    for (size_t k = letters; k < lettersEnd; ++k) {
        c = c * 26 + uint64_t(int64_t(t[k]) - 64);
        if (c > 257) throw tberror("Column is out of range");
    }
    if (c == 0 || c - 1 > 255) throw tberror("Column is out of range");
    col = int(c - 1);
    uint64_t r = 0;
    for (size_t k = digits; k < digitsEnd; ++k) {
        r = r * 10 + uint64_t(t[k] - L'0');
        if (r > 0x7FFFFFFF)
            throw tberror("MakeFormula::isReference: can't convert string to number");
    }
    if (uint32_t(r) - 1u > 65535u) throw tberror("Row is out of range");
    row = int(r - 1);
    return true;
}

bool isAreaReference(std::wstring_view t, RgceArea &area) {
    const size_t colon = t.find(L':');
    if (colon == std::wstring_view::npos) return false;
    int r1 = 0, c1 = 0, r2 = 0, c2 = 0;
    bool cls = false, rr1 = true, cr1 = true, rr2 = true, cr2 = true;
    if (!isReference(t.substr(0, colon), r1, c1, cls, rr1, cr1)) return false;
    if (!isReference(t.substr(colon + 1), r2, c2, cls, rr2, cr2)) return false;
    area = RgceArea(r1, r2, c1, c2, rr1, rr2, cr1, cr2);
    return true;
}

// Sheet part and reference part of a three-dimensional reference; every
// further "!" is dropped from the reference part.
bool split3d(std::wstring_view t, std::wstring_view &sheet, std::wstring &rest) {
    const size_t bang = t.find(L'!');
    if (bang == std::wstring_view::npos || bang == 0) return false;
    sheet = t.substr(0, bang);
    rest.clear();
    for (wchar_t c : t.substr(bang + 1))
        if (c != L'!') rest.push_back(c);
    return true;
}

bool isInteger(std::wstring_view t, unsigned &value) {
    if (t.empty() || t.size() > 5) return false;
    value = 0;
    for (wchar_t c : t) {
        if (!isDigit(c)) return false;
        value = value * 10 + unsigned(c - L'0');
    }
    return value <= 65535;
}

bool isDouble(std::wstring_view t, double &value) {
    char buf[64];
    size_t n = 0, points = 0;
    for (wchar_t c : t) {
        if (!isDigit(c) && c != L'.') return false;
        if (c == L'.' && ++points > 1) continue;
        if (points <= 1 && n < sizeof buf) buf[n++] = char(c);
    }
    value = 0;
    if (n < sizeof buf)
        std::from_chars(buf, buf + n, value);
    else
        value = std::wcstod(std::wstring(t).c_str(), nullptr);
    return true;
}

// A string constant in double quotes; "" inside stands for one quote.
bool isString(std::wstring_view t, std::wstring &text) {
    if (t.size() < 2 || t.front() != L'"' || t.back() != L'"') return false;
    text.clear();
    for (size_t i = 1; i + 1 < t.size(); ++i) {
        text.push_back(t[i]);
        if (t[i] == L'"' && i + 2 < t.size() && t[i + 1] == L'"') ++i;
    }
    return true;
}

void putShortString(const std::wstring &text, std::vector<uint8_t> &out) {
    std::u16string units;
    bool wide = false;
    for (wchar_t c : text) {
        uint32_t u = uint32_t(c);
        if (u > 0xFFFF) {
            u -= 0x10000;
            units.push_back(char16_t(0xD800 + (u >> 10)));
            units.push_back(char16_t(0xDC00 + (u & 0x3FF)));
            wide = true;
        } else {
            units.push_back(char16_t(u));
            if (u > 0xFF) wide = true;
        }
    }
    if (units.size() > 255)
        throw tberror("a string in a formula can't be longer than 255 characters");
    out.push_back(ptg::kStr);
    out.push_back(uint8_t(units.size()));
    out.push_back(wide ? 1 : 0);
    for (char16_t u : units) {
        out.push_back(uint8_t(u));
        if (wide) out.push_back(uint8_t(u >> 8));
    }
}

} // namespace

bool readFunctionWord(std::wstring_view word, const FuncMap &funcs, uint16_t &code, int &count,
                      std::wstring_view *nameOut) {
    if (word.empty() || word.back() != L'F') return false;
    size_t d = 0;
    while (d < word.size() && !isDigit(word[d])) ++d;
    std::wstring_view name = word.substr(0, d), tail = word.substr(d);
    if (d == word.size()) {
        name = word;
        tail = {};
    }
    for (size_t i = 0; i + 1 < tail.size(); ++i)
        if (!isDigit(tail[i]) && tail[i] != L'F') return false;
    fixFuncWithDigits(name, tail, word);
    code = funcs.code(name);
    if (code == FuncMap::kNotFound) return false;
    size_t i = 0;
    long n = 0;
    while (i < tail.size() && isDigit(tail[i]) && n <= 0xFFFF) n = n * 10 + (tail[i++] - L'0');
    if (i == 0 || n > 255) throw tberror("incorrect number of function parameters");
    count = int(n);
    if (nameOut) *nameOut = name;
    return true;
}

// Blanks outside quotes go, then one leading "=".
void FormulaParser::prepare(std::wstring_view text) {
    _text.clear();
    bool dq = false, sq = false;
    for (wchar_t c : text) {
        if (c == L'"' && !sq)
            dq = !dq;
        else if (c == L'\'' && !dq)
            sq = !sq;
        if (c == L' ' && !dq && !sq) continue;
        _text.push_back(c);
    }
    if (!_text.empty() && _text[0] == L'=') _text.erase(0, 1);
    if (_text.size() > kMaxText) throw tberror("formula is too long: more than 8192 characters");
}

// End of the token that starts at `pos`.
size_t FormulaParser::nextToken(size_t pos) const {
    const size_t n = _text.size();
    if (isStop(_text[pos])) {
        const wchar_t c = _text[pos];
        if (pos + 1 < n && ((c == L'<' && (_text[pos + 1] == L'=' || _text[pos + 1] == L'>')) ||
                            (c == L'>' && _text[pos + 1] == L'=')))
            return pos + 2;
        return pos + 1;
    }
    bool dq = false, sq = false;
    size_t i = pos;
    for (; i < n; ++i) {
        const wchar_t c = _text[i];
        if (c == L'"' && !sq)
            dq = !dq;
        else if (c == L'\'' && !dq)
            sq = !sq;
        else if (!dq && !sq && isStop(c))
            break;
    }
    return i;
}

void FormulaParser::tokenize() {
    _tokens.clear();
    for (size_t pos = 0; pos < _text.size();) {
        const size_t end = nextToken(pos);
        Token tok{uint32_t(pos), uint32_t(end - pos), false, false, 0};
        tok.func = stageOneFunc(std::wstring_view(_text.data() + pos, end - pos), &tok.mask);
        _tokens.push_back(tok);
        pos = end;
    }
}

bool FormulaParser::stageOneFunc(std::wstring_view t, uint32_t *mask) const {
    std::wstring_view name = t;
    if (t.size() >= 3 && t.back() == L'F' && isDigit(t[t.size() - 2])) {
        size_t d = 0;
        while (!isDigit(t[d])) ++d;
        name = t.substr(0, d);
        std::wstring_view tail = t.substr(d);
        fixFuncWithDigits(name, tail, t);
    }
    const FuncMap::FI *fi = _funcs.find(name);
    if (fi && mask) *mask = fi->refMask;
    return fi != nullptr;
}

// A cell reference, possibly behind a sheet: letters and digits, no letter
// after a digit.
static bool looksLikeRef(std::wstring_view t) {
    const size_t bang = t.find(L'!');
    if (bang != std::wstring_view::npos) t.remove_prefix(bang + 1);
    bool letter = false, digit = false;
    for (wchar_t c : t) {
        if (isAlpha(c)) {
            if (digit) return false;
            letter = true;
        } else if (isDigit(c)) {
            digit = true;
        }
    }
    return letter && digit;
}

// Marks the operands that go by reference, by the mask of the function
// whose argument they are.
void FormulaParser::addRefs() {
    std::vector<State> &stack = _states;
    stack.clear();
    for (Token &tok : _tokens) {
        std::wstring_view t(_text.data() + tok.start, tok.len);
        if (tok.func) {
            stack.push_back(State{true, tok.mask, 0, 0});
        } else if (stack.empty()) {
            continue;
        } else if (is(t, L'(')) {
            State &s = stack.back();
            if (s.armed)
                s.armed = false;
            else
                ++s.parens;
        } else if (is(t, L')')) {
            if (stack.back().parens == 0)
                stack.pop_back();
            else
                --stack.back().parens;
        } else if (is(t, L';') || is(t, L',')) {
            ++stack.back().arg;
        } else if (looksLikeRef(t) && (stack.back().mask >> (stack.back().arg & 31) & 1)) {
            tok.byRef = true;
        }
    }
}

void FormulaParser::reversePolish() {
    _output.clear();
    _stack.clear();
    _parenKinds.clear();
    _words.clear();
    int operandRun = 0;
    bool funcOpen = false;
    auto priority = [](const Item &it) {
        if (it.kind == kOperator) return kOperators[it.op].priority;
        return it.kind == kOpen ? kOpenPriority : kOtherPriority;
    };
    auto popOut = [&]() {
        Item it = _stack.back();
        _stack.pop_back();
        if (it.kind == kOpen) it.kind = kParen;
        _output.push_back(it);
    };
    for (const Token &tok : _tokens) {
        std::wstring_view t(_text.data() + tok.start, tok.len);
        const size_t after = tok.start + tok.len;
        const bool boolWord =
            tok.func && (t == std::wstring_view(L"TRUE") || t == std::wstring_view(L"FALSE")) &&
            after < _text.size() && _text[after] != L'(';
        if (!boolWord && tok.func) {
            const int count = getFuncParamCount(std::wstring_view(_text).substr(after));
            const uint32_t start = uint32_t(_words.size());
            _words.append(t);
            wchar_t digits[12];
            int n = 0;
            for (unsigned c = unsigned(count); n == 0 || c; c /= 10)
                digits[n++] = wchar_t(L'0' + c % 10);
            while (n) _words.push_back(digits[--n]);
            _words.push_back(L'F');
            _stack.push_back(Item{kFunction, 0, false, start, uint32_t(_words.size() - start)});
            _parenKinds.push_back(0);
            operandRun = 0;
            funcOpen = true;
        } else if (is(t, L')')) {
            while (!_stack.empty() && _stack.back().kind != kOpen) popOut();
            if (_stack.empty() || _parenKinds.empty()) throw tberror("error in formula");
            if (_parenKinds.back() == 1) _output.push_back(Item{kParen, 0, false, 0, 0});
            _parenKinds.pop_back();
            _stack.pop_back();
            if (!_stack.empty() && _stack.back().kind == kFunction) {
                _output.push_back(_stack.back());
                _stack.pop_back();
                ++operandRun;
            }
        } else if (is(t, L'(')) {
            _stack.push_back(Item{kOpen, 0, false, 0, 0});
            if (funcOpen)
                funcOpen = false;
            else
                _parenKinds.push_back(1);
        } else if (int op = operatorOf(t); op != -1) {
            const bool separator = op == -2;
            if (operandRun != 0 || separator) {
                const int p = separator ? kSeparatorPriority : kOperators[op].priority;
                while (!_stack.empty() && priority(_stack.back()) >= p) popOut();
            }
            if (operandRun == 0 && op == kMinus) op = kUminus;
            if (operandRun == 0 && op == kPlus) op = kUplus;
            if (!separator) _stack.push_back(Item{kOperator, uint8_t(op), false, 0, 0});
            operandRun = 0;
        } else {
            _output.push_back(Item{kOperand, 0, tok.byRef, tok.start, tok.len});
            ++operandRun;
        }
    }
    while (!_stack.empty()) popOut();
}

std::wstring_view FormulaParser::view(const Item &item) const {
    if (item.kind == kFunction) return std::wstring_view(_words).substr(item.start, item.len);
    return std::wstring_view(_text).substr(item.start, item.len);
}

std::wstring FormulaParser::toReversePolish(std::wstring_view text) {
    prepare(text);
    std::wstring out;
    if (ptg::errorCode(_text.data(), _text.size()) >= 0) return _text;
    tokenize();
    addRefs();
    reversePolish();
    for (const Item &it : _output) {
        if (!out.empty()) out.push_back(L' ');
        switch (it.kind) {
        case kOperator: out += kOperators[it.op].text; break;
        case kParen: out += L"("; break;
        default:
            out += view(it);
            if (it.byRef) out.push_back(L'R');
        }
    }
    return out;
}

void FormulaParser::compile(std::wstring_view text, FormulaBook *book, std::vector<uint8_t> &out) {
    out.clear();
    _areas.clear();
    prepare(text);
    if (int code = ptg::errorCode(_text.data(), _text.size()); code >= 0) {
        out.push_back(ptg::kErr);
        out.push_back(uint8_t(code));
        return;
    }
    tokenize();
    addRefs();
    reversePolish();
    for (const Item &it : _output) {
        emit(it, book, out);
        if (out.size() > kMaxTokens) throw tberror("formula is too long for a record");
    }
}

void FormulaParser::emit(const Item &item, FormulaBook *book, std::vector<uint8_t> &out) {
    switch (item.kind) {
    case kOperator: out.push_back(kOperators[item.op].ptg); return;
    case kParen:
    case kOpen: out.push_back(ptg::kParen); return;
    case kFunction: emitFunction(view(item), out); return;
    case kOperand: break;
    }
    std::wstring_view t = view(item);
    if (item.byRef) {
        _scratch.assign(t);
        _scratch.push_back(L'R');
        emitOperand(std::wstring_view(_scratch), book, out);
    } else {
        emitOperand(t, book, out);
    }
}

void FormulaParser::emitFunction(std::wstring_view word, std::vector<uint8_t> &out) {
    uint16_t code = 0;
    int count = 0;
    if (!readFunctionWord(word, _funcs, code, count)) incorrectToken();
    if (code == kToday) {
        out.insert(out.end(),
                   {ptg::kAttr, ptg::kAttrVolatile, 0, 0, ptg::kFunc + ptg::kValueClass});
        put16(out, code);
    } else {
        out.push_back(code == kOffset ? ptg::kFuncVar : ptg::kFuncVar + ptg::kValueClass);
        if (code == kSumProduct && size_t(count) * 9 < out.size())
            for (size_t at : _areas) out[at] = ptg::kArea + ptg::kArrayClass;
        out.push_back(uint8_t(count));
        put16(out, code);
    }
    _areas.clear();
}

uint16_t FormulaParser::makeXti(std::wstring_view sheet, FormulaBook *book) {
    if (!book) throw tberror("book not found");
    const std::wstring name = StrUtil::unquote(std::wstring(sheet));
    const size_t colon = name.find(L':');
    const int first = book->sheetIndex(StrUtil::unquote(name.substr(0, colon)));
    const int last = colon == std::wstring::npos
                         ? first
                         : book->sheetIndex(StrUtil::unquote(name.substr(colon + 1)));
    return book->sheetRef(first, last);
}

void FormulaParser::emitOperand(std::wstring_view t, FormulaBook *book, std::vector<uint8_t> &out) {
    if (t[0] == L'u' && t == std::wstring_view(L"uMinus")) return out.push_back(ptg::kUminus);
    if (t[0] == L'u' && t == std::wstring_view(L"uPlus")) return out.push_back(ptg::kUplus);
    if (t.size() == 4 && t == std::wstring_view(L"SUM1")) {
        out.insert(out.end(), {ptg::kAttr, ptg::kAttrSum, 0, 0});
        return;
    }
    unsigned integer = 0;
    if (isInteger(t, integer)) {
        out.push_back(ptg::kInt);
        return put16(out, integer);
    }
    double number = 0;
    if (isDouble(t, number)) {
        out.push_back(ptg::kNum);
        const size_t at = out.size();
        out.resize(at + 8);
        std::memcpy(&out[at], &number, 8);
        return;
    }
    if (t[0] == L'T' && t == std::wstring_view(L"TRUE")) {
        out.push_back(ptg::kBool);
        return out.push_back(1);
    }
    if (t[0] == L'F' && t == std::wstring_view(L"FALSE")) {
        out.push_back(ptg::kBool);
        return out.push_back(0);
    }
    uint16_t code = 0;
    int count = 0;
    if (t.size() > 1 && readFunctionWord(t, _funcs, code, count)) return emitFunction(t, out);
    int row = 0, col = 0;
    bool refClass = false, rowRel = true, colRel = true;
    if (isReference(t, row, col, refClass, rowRel, colRel)) {
        out.push_back(refClass ? ptg::kRef : ptg::kRef + ptg::kValueClass);
        return RgceLoc(row, col, rowRel, colRel).write(out);
    }
    std::wstring_view sheet;
    if (split3d(t, sheet, _piece)) {
        if (isReference(_piece, row, col, refClass, rowRel, colRel)) {
            const uint16_t xti = makeXti(sheet, book);
            out.push_back(refClass ? ptg::kRef3d : ptg::kRef3d + ptg::kValueClass);
            put16(out, xti);
            return RgceLoc(row, col, rowRel, colRel).write(out);
        }
        RgceArea area;
        if (isAreaReference(_piece, area)) {
            const uint16_t xti = makeXti(sheet, book);
            out.push_back(ptg::kArea3d);
            put16(out, xti);
            return area.write(out);
        }
    }
    RgceArea area;
    if (isAreaReference(t, area)) {
        _areas.push_back(out.size());
        out.push_back(ptg::kArea);
        return area.write(out);
    }
    if (isString(t, _piece)) return putShortString(_piece, out);
    if (int err = ptg::errorCode(t.data(), t.size()); err >= 0) {
        out.push_back(ptg::kErr);
        return out.push_back(uint8_t(err));
    }
    incorrectToken();
}

} // namespace tabrix
