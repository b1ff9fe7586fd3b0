// Facades of the shared strings part.
#pragma once

#include "ooxml/binding/parts/facade.h"

namespace binding {

class c_text : public c_facade {
public:
    using c_facade::c_facade;
    const std::string &get() const { return _n->_text; }
    void set(std::string v) { _n->_text = std::move(v); }
};

// A rich text run: its text; its properties stay in the generic node.
class c_run : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_text, t)
};

// One shared string: plain text, or runs.
class c_string_item : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_text, t)
    BINDING_MULTI(c_run, r)
};

class c_sst : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_ATTR_U32(uniqueCount)
    BINDING_MULTI(c_string_item, si)
};

} // namespace binding
