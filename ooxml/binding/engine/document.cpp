// Reading and writing whole parts: the root check, the tolerance of a part
// (unknown elements of the workbook and worksheet skipped in Transitional
// books), and the source's namespace bindings carried to the output.
#include <cstring>

#include "ooxml/binding/engine/context.h"
#include "ooxml/binding/engine/document.h"

namespace binding {

c_document::c_document(const c_document &o)
    : _set(o._set), _root_decl(o._root_decl), _root(o._root), _dropped(o._dropped),
      _decls(o._decls) {}

c_document::~c_document() {
    // The tree goes first, while its cells' memory is known to go too.
    if (!_cell_memory) return;
    c_cell_memory::c_discarding discarding;
    _root = c_node();
}

c_document &c_document::operator=(const c_document &o) {
    if (this == &o) return *this;
    _set = o._set;
    _root_decl = o._root_decl;
    _root = o._root;
    _dropped = o._dropped;
    _decls = o._decls;
    return *this;
}

c_document::c_document(c_document &&o) noexcept
    : _cell_memory(std::move(o._cell_memory)), _set(o._set), _root_decl(o._root_decl),
      _root(std::move(o._root)), _dropped(o._dropped), _decls(std::move(o._decls)) {}

c_document &c_document::operator=(c_document &&o) noexcept {
    if (this == &o) return *this;
    _set = o._set;
    _root_decl = o._root_decl;
    _root = std::move(o._root);
    _cell_memory = std::move(o._cell_memory);
    _dropped = o._dropped;
    _decls = std::move(o._decls);
    return *this;
}

std::pmr::memory_resource *c_document::cell_memory() {
    if (!_cell_memory) _cell_memory = std::make_unique<c_cell_memory>();
    return _cell_memory.get();
}

namespace {

struct s_part_root {
    const char *name;
    const char *uri_part; // a part of the namespace URI that both editions share
    bool tolerant;        // unknown children skipped (Transitional only)
};

const s_part_root k_part_roots[] = {
    {nullptr, nullptr, false},
    {"Types", "/content-types", false},
    {"Relationships", "package/2006/relationships", false},
    {"workbook", "spreadsheetml", true},
    {"worksheet", "spreadsheetml", true},
    {"styleSheet", "spreadsheetml", false},
    {"sst", "spreadsheetml", false},
    {"wsDr", "spreadsheetDrawing", false},
};

// The global element of `set` for this part, or -1.
int32_t find_root(const s_schema_set &set, e_part part, int ns, std::string_view local) {
    const s_part_root &want = k_part_roots[part];
    for (uint32_t i = 0; i < set.root_count; ++i) {
        const s_global_element &g = set.roots[i];
        if (part == PART_ANY ? (g.ns == ns && local == g.name)
                             : (std::strcmp(g.name, want.name) == 0 &&
                                std::strstr(set.ns[g.ns - lmx::NS_FIRST_TABLE].uri, want.uri_part)))
            return static_cast<int32_t>(i);
    }
    return -1;
}

} // namespace

const s_schema_set &schema_set(e_edition e) { return e == STRICT ? k_strict : k_transitional; }

std::string_view c_document::root_name() const {
    return _root_decl < 0 ? std::string_view() : _set->elems[_root_decl].name;
}

void c_document::create(e_edition edition, e_part part) {
    _set = &schema_set(edition);
    _decls.clear();
    const int32_t g = find_root(*_set, part, 0, "");
    _root_decl = g < 0 ? -1 : _set->roots[g].element;
    const s_element_decl &d = _set->elems[_root_decl < 0 ? 0 : _root_decl];
    _root = c_node(_set, d.complex, d.simple);
}

lmx::elmx_error c_document::unmarshal(const char *data, size_t size, e_edition edition, e_part part,
                                      lmx::s_debug_error *debug) {
    _set = &schema_set(edition);
    _decls.clear();
    _root_decl = -1;
    _dropped = 0;
    lmx::c_xml_reader r(data, size, _set->ns);
    auto done = [&](lmx::elmx_error e) {
        if (debug) *debug = r.debug_error();
        return e;
    };
    int ev;
    while ((ev = r.next()) == lmx::EV_TEXT) {}
    if (ev == lmx::EV_ERROR) return done(r.error());
    if (ev != lmx::EV_START)
        return done(r.capture_error(lmx::ELMX_ELEMENT_NOT_FOUND, "", __FILE__, __LINE__));
    const int32_t g = find_root(*_set, part, r.ns(), r.local());
    const s_element_decl *d = g < 0 ? nullptr : &_set->elems[_set->roots[g].element];
    if (!d || d->ns != r.ns() || r.local() != d->name)
        return done(r.capture_error(lmx::ELMX_ELEMENT_NOT_FOUND, r.qname(), __FILE__, __LINE__));
    _root_decl = _set->roots[g].element;
    for (size_t i = 0; i < r.declaration_count(); ++i)
        _decls.emplace_back(std::string(r.declaration(i).prefix),
                            std::string(r.declaration(i).uri));
    const bool tolerant = edition == TRANSITIONAL && (std::strcmp(d->name, "workbook") == 0 ||
                                                      std::strcmp(d->name, "worksheet") == 0);
    c_read_context ctx(r, *_set, tolerant);
    ctx.document = this;
    _root = c_node(_set, d->complex, d->simple);
    const lmx::elmx_error e = ctx.read_element(_root);
    _dropped = ctx._dropped;
    if (e) return done(e);
    while ((ev = r.next()) != lmx::EV_END_OF_INPUT)
        if (ev == lmx::EV_ERROR) return done(r.error());
    return done(lmx::ELMX_OK);
}

lmx::elmx_error c_document::marshal(std::string &out, lmx::s_debug_error *debug) const {
    if (_root_decl < 0) {
        if (debug) debug->capture(lmx::ELMX_TYPE_NOT_SET, "", __FILE__, __LINE__, 0);
        return lmx::ELMX_TYPE_NOT_SET;
    }
    lmx::c_xml_writer w(out);
    c_write_context ctx(w, *_set);
    for (const auto &d : _decls) ctx.declare(d.first, d.second);
    const s_element_decl &d = _set->elems[_root_decl];
    ctx.write_element(_root, d.ns, d.name);
    const lmx::elmx_error e = w.finish();
    if (e && debug) debug->capture(e, d.name, __FILE__, __LINE__, 0);
    return e;
}

} // namespace binding
