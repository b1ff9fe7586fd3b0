// An element kept whole as XML text, with the namespace bindings from
// outside it that its names rely on, so it can be written back elsewhere.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace lmx {

struct c_any_info {
    std::string ns_uri; // namespace of the element itself ("" for none)
    std::string local;  // its local name
    std::string xml;    // the element from "<" to its end, as it stood (UTF-8)
    // (prefix, URI) bindings declared outside the element and used inside it;
    // the empty prefix is the default namespace.
    std::vector<std::pair<std::string, std::string>> ns_context;

    // True when nothing has been captured.
    bool empty() const { return xml.empty(); }
};

} // namespace lmx
