// The pull reader: walks a document held in memory and reports one event at
// a time (start tag, text, end tag), with names resolved to namespace ids.
// The document is brought to UTF-8 once when the reader is made; then it is
// scanned with pointers and nothing is allocated per event once the
// reader's buffers have grown to the document's largest tag and text.
// Errors are returned as values and stick: after one, every call reports it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ooxml/lmx/any_info.h"
#include "ooxml/lmx/lmx_error.h"
#include "ooxml/lmx/xml_encoding.h"
#include "ooxml/lmx/xml_names.h"

namespace lmx {

// Bounds against hostile documents.
struct s_reader_limits {
    size_t max_depth = 256;             // open elements at once
    size_t max_entity_bytes = 1u << 22; // characters produced by entity expansion, whole document
    size_t max_entity_nesting = 16;     // entities inside entities
    size_t max_attributes = 256;        // attributes on one tag
    size_t max_namespaces = 256;        // namespace bindings in scope, and distinct URIs
    size_t max_entities = 1024;         // entity declarations
};

// One attribute of the current start tag.  The value is kept as it stands
// between the quotes and decoded only when asked for.
struct s_attribute {
    std::string_view qname, local, raw_value;
    int ns = NS_NONE;
    bool plain = true; // the raw value needs no decoding
};

// One namespace declaration (xmlns or xmlns:p) of the current start tag.
struct s_namespace_decl {
    std::string_view prefix, uri;
    int id;
};

// For readers straight from the bytes: the text at the start of `in` up
// to the next '<', with the five predefined entities decoded into `out`;
// its length, or npos for anything a full reader would have to judge
// (other references, CR, ']' that could start "]]>", control characters,
// invalid UTF-8, no '<').
size_t read_plain_text(std::string_view in, std::string &out);

class c_xml_reader {
public:
    // Opens a document of `size` bytes; the bytes must outlive the reader.
    // `map` gives table ids to known namespace URIs.
    c_xml_reader(const char *data, size_t size, const s_ns_map *map = nullptr,
                 const s_reader_limits &limits = s_reader_limits());
    c_xml_reader(const c_xml_reader &) = delete;
    c_xml_reader &operator=(const c_xml_reader &) = delete;
    ~c_xml_reader();

    // Advances to the next event: EV_START, EV_TEXT, EV_END, EV_END_OF_INPUT or EV_ERROR.
    int next();
    // The event last returned by next().
    int event() const { return _event; }
    // The code of the error that stopped the reader, or ELMX_OK.
    elmx_error error() const { return _debug.code; }
    // The detail of that error.
    const s_debug_error &debug_error() const { return _debug; }
    // Records an error found by the caller (binding engine) and stops the reader; returns `code`.
    elmx_error capture_error(elmx_error code, std::string_view name, const char *file, int line);

    // Namespace id of the current element (EV_START, EV_END).
    int ns() const { return _ns; }
    // Local name of the current element.
    std::string_view local() const { return _local; }
    // Name of the current element as written, prefix included.
    std::string_view qname() const { return _qname; }
    // Open elements, the current start tag included and a just-ended one not.
    size_t depth() const { return _frames.size(); }
    // URI of a namespace id ("" for NS_NONE or an unknown id).
    std::string_view namespace_uri(int id) const;

    // Attributes of the current start tag, namespace declarations left out.
    size_t attribute_count() const { return _attrs.size(); }
    // The i-th attribute, in document order.
    const s_attribute &attribute(size_t i) const { return _attrs[i]; }
    // The attribute of the current start tag with this namespace id and local name, or null.
    const s_attribute *find_attribute(int ns, std::string_view local) const;
    // Decodes an attribute's value (references, white-space normalisation);
    // `out` stays valid until the next call that decodes.
    elmx_error attribute_value(const s_attribute &a, std::string_view &out) {
        if (a.plain && !_debug.code) {
            out = a.raw_value;
            return ELMX_OK;
        }
        return decode_attribute(a, out);
    }
    // Namespace declarations of the current start tag.
    size_t declaration_count() const { return _decl_count; }
    // The i-th declaration of the current start tag.
    s_namespace_decl declaration(size_t i) const;

