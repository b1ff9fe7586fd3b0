// A1 cell addresses: the one scanner that the library, the module and the
// command-line tool share, and the column letters they all print.
//
// An address is an optional "$", column letters, an optional "$" and row
// digits: "B3", "$B$3", a whole column "B" or a whole row "3".  Each caller
// passes its own rules (letter case, "$" markers, limits) and turns what the
// scan found into its own answer or message; grammars built on top, such as
// the module's R1C1 and sheet prefixes or a range's ":", stay with the caller.
#ifndef TABRIX_CELL_ADDRESS_H
#define TABRIX_CELL_ADDRESS_H

#include <cstddef>
#include <string>

namespace tabrix {

// How the column part of an address is read.
enum class ColumnText {
    // Only "A" to "Z" are letters; "a1" is no address (formula text).
    Upper,
    // "a" to "z" count as their upper-case twins (labels typed by users).
    AnyCase,
    // The book's conversion: whatever stands before the first digit "1" to
    // "9" is the column part, a "$" in it is skipped (at the start it marks
    // the column absolute, just before the row the row), and every other
    // character counts as its code minus 64, so only upper-case letters mean
    // what they say.  Its answers for other text are part of its contract.
    BeforeRowDigit,
};

struct AddressRules {
    ColumnText columnText = ColumnText::Upper;
    // "$" may mark the column and the row absolute.
    bool dollars = true;
    // Largest one-based column and row numbers; a larger one stops the scan
    // with ColumnTooLarge or RowTooLarge.  BeforeRowDigit has no limits.
    long long maxColumn = 16384;
    long long maxRow = 1048576;
};

// What a scan found at the start of a text.  Positions count characters
// from the start; `end` is the first character behind the address, so a
// caller that wants the whole text to be an address checks end == length.
struct CellAddress {
    enum Status { Ok, NoAddress, ColumnTooLarge, RowTooLarge } status = Ok;
    long long column = 0; // one-based; 0 without letters
    long long row = 0;    // as written ("A0" gives 0); 0 without digits
    bool columnAbsolute = false, rowAbsolute = false;
    std::size_t lettersBegin = 0, lettersEnd = 0; // the whole run of letters
    std::size_t digitsBegin = 0, digitsEnd = 0;   // the whole run of digits
    std::size_t end = 0;

    bool hasColumn() const { return lettersEnd > lettersBegin; }
    bool hasRow() const { return digitsEnd > digitsBegin; }
};

// The value of a column letter from 1 ("A") to 26 ("Z"), or 0 when `c` is
// no letter under the rule (BeforeRowDigit reads like Upper here).
template <class Ch> inline int columnLetterValue(Ch c, ColumnText rule) {
    if (c >= Ch('A') && c <= Ch('Z')) return int(c - Ch('A')) + 1;
    if (rule == ColumnText::AnyCase && c >= Ch('a') && c <= Ch('z')) return int(c - Ch('a')) + 1;
    return 0;
}

namespace detail {

template <class Ch> inline bool isDigit(Ch c) { return c >= Ch('0') && c <= Ch('9'); }

// The book's conversion (see ColumnText::BeforeRowDigit); the row digits
// saturate at 0x7FFFFFFF and the column weight stops growing near 2^40.
template <class Ch> CellAddress scanBeforeRowDigit(const Ch *text, std::size_t length) {
    CellAddress a;
    std::size_t rowAt = 0;
    while (rowAt < length && !(text[rowAt] >= Ch('1') && text[rowAt] <= Ch('9'))) ++rowAt;
    // Summed without sign so that no text overflows: wide characters far
    // above "Z" wrap around instead, into a column no sheet has.
    unsigned long long sum = 0, weight = 1;
    for (std::size_t i = rowAt; i-- > 0;) {
        if (text[i] == Ch('$')) {
            if (i == 0) a.columnAbsolute = true;
            continue;
        }
        sum += (unsigned long long)((long long)text[i] - 64) * weight;
        if (weight < (1ULL << 40)) weight *= 26;
    }
    a.column = (long long)sum;
    a.lettersEnd = a.digitsBegin = a.digitsEnd = a.end = rowAt;
    if (rowAt < length) {
        if (rowAt > 0 && text[rowAt - 1] == Ch('$')) a.rowAbsolute = true;
        std::size_t i = rowAt;
        for (; i < length && isDigit(text[i]); ++i) {
            a.row = a.row * 10 + (text[i] - Ch('0'));
            if (a.row > 0x7FFFFFFFLL) a.row = 0x7FFFFFFFLL;
        }
        a.digitsEnd = a.end = i;
    }
    return a;
}

} // namespace detail

// Scans an address at the start of text[0, length).  A run of letters or
// digits beyond a limit is still passed over whole, so that a message can
// quote it.  Two "$" with no letters between them are NoAddress, as is text
// with neither letters nor digits.
template <class Ch>
CellAddress scanCellAddress(const Ch *text, std::size_t length, const AddressRules &rules) {
    if (rules.columnText == ColumnText::BeforeRowDigit)
        return detail::scanBeforeRowDigit(text, length);
    CellAddress a;
    std::size_t i = 0;
    if (rules.dollars && i < length && text[i] == Ch('$')) {
        a.columnAbsolute = true;
        ++i;
    }
    a.lettersBegin = i;
    for (; i < length; ++i) {
        int v = columnLetterValue(text[i], rules.columnText);
        if (v == 0) break;
        if (a.status != CellAddress::Ok) continue;
        a.column = a.column * 26 + v;
        if (a.column > rules.maxColumn) a.status = CellAddress::ColumnTooLarge;
    }
    a.lettersEnd = a.digitsBegin = a.digitsEnd = a.end = i;
    if (a.status != CellAddress::Ok) return a;
    if (rules.dollars && i < length && text[i] == Ch('$')) {
        if (!a.hasColumn() && a.columnAbsolute) {
            a.status = CellAddress::NoAddress;
            return a;
        }
        a.rowAbsolute = true;
        ++i;
    }
    a.digitsBegin = i;
    for (; i < length && detail::isDigit(text[i]); ++i) {
        if (a.status != CellAddress::Ok) continue;
        a.row = a.row * 10 + (text[i] - Ch('0'));
        if (a.row > rules.maxRow) a.status = CellAddress::RowTooLarge;
    }
    a.digitsEnd = a.end = i;
    if (a.status == CellAddress::Ok && !a.hasColumn() && !a.hasRow())
        a.status = CellAddress::NoAddress;
    return a;
}

// Column letters of a zero-based column: 0 -> "A", 25 -> "Z", 26 -> "AA";
// empty for a negative column.
template <class Ch> std::basic_string<Ch> columnLetters(long col) {
    std::basic_string<Ch> letters;
    for (long c = col + 1; c > 0; c = (c - 1) / 26)
        letters.insert(letters.begin(), Ch('A' + (c - 1) % 26));
    return letters;
}

} // namespace tabrix

#endif
