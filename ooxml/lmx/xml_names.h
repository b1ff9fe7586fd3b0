// Namespace ids and the tables that map names to the small integers a
// binding engine switches on.
#pragma once

#include <cstddef>
#include <string_view>

namespace lmx {

// Namespace ids.  Tables use 1000 and up; a URI met in a document and not in
// the reader's table gets an id from NS_FIRST_DYNAMIC up, in order of meeting.
enum : int {
    NS_NONE = 1, // an unprefixed attribute, or an element outside any namespace
    NS_XML = 2,  // the reserved "xml" prefix
    NS_XSI = 3,  // XML Schema instance
    NS_FIRST_DYNAMIC = 100,
    NS_FIRST_TABLE = 1000
};

inline constexpr std::string_view k_uri_xml = "http://www.w3.org/XML/1998/namespace";
inline constexpr std::string_view k_uri_xsi = "http://www.w3.org/2001/XMLSchema-instance";

// One namespace of a table: id, preferred prefix ("" for the default), URI.
// A table ends with an entry whose uri is null.
struct s_ns_map {
    int id;
    const char *prefix;
    const char *uri;
};

// One name of an event table: namespace id, local name, its length, event.
// A table ends with an entry whose name is null.
struct s_event_map {
    int ns;
    const char *name;
    size_t length;
    int event;
};

// Event numbers shared with the binding engine.
enum : int {
    EV_END_OF_INPUT = 0,
    EV_UNKNOWN = 1, // a name not in the table handed to tokenise
    EV_ERROR = 2,
    EV_TEXT = 5,
    EV_END = 6,
    EV_START = 7,
    EV_XSI_TYPE = 8,
    EV_XSI_NIL = 9,
    EV_XSI_SCHEMA_LOCATION = 10,
    EV_XSI_NO_NS_SCHEMA_LOCATION = 11,
    EV_FIRST_TABLE = 13
};

// The event of (ns, local) in `map`: the table's number, one of the four
// XSI attribute events, or EV_UNKNOWN.
int tokenise(const s_event_map *map, int ns, std::string_view local);

} // namespace lmx
