// Decimal numbers of any size as digit strings: xs:decimal and the
// integers beyond 64 bits, compared by their digits.
#pragma once

#include <string>
#include <string_view>

namespace lmx {

class c_decimal {
public:
    // Parses "[+-]digits[.digits]"; false when the text is not a decimal.
    bool parse(std::string_view text);
    // -1, 0, 1 as this is less than, equal to or greater than `o`.
    int compare(const c_decimal &o) const;
    // Significant digits, as the totalDigits facet counts them.
    size_t total_digits() const;
    // Digits after the point, trailing zeros left out.
    size_t fraction_digits() const { return _fraction.size(); }
    // Whether there is no fraction.
    bool is_integer() const { return _fraction.empty(); }
    // Canonical text: no "+", no leading or trailing zeros, "0" for zero.
    std::string to_string() const;

private:
    bool _negative = false;
    std::string _integer;  // no leading zeros; empty for zero
    std::string _fraction; // no trailing zeros
};

// An integer of any size: a decimal with no fraction.
class c_big_int : public c_decimal {
public:
    // Parses "[+-]digits"; false otherwise.
    bool parse(std::string_view text);
};

} // namespace lmx
