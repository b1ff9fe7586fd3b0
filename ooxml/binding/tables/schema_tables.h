// The constant tables that the schema compiler makes from the published
// schemas, one set for each edition (Transitional, Strict).  The generic
// engine reads and writes every part through them; nothing here is code.
#pragma once

#include <cstdint>

#include "ooxml/lmx/xml_names.h"
#include "ooxml/lmx/xsd_validate.h"

namespace binding {

constexpr uint32_t k_unbounded = 0xFFFFFFFFu;

enum e_particle_kind : uint8_t { P_ELEMENT, P_SEQUENCE, P_CHOICE, P_ALL, P_ANY };

// One term of a content model.  An element names its declaration (`a`);
// a compositor its terms, k_kids[a .. a + b).
struct s_particle {
    e_particle_kind kind;
    uint32_t min, max;
    int32_t a, b;
};

enum : uint8_t { F_MIXED = 1, F_ANY_ATTRIBUTE = 2 };

// An attribute of a complex type: namespace id (1 for unqualified), name,
// simple type, default (or fixed) text, whether it is required.
struct s_attribute_decl {
    int ns;
    const char *name;
    int32_t simple;
    const char *default_value;
    bool required;
};

// An element declaration: either a complex type or a simple type is set.
struct s_element_decl {
    int ns;
    const char *name;
    int32_t complex, simple;
    const char *default_value;
};

struct s_simple_type {
    const char *name;
    const lmx::s_validation_spec *spec;
};

// A complex type: its attributes k_attrs[attr_first ..], its content model
// (root particle or -1 for empty content), the distinct element
// declarations it may hold k_elem_refs[elem_first ..], the simple type of
// its text for simple content (-1 otherwise), and flags.
struct s_complex_type {
    const char *name;
    uint32_t attr_first, attr_count;
    int32_t particle;
    uint32_t elem_first, elem_count;
    int32_t text;
    uint8_t flags;
};

// A global element: what a part's root may be.
struct s_global_element {
    int ns;
    const char *name;
    int32_t element; // its declaration
};

// All tables of one edition.
struct s_schema_set {
    const char *edition;
    const lmx::s_ns_map *ns;
    const s_simple_type *simple;
    uint32_t simple_count;
    const s_complex_type *complex;
    uint32_t complex_count;
    const s_attribute_decl *attrs;
    const s_element_decl *elems;
    const uint32_t *elem_refs;
    const s_particle *particles;
    const uint32_t *kids;
    const s_global_element *roots;
    uint32_t root_count;
};

extern const s_schema_set k_transitional;
extern const s_schema_set k_strict;

} // namespace binding
