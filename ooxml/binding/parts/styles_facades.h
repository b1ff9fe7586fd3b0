// Facades of the styles part: number formats, fonts, fills, borders and cell formats.
#pragma once

#include "ooxml/binding/parts/facade.h"

namespace binding {

// Elements of one "val" attribute (font size, name, bold ...).
class c_val : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(val)
};

class c_color : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_TEXT(rgb)
    BINDING_ATTR_U32(indexed)
    BINDING_ATTR_U32(theme)
    BINDING_ATTR_DOUBLE(tint)
    BINDING_ATTR_BOOL(automatic)
};

class c_num_fmt : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(numFmtId)
    BINDING_ATTR_TEXT(formatCode)
};

class c_num_fmts : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_MULTI(c_num_fmt, numFmt)
};

// A font: a repeating choice in the schema, so its children keep their order of reading.
class c_font : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_val, b)
    BINDING_OPTIONAL(c_val, i)
    BINDING_OPTIONAL(c_val, u)
    BINDING_OPTIONAL(c_val, sz)
    BINDING_OPTIONAL(c_val, name)
    BINDING_OPTIONAL(c_val, family)
    BINDING_OPTIONAL(c_val, scheme)
    BINDING_OPTIONAL(c_val, strike)
    BINDING_OPTIONAL(c_val, vertAlign)
    BINDING_OPTIONAL(c_color, color)
};

class c_fonts : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_MULTI(c_font, font)
};

class c_pattern_fill : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_ENUM(e_pattern_type, patternType)
    BINDING_OPTIONAL(c_color, fgColor)
    BINDING_OPTIONAL(c_color, bgColor)
};

class c_fill : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_pattern_fill, patternFill)
};

class c_fills : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_MULTI(c_fill, fill)
};

class c_border_pr : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_ENUM(e_border_style, style)
    BINDING_OPTIONAL(c_color, color)
};

class c_border : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_BOOL(diagonalUp)
    BINDING_ATTR_BOOL(diagonalDown)
    BINDING_OPTIONAL(c_border_pr, left)
    BINDING_OPTIONAL(c_border_pr, right)
    BINDING_OPTIONAL(c_border_pr, top)
    BINDING_OPTIONAL(c_border_pr, bottom)
    BINDING_OPTIONAL(c_border_pr, diagonal)
};

class c_borders : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_MULTI(c_border, border)
};

class c_alignment : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_ENUM(e_horizontal_alignment, horizontal)
    BINDING_ATTR_ENUM(e_vertical_alignment, vertical)
    BINDING_ATTR_BOOL(wrapText)
    BINDING_ATTR_U32(indent)
    BINDING_ATTR_U32(textRotation)
};

class c_xf : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(numFmtId)
    BINDING_ATTR_U32(fontId)
    BINDING_ATTR_U32(fillId)
    BINDING_ATTR_U32(borderId)
    BINDING_ATTR_U32(xfId)
    BINDING_ATTR_BOOL(applyNumberFormat)
    BINDING_ATTR_BOOL(applyFont)
    BINDING_ATTR_BOOL(applyFill)
    BINDING_ATTR_BOOL(applyBorder)
    BINDING_ATTR_BOOL(applyAlignment)
    BINDING_OPTIONAL(c_alignment, alignment)
};

class c_cell_xfs : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_ATTR_U32(count)
    BINDING_MULTI(c_xf, xf)
};

class c_stylesheet : public c_facade {
public:
    using c_facade::c_facade;
    BINDING_OPTIONAL(c_num_fmts, numFmts)
    BINDING_OPTIONAL(c_fonts, fonts)
    BINDING_OPTIONAL(c_fills, fills)
    BINDING_OPTIONAL(c_borders, borders)
    BINDING_OPTIONAL(c_cell_xfs, cellXfs)
};

} // namespace binding