    // The decoded text of the current EV_TEXT (CDATA included, comments left out).
    std::string_view text() const { return _text; }
    // Whether the current text is white space only.
    bool text_is_space() const;

    // Reads up to the root element's start tag; 16 when its namespace id or local name differ.
    elmx_error expect_root(int ns, std::string_view local);
    // At EV_START: passes over the element and all it holds; the next event follows its end.
    elmx_error skip_element();
    // At EV_START: takes the element whole, as it stands, into `out`; the next event follows its
    // end.
    elmx_error capture_element(c_any_info &out);

    // Raw access, for hand-made readers that take common plain content
    // straight from the bytes.  Inside an element's content (after a start
    // tag that is not empty, an end tag or a text), the bytes from the
    // reader's position to the end; empty elsewhere.
    std::string_view raw_rest() const {
        return _pending_end || _debug.code || !_p ? std::string_view()
                                                  : std::string_view(_p, size_t(_end - _p));
    }
    // Moves the position within raw_rest() past whole elements (and white
    // space) that the caller has read and checked: they open and close at
    // the current depth and declare no namespaces, so no state changes.
    void raw_advance(size_t bytes) { _p += bytes; }
    // The namespace id of an unprefixed element name at the position.
    int default_ns() const {
        return _default_binding >= 0 ? _bindings[size_t(_default_binding)].id : NS_NONE;
    }

    // Input line (from 1) of the reader's position.
    int line() const;
    // The XML declaration's version, encoding and standalone values (empty when absent).
    const s_xml_decl &declaration_info() const { return _decl; }

private:
    struct s_frame {
        std::string_view qname, local;
        int ns;
        uint32_t binding_mark;
        int32_t saved_default;
    };
    struct s_binding {
        std::string_view prefix, uri;
        int id;
    };
    struct s_entity {
        std::string_view name, value;
        bool external = false;
        bool parameter = false;
        bool active = false;
    };

    int fail(elmx_error code, std::string detail);
    elmx_error decode_attribute(const s_attribute &a, std::string_view &out);
    int misc_outside_root();
    int start_tag();
    int end_tag();
    int close_element();
    int text_run();
    bool skip_comment();
    bool skip_pi();
    bool parse_doctype();
    bool parse_entity_decl();
    bool skip_markup_decl();
    bool resolve_names(std::string_view qname, std::string_view &local, int &ns);
    int ns_of_uri(std::string_view uri);
    int lookup_prefix(std::string_view prefix, int &binding) const;
    bool decode(std::string_view raw, std::string &out, bool attribute);
    bool decode_reference(const char *&p, const char *end, std::string &out, bool attribute,
                          size_t nesting);
    bool expand_entity(s_entity &ent, std::string &out, bool attribute, size_t nesting);
    void note_used_binding(int binding, c_any_info &out) const;

    s_reader_limits _limits;
    const s_ns_map *_map;
    std::string _storage;
    std::string_view _doc;
    s_xml_decl _decl;
    const char *_p = nullptr;
    const char *_end = nullptr;
    const char *_tag_start = nullptr;
    const char *_error_at = nullptr;

    int _event = EV_END_OF_INPUT;
    int _ns = NS_NONE;
    std::string_view _qname, _local, _text;
    bool _pending_end = false;
    bool _root_seen = false;
    bool _root_done = false;
    bool _doctype_seen = false;

    std::vector<s_frame> _frames;
    std::vector<s_binding> _bindings;
    std::vector<std::string_view> _dynamic_uris;
    std::vector<std::unique_ptr<std::string>> _decoded_uris;
    int32_t _default_binding = -1;
    std::vector<s_attribute> _attrs;
    uint32_t _decl_first = 0;
    uint32_t _decl_count = 0;

    std::string _text_buf;
    std::string _value_buf;
    std::vector<s_entity> _entities;
    size_t _entity_bytes = 0;

    s_debug_error _debug;
};

} // namespace lmx
