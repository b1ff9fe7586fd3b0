// The shared string table in its plain form: every item one text, no rich
// runs, no phonetic parts, nothing foreign.  Most tables are so; they are
// read and written here straight from and to the bytes, and only a table
// of any other form goes through the bound tree.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ooxml/binding/engine/document.h"
#include "ooxml/sheet/text_arena.h"

namespace tabrix {

struct PlainStrings {
    TextArena texts;            // stored texts (escapes kept), stable in place
    std::vector<bool> preserve; // the item's text said xml:space="preserve"
    bool hasCount = false, hasUnique = false;
    uint64_t count = 0;
    uint32_t unique = 0;
};

// Reads a table of the plain form; false (with `out` left partly filled)
// for any other, which the caller then binds in full.
bool readPlainStrings(std::string_view bytes, binding::e_edition edition, PlainStrings &out);

// Writes the part, its XML declaration first.
void writePlainStrings(const PlainStrings &table, binding::e_edition edition, std::string &out);

} // namespace tabrix
