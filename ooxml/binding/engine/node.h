// One element of a bound part: its complex (or simple) type, its attribute
// values in declaration order, foreign attributes kept for writing back,
// and its ordered children: bound elements, text, raw kept XML, or a
// hand-made object standing in for a generated type.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ooxml/binding/tables/schema_tables.h"
#include "ooxml/lmx/any_info.h"
#include "ooxml/lmx/xml_reader.h"
#include "ooxml/lmx/xml_writer.h"

namespace binding {

class c_read_context;
class c_write_context;

// An attribute of another namespace, kept as read.
struct s_foreign_attribute {
    std::string prefix, uri, local, value;
};

// A hand-made class in place of a generated one (the cell): it reads its
// element from the start tag on and writes it back whole.
class c_hand_made {
public:
    virtual ~c_hand_made() = default;
    virtual std::unique_ptr<c_hand_made> clone() const = 0;
    // At the start tag; consumes up to and including the end tag.
    virtual lmx::elmx_error unmarshal(c_read_context &ctx) = 0;
    virtual void marshal(c_write_context &ctx, int ns, std::string_view name) const = 0;
};

class c_node;

enum e_child_kind : uint8_t {
    K_NODE, // a bound element
    K_TEXT, // text of mixed content, held as a node's text
    K_RAW,  // kept as raw XML: alternate content, ignorable namespaces, extension lists
    K_ANY,  // an element in an xs:any slot, raw
    K_HAND  // a hand-made object
};

struct c_child {
    e_child_kind kind = K_NODE;
    int32_t decl = -1; // element declaration (K_NODE, K_HAND, and K_RAW of a declared element)
    std::unique_ptr<c_node> node;
    std::unique_ptr<lmx::c_any_info> raw;
    std::unique_ptr<c_hand_made> hand;

    c_child() = default;
    c_child(c_child &&) = default;
    c_child &operator=(c_child &&) = default;
    c_child(const c_child &o);
    c_child &operator=(const c_child &o) {
        c_child t(o);
        return *this = std::move(t);
    }
};

struct s_attribute_value {
    uint32_t index; // into the type's attributes
    std::string value;
};

class c_node {
public:
    c_node() = default;
    c_node(const s_schema_set *set, int32_t complex, int32_t simple)
        : _set(set), _type(complex), _simple(simple) {}

    const s_schema_set *set() const { return _set; }
    // Complex type index, or -1 for an element of a simple type.
    int32_t type() const { return _type; }
    const s_complex_type &complex() const { return _set->complex[_type]; }

    // Attribute by declared name: null when absent.
    const std::string *attribute(std::string_view name) const;
    // The attribute's text, or its declared default, or "".
    std::string_view attribute_or_default(std::string_view name) const;
    // Sets a declared attribute (false if the type has none of this name).
    bool set_attribute(std::string_view name, std::string value);
    bool unset_attribute(std::string_view name);

    // Children declared under this name, in order.
    size_t count(std::string_view name) const;
    c_node *child(std::string_view name, size_t index = 0);
    const c_node *child(std::string_view name, size_t index = 0) const;
    // A new child of this name, placed after its siblings of the same or
    // earlier declaration (schema order); null if the type has no such child.
    c_node *append(std::string_view name);
    void remove(std::string_view name, size_t index);

    // The element declaration index of a child name, or -1.
    int32_t decl_of(std::string_view name) const;

    std::vector<s_attribute_value> _attrs;
    std::vector<s_foreign_attribute> _foreign;
    std::vector<c_child> _children;
    std::string _text; // simple content

private:
    const s_schema_set *_set = nullptr;
    int32_t _type = -1;
    int32_t _simple = -1;
    friend class c_read_context;
};

} // namespace binding
