// XMLFormula: a formula's references between A1 and R1C1 notation,
// relative to the cell that holds the formula.  Blanks outside quotes go
// first; the text is then cut into word and non-word runs and each word
// that is a reference of the other notation is rewritten.  Strings are not
// protected: a reference-shaped word inside quotes is converted as well.
#ifndef TABRIX_FORMULA_XML_FORMULA_H
#define TABRIX_FORMULA_XML_FORMULA_H

#include <string>
#include <string_view>

namespace tabrix {

class XMLFormula {
public:
    // R1C1 to A1 in place.  `biff`: wrap negative results at 65536 rows and
    // 256 columns, else at 1048576 rows and 16384 columns.
    static void toRefA1(std::wstring &text, int row, int col, bool biff);
    // A1 to R1C1 in place.
    static void toRefR1C1(std::wstring &text, int row, int col);

    // The length of the run at the start of `text`.
    static size_t getToken(std::wstring_view text);
    // One token converted; tokens of another shape come back unchanged.
    static std::wstring toA1(std::wstring_view token, int row, int col, bool biff);
    static std::wstring toR1C1(std::wstring_view token, int row, int col);
};

// Deletes the blanks outside double quotes and apostrophes.
void removeSpaces(std::wstring &text);

} // namespace tabrix

#endif
