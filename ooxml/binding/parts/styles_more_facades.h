// More facades of the styles part: cell protection, the cell styles, the
// custom indexed palette, and wider views of a cell format and of the
// stylesheet root that reach them.
#pragma once

#include "ooxml/binding/parts/styles_facades.h"

namespace binding {

class c_cell_protection : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(locked)
    BINDING_ATTR_BOOL(hidden)
};

class c_alignment_more : public c_alignment {
public:
    using c_alignment::c_alignment;
    BINDING_ATTR_BOOL(shrinkToFit)
};

// A cell format with its protection and the whole of its alignment.
class c_xf_more : public c_xf {
public:
    using c_xf::c_xf;
    BINDING_OPTIONAL(c_alignment_more, alignment)
    BINDING_OPTIONAL(c_cell_protection, protection)
};

class c_rgb_color : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(rgb)
};

class c_indexed_colors : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_MULTI(c_rgb_color, rgbColor)
};

class c_colors : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_indexed_colors, indexedColors)
};

class c_cell_style : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(name)
    BINDING_ATTR_U32(xfId)
    BINDING_ATTR_U32(builtinId)
};

class c_cell_styles : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_MULTI(c_cell_style, cellStyle)
};

class c_stylesheet_more : public c_stylesheet {
public:
    using c_stylesheet::c_stylesheet;
    BINDING_OPTIONAL(c_cell_xfs, cellStyleXfs)
    BINDING_OPTIONAL(c_cell_styles, cellStyles)
    BINDING_OPTIONAL(c_colors, colors)
};

} // namespace binding
