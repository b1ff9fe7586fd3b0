// Formula texts of Open XML cells: the argument separator exchange and the
// shift of a shared formula's relative references.
#pragma once

#include <cstddef>
#include <string>

namespace tabrix {

// Replaces every `from` by `to` outside double-quoted string literals and
// single-quoted sheet names, which keep their text.
// A text of UTF-16 units or of UTF-8 bytes (the characters are all ASCII).
template <class S>
void exchangeSeparators(S &text, typename S::value_type from, typename S::value_type to);

// The same exchange of "," and ";" in UTF-8 bytes that XML carries as they
// are (see isPlainXmlText), copied from `in` to `out` (the same place or
// `size` bytes apart) and checked in the same pass: false for any other
// text, of which `out` then holds part.
bool exchangePlainSeparators(const char *in, size_t size, char *out, char from, char to);

// The text with every relative A1 reference moved by the deltas; absolute
// parts, literals and function names stay.  A reference moved off the
// sheet becomes "#REF!".
std::wstring shiftFormula(const std::wstring &text, int rowDelta, int colDelta);

// Reads "A1" or "A1:B2" into zero-based corners; false when malformed.
bool parseRef(const std::string &ref, int &rowFirst, int &colFirst, int &rowLast, int &colLast);

} // namespace tabrix
