// The writer: a fixed declaration, no indentation, every namespace declared
// on the root element (those of the table, and those that foreign
// attributes and raw elements need), text escaped as it goes out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ooxml/lmx/any_info.h"
#include "ooxml/lmx/lmx_error.h"
#include "ooxml/lmx/xml_names.h"

namespace lmx {

// Appends text escaped for XML: & < " ' always, > after "]", and in an
// attribute value also tab, line feed and carriage return as references.
void output_convert_to_xml(std::string &out, std::string_view text, bool attribute);
// Appends a double as "%.14g" lower-cased, or "INF", "-INF", "NaN".
void output_convert_to_xml(std::string &out, double v);
// Appends "true" or "false".
void output_convert_to_xml(std::string &out, bool v);
// Appends "1" or "0".
void output_convert_to_bool_digit(std::string &out, bool v);

class c_xml_writer {
public:
    // Writes into `out` (appending), starting with the declaration; `map` is
    // the namespace table whose entries all go on the root element.
    explicit c_xml_writer(std::string &out, const s_ns_map *map = nullptr);

    // The id under which names of `uri` are written.  A URI new to the writer,
    // or known under another prefix while `prefix` is free, is declared on the
    // root under `prefix`; a new URI whose prefix is taken gets a fresh prefix.
    int add_namespace(std::string_view prefix, std::string_view uri);
    // Opens an element; its tag stays open for attributes until content comes.
    void start_element(int ns, std::string_view local);
    // Adds an attribute to the open tag.
    void attribute(int ns, std::string_view local, std::string_view value);
    // Adds a double attribute ("%.14g").
    void attribute(int ns, std::string_view local, double value);
    // Adds a boolean attribute ("true"/"false").
    void attribute(int ns, std::string_view local, bool value);
    // Adds an integer attribute.
    void attribute(int ns, std::string_view local, int64_t value);
    // Adds an unsigned integer attribute.
    void attribute(int ns, std::string_view local, uint64_t value);
    // Writes escaped text inside the current element.
    void text(std::string_view value);
    // Closes the current element ("/>" when it got no content).
    void end_element();
    // Writes a captured element unchanged; its outside bindings go on the root,
    // or onto its own tag when the prefix is bound otherwise there.
    void write_any_info(const c_any_info &info);
    // Ends the document: puts the namespace declarations on the root; 45 when
    // no root was written, 46 when elements are still open, 42 when an
    // attribute came after content or text or a kept element outside the root.
    elmx_error finish();

    // Open elements.
    size_t depth() const { return _open.size(); }
    // Whether names of namespace id `ns` are written without a prefix.
    bool unprefixed(int ns) const;
    // For hand-made writers of many small elements: closes the open tag and
    // answers the output, to which whole elements may be appended, escaped
    // and balanced, named without prefixes or with prefixes declared.
    std::string &raw_content();

private:
    struct s_ns {
        int id;
        std::string prefix, uri;
    };
    struct s_open {
        size_t name_at, name_len; // the qname inside _out
        bool content;
    };
    const s_ns *find_id(int id) const;
    void close_tag();
    void put_name(int ns, std::string_view local);

    std::string &_out;
    std::vector<s_ns> _ns;
    std::vector<s_open> _open;
    size_t _root_decl_at = 0;
    bool _root_written = false;
    bool _tag_open = false;
    bool _misuse = false;
    int _next_id = NS_FIRST_DYNAMIC;
};

} // namespace lmx
