// Reading and writing the two package parts that are a root element over a
// flat list of attribute-only children ([Content_Types].xml and .rels).
// The classes above keep their entries in file order, as a binding root's
// choice list would, so that they can later sit on a generated binding.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "ooxml/lmx/lmx_error.h"
#include "ooxml/lmx/xml_reader.h"

namespace tabrix {

// Namespace id of the part's own namespace in the reader.
constexpr int kFlatNs = lmx::NS_FIRST_TABLE;

// Reads `bytes`: the root must be `root` in namespace `uri`; `child` sees
// each element directly under it (deeper elements and text are skipped).
// Size 0 throws "data is empty"; an error throws its description.
void readFlatPart(const char *bytes, size_t size, const char *uri, std::string_view root,
                  const std::function<lmx::elmx_error(lmx::c_xml_reader &)> &child);
// Decodes the attribute `name` of the current tag into `out`; false when absent.
bool flatAttribute(lmx::c_xml_reader &r, std::string_view name, std::wstring &out);
// Throws a non-zero code of the XML layer with its description.
void throwXmlError(int code);

} // namespace tabrix
