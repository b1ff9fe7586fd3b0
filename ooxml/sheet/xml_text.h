// Cell and shared-string texts between the library's wide text (UTF-16
// units) and the UTF-8 text the bound tree holds.  What XML can't carry
// travels as "_xHHHH_": controls other than tab and line feed (a carriage
// return too, since readers fold it into a line feed), unpaired surrogates,
// 0xFFFE and 0xFFFF.  A "_xHHHH_" typed by the user keeps its "_" as
// "_x005F_", so that reading gives back the user's exact text.
#pragma once

#include <string>
#include <string_view>

namespace tabrix {

// Appends the escaped UTF-8 form of `units` to `out`.
void escapeXmlText(std::wstring_view units, std::string &out);
// Decodes the UTF-8 text of the tree, every "_xHHHH_" included, into units
// appended to `out`.  Malformed UTF-8 gives U+FFFD.
void unescapeXmlText(std::string_view text, std::wstring &out);

// Whether UTF-8 text is valid and already in its stored form: no byte that
// needs an escape, no "_" (which might need one), no U+FFFE or U+FFFF.
bool isPlainXmlText(std::string_view utf8);

} // namespace tabrix
