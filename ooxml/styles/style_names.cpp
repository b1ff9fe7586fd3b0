#include "ooxml/styles/style_names.h"

namespace tabrix {
namespace stylenames {

namespace {

const char *const kAlignHWords[] = {"general", "left",    "center",           "right",
                                    "fill",    "justify", "centerContinuous", "distributed"};
const char *const kAlignVWords[] = {"top", "center", "bottom", "justify", "distributed"};
const char *const kBorderWords[] = {"none",
                                    "thin",
                                    "medium",
                                    "dashed",
                                    "dotted",
                                    "thick",
                                    "double",
                                    "hair",
                                    "mediumDashed",
                                    "dashDot",
                                    "mediumDashDot",
                                    "dashDotDot",
                                    "mediumDashDotDot",
                                    "slantDashDot"};
const char *const kFillWords[] = {
    "none",           "solid",           "mediumGray",    "darkGray",  "lightGray",
    "darkHorizontal", "darkVertical",    "darkDown",      "darkUp",    "darkGrid",
    "darkTrellis",    "lightHorizontal", "lightVertical", "lightDown", "lightUp",
    "lightGrid",      "lightTrellis",    "gray125",       "gray0625"};
const char *const kScriptWords[] = {"baseline", "superscript", "subscript"};

struct Underline {
    int value;
    const char *word;
};
const Underline kUnderlines[] = {
    {1, "single"}, {2, "double"}, {33, "singleAccounting"}, {34, "doubleAccounting"}};

} // namespace

const WordList kAlignH = {kAlignHWords, sizeof kAlignHWords / sizeof *kAlignHWords};
const WordList kAlignV = {kAlignVWords, sizeof kAlignVWords / sizeof *kAlignVWords};
const WordList kBorderStyle = {kBorderWords, sizeof kBorderWords / sizeof *kBorderWords};
const WordList kFillPattern = {kFillWords, sizeof kFillWords / sizeof *kFillWords};
const WordList kScript = {kScriptWords, sizeof kScriptWords / sizeof *kScriptWords};

const char *WordList::word(int v) const {
    return v >= 0 && static_cast<size_t>(v) < size ? words[v] : nullptr;
}

int WordList::value(std::string_view text, int absent) const {
    for (size_t i = 0; i < size; ++i)
        if (text == words[i]) return static_cast<int>(i);
    return absent;
}

const char *underlineWord(int value) {
    for (const Underline &u : kUnderlines)
        if (u.value == value) return u.word;
    return nullptr;
}

int underlineValue(std::string_view text) {
    for (const Underline &u : kUnderlines)
        if (text == u.word) return u.value;
    return 0;
}

const uint8_t kIndexedColors[64][3] = {
    {0, 0, 0},       {255, 255, 255}, {255, 0, 0},     {0, 255, 0},     {0, 0, 255},
    {255, 255, 0},   {255, 0, 255},   {0, 255, 255},   {0, 0, 0},       {255, 255, 255},
    {255, 0, 0},     {0, 255, 0},     {0, 0, 255},     {255, 255, 0},   {255, 0, 255},
    {0, 255, 255},   {128, 0, 0},     {0, 128, 0},     {0, 0, 128},     {128, 128, 0},
    {128, 0, 128},   {0, 128, 128},   {192, 192, 192}, {128, 128, 128}, {153, 153, 255},
    {153, 51, 102},  {255, 255, 204}, {204, 255, 255}, {102, 0, 102},   {255, 128, 128},
    {0, 102, 204},   {204, 204, 255}, {0, 0, 128},     {255, 0, 255},   {255, 255, 0},
    {0, 255, 255},   {128, 0, 128},   {128, 0, 0},     {0, 128, 128},   {0, 0, 255},
    {0, 204, 255},   {204, 255, 255}, {204, 255, 204}, {255, 255, 153}, {153, 204, 255},
    {255, 153, 204}, {204, 153, 255}, {255, 204, 153}, {51, 102, 255},  {51, 204, 204},
    {153, 204, 0},   {255, 204, 0},   {255, 153, 0},   {255, 102, 0},   {102, 102, 153},
    {150, 150, 150}, {0, 51, 102},    {51, 153, 102},  {0, 51, 0},      {51, 51, 0},
    {153, 51, 0},    {153, 51, 102},  {51, 51, 153},   {51, 51, 51}};

bool findDateChars(std::string_view text) {
    bool bracket = false;
    for (char c : text) {
        if (bracket) {
            bracket = c != ']';
            continue;
        }
        switch (c) {
        case '[': bracket = true; break;
        case 'd':
        case 'm':
        case 'y':
        case 'h':
        case 's':
        case 'D':
        case 'M':
        case 'Y':
        case 'H':
        case 'S': return true;
        default: break;
        }
    }
    return false;
}

bool isBuiltInDate(uint32_t id) { return (id >= 14 && id <= 22) || (id >= 45 && id <= 47); }

} // namespace stylenames
} // namespace tabrix
