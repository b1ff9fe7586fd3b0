// The words of the stylesheet for the interface's enumerations, the
// standard indexed colours, and the date test of number formats.
#ifndef TABRIX_OOXML_STYLES_STYLE_NAMES_H
#define TABRIX_OOXML_STYLES_STYLE_NAMES_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tabrix {
namespace stylenames {

// A list of words where the position is the enumerator's number.
struct WordList {
    const char *const *words;
    size_t size;
    // The word of `value`, or null when there is none.
    const char *word(int value) const;
    // The number of `text`, or `absent` when no word matches.
    int value(std::string_view text, int absent) const;
};

extern const WordList kAlignH;
extern const WordList kAlignV;
extern const WordList kBorderStyle;
// Fill patterns 0 ("none") to 18.
extern const WordList kFillPattern;
extern const WordList kScript;

// Underlines are not a dense list: 1, 2, 33, 34.
const char *underlineWord(int value);
int underlineValue(std::string_view text);

// The red-green-blue bytes of the indexed colours 0 to 63 (0-7 repeat 8-15).
extern const uint8_t kIndexedColors[64][3];

// Whether a number format text shows a date or time: a letter d, m, y, h or
// s (in either case) outside [...] sections.
bool findDateChars(std::string_view formatText);
// The date test of a built-in number format id below 50.
bool isBuiltInDate(uint32_t id);

} // namespace stylenames
} // namespace tabrix

#endif
