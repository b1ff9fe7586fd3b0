// Facades of the package parts: "[Content_Types].xml" and the ".rels" parts.
#pragma once

#include "ooxml/binding/parts/facade.h"

namespace binding {

class c_default : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(Extension)
    BINDING_ATTR_TEXT(ContentType)
};

class c_override : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(PartName)
    BINDING_ATTR_TEXT(ContentType)
};

// The Types root; Default and Override entries keep their order of reading.
class c_types : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_MULTI(c_default, Default)
    BINDING_MULTI(c_override, Override)
};

class c_relationship : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(Id)
    BINDING_ATTR_TEXT(Type)
    BINDING_ATTR_TEXT(Target)
    BINDING_ATTR_ENUM(e_target_mode, TargetMode)
};

class c_relationships : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_MULTI(c_relationship, Relationship)
};

} // namespace binding
