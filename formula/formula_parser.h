// FormulaParser: formula text to stored tokens, in two stages.  Stage one
// cuts the text into tokens and orders them in reverse Polish form (an
// operator stack with the priorities below, function calls with their
// argument counts, written parentheses kept as parenthesis tokens); stage
// two turns each item into token bytes.  There is no syntax tree and no
// separate validation: what the stages accept is the grammar.
//
// Priorities, all left-associative: unary minus and plus 9, "%" 8, "^" 7,
// "*" "/" 6, "+" "-" 5, "<" ">" "<=" ">=" 4, "=" "<>" 3, "&" 2, argument
// separators ";" "," 1.
//
// A parser keeps its scratch buffers between calls; use one per thread.
#ifndef TABRIX_FORMULA_FORMULA_PARSER_H
#define TABRIX_FORMULA_FORMULA_PARSER_H

#include "formula/formula_book.h"
#include "formula/func_map.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabrix {

class FormulaParser {
public:
    // Longest formula text, blanks outside quotes not counted, and most
    // token bytes a cell's formula record can hold.
    static constexpr size_t kMaxText = 8192;
    static constexpr size_t kMaxTokens = 8202;

    explicit FormulaParser(const FuncMap &funcs = FuncMap::instance()) : _funcs(funcs) {}

    // The tokens of `text` into `out` (replaced).  `book` answers sheet
    // names of three-dimensional references; without one they fail.
    // Failures throw tberror with the parser's messages.
    void compile(std::wstring_view text, FormulaBook *book, std::vector<uint8_t> &out);
    // Stage one alone: the reverse Polish text, items separated by blanks,
    // a by-reference operand with its trailing "R".
    std::wstring toReversePolish(std::wstring_view text);

private:
    enum Kind : uint8_t { kOperand, kOperator, kFunction, kParen, kOpen };
    struct Item {
        Kind kind;
        uint8_t op;     // operator number, for kOperator
        bool byRef;     // an operand in an argument passed by reference
        uint32_t start; // operand: in _text; function: in _words
        uint32_t len;
    };
    struct Token {
        uint32_t start, len;
        bool byRef;
        bool func; // a function name, by the first stage's test
        uint32_t mask;
    };
    struct State {
        bool armed;
        uint32_t mask, arg, parens;
    };

    void prepare(std::wstring_view text);
    size_t nextToken(size_t pos) const;
    void tokenize();
    void addRefs();
    bool stageOneFunc(std::wstring_view token, uint32_t *mask) const;
    void reversePolish();
    void emit(const Item &item, FormulaBook *book, std::vector<uint8_t> &out);
    void emitOperand(std::wstring_view text, FormulaBook *book, std::vector<uint8_t> &out);
    void emitFunction(std::wstring_view word, std::vector<uint8_t> &out);
    uint16_t makeXti(std::wstring_view sheet, FormulaBook *book);
    std::wstring_view view(const Item &item) const;

    const FuncMap &_funcs;
    std::wstring _text;
    std::vector<Token> _tokens;
    std::vector<State> _states;
    std::vector<Item> _output, _stack;
    std::vector<uint8_t> _parenKinds;
    std::wstring _words;
    std::wstring _scratch, _piece;
    std::vector<size_t> _areas;
};

// Function-call words of the reverse Polish form, NAME, count, "F" (SUM2F),
// read back: false when `word` isn't one or names no function.  Names
// ending in digits get them back for LOG10, DAYS360 and ATAN2 only.
// Fails with "incorrect number of function parameters" when no count can
// be read.
bool readFunctionWord(std::wstring_view word, const FuncMap &funcs, uint16_t &code, int &count,
                      std::wstring_view *name = nullptr);

} // namespace tabrix

#endif
