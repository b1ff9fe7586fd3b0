// The state of one read or one write of a part, shared by the generic
// engine and the hand-made classes.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ooxml/binding/engine/node.h"

namespace binding {

inline constexpr std::string_view k_uri_mc =
    "http://schemas.openxmlformats.org/markup-compatibility/2006";

class c_read_context {
public:
    c_read_context(lmx::c_xml_reader &r, const s_schema_set &set, bool tolerant)
        : _r(r), _set(set), _tolerant(tolerant), _tolerant_values(&set == &k_transitional) {}

    lmx::c_xml_reader &reader() { return _r; }
    const s_schema_set &set() const { return _set; }
    // Reads the element at the current start tag into `node` (whose type is set).
    lmx::elmx_error read_element(c_node &node);
    // Reads attribute `i` of the current start tag into `node` (checked, kept or dropped).
    lmx::elmx_error read_attribute(c_node &node, size_t i);
    // Reads the child at the current start tag of an element of `parent`'s
    // (complex) type into `c`: bound, hand-made or raw; `skipped` when the
    // part's tolerance left it out.
    lmx::elmx_error read_child(c_node &parent, c_child &c, bool &skipped);
    // Stops the read with `code` about `name`.
    lmx::elmx_error fail(lmx::elmx_error code, std::string_view name, int line);
    // Whether the current start tag is kept raw (alternate content or an ignorable namespace).
    bool keep_raw() const;
    // Notes the declarations and mc:Ignorable of the current start tag.
    void note_scope();
    // Keeps the current attribute `i` if it is foreign; false for an unqualified one.
    bool keep_foreign(size_t i, std::vector<s_foreign_attribute> &out);

    // Unqualified unknown attributes and unknown elements of tolerant parts left out.
    size_t _dropped = 0;
    // The part being read, whose rows take their cells' memory from it.
    class c_document *document = nullptr;

private:
    lmx::elmx_error read_attributes(c_node &node);
    lmx::elmx_error read_content(c_node &node);
    lmx::elmx_error read_child(const s_complex_type *t, bool simple, bool any_slot, c_child &c,
                               bool &skipped);

    lmx::c_xml_reader &_r;
    const s_schema_set &_set;
    bool _tolerant;
    bool _tolerant_values; // producers' slips in attribute values (Transitional only)
    std::vector<std::pair<std::string, std::string>> _decls; // all seen, for mc:Ignorable prefixes
    std::vector<std::string> _ignorable;
};

class c_write_context {
public:
    c_write_context(lmx::c_xml_writer &w, const s_schema_set &set) : _w(w), _set(set) {}

    lmx::c_xml_writer &writer() { return _w; }
    const s_schema_set &set() const { return _set; }
    // Writer id of a table namespace id (1 stays unqualified).
    int ns(int table_id);
    // Declares a namespace binding of the source document.
    void declare(const std::string &prefix, const std::string &uri);
    void write_element(const c_node &node, int ns, std::string_view name);
    void write_child(const c_child &c);
    void write_foreign(const std::vector<s_foreign_attribute> &attrs);

private:
    lmx::c_xml_writer &_w;
    const s_schema_set &_set;
    std::vector<int> _ids; // by table id - 1000
};

// Checks the order of `node`'s children against its type's content model:
// 10 for a child out of place, 21 for a missing required child.  `bad`
// names the culprit.
lmx::elmx_error check_content_model(const c_node &node, std::string &bad);

// Whether an attribute value that failed `spec` with `e` is one of the
// producers' slips kept as text: an empty number, a colour of three bytes.
bool tolerated_value(std::string_view v, const lmx::s_validation_spec &spec, lmx::elmx_error e);

// The hand-made class for a complex type of this set, or null.
// Its cells' memory comes from `document` when there is one.
std::unique_ptr<c_hand_made> make_hand_made(const s_schema_set &set, int32_t complex,
                                            class c_document *document);

} // namespace binding
