// The base of the typed facades: a thin view of a generic node with the
// accessor families of generated classes (get_x, set_x, isset_x, unset_x,
// size_x, get_x(i), append_x, delete_x), spelled by the macros below.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "ooxml/binding/engine/node.h"
#include "ooxml/binding/parts/cell.h"
#include "ooxml/binding/tables/schema_enums.h"

namespace binding {

// N is the generic node, or a hand-made class answering the same attribute calls.
template <class N> class c_facade_of {
public:
    explicit c_facade_of(N *n = nullptr) : _n(n) {}
    N *node() const { return _n; }
    explicit operator bool() const { return _n != nullptr; }

protected:
    std::string_view text_of(const char *a) const { return _n->attribute_or_default(a); }
    uint32_t u32_of(const char *a) const {
        return static_cast<uint32_t>(std::strtoul(std::string(text_of(a)).c_str(), nullptr, 10));
    }
    double double_of(const char *a) const {
        return std::strtod(std::string(text_of(a)).c_str(), nullptr);
    }
    bool bool_of(const char *a) const {
        const std::string_view v = text_of(a);
        return v == "1" || v == "true";
    }
    // The enumerator of an enumerated attribute's text (or default), OTHER when outside the list.
    template <class E> E enum_of(const char *a) const {
        const std::string_view v = text_of(a);
        for (size_t i = 0; i < s_enum_names<E>::count; ++i)
            if (v == s_enum_names<E>::names[i]) return static_cast<E>(i);
        return E::OTHER;
    }
    template <class E> static const char *text_of_enum(E v) {
        const size_t i = static_cast<size_t>(v);
        return i < s_enum_names<E>::count ? s_enum_names<E>::names[i] : "";
    }
    // The optional child, made when absent.
    c_node *lazy(const char *name) const {
        c_node *c = _n->child(name);
        return c ? c : _n->append(name);
    }
    N *_n;
};

using c_facade = c_facade_of<c_node>;

// Accessors of an attribute kept as text, as an unsigned, a double or a boolean.
#define BINDING_ATTR_TEXT(x)                                                                       \
    std::string_view get_##x() const { return text_of(#x); }                                       \
    void set_##x(std::string v) { _n->set_attribute(#x, std::move(v)); }                           \
    bool isset_##x() const { return _n->attribute(#x) != nullptr; }                                \
    void unset_##x() { _n->unset_attribute(#x); }
#define BINDING_ATTR_U32(x)                                                                        \
    uint32_t get_##x() const { return u32_of(#x); }                                                \
    void set_##x(uint32_t v) { _n->set_attribute(#x, std::to_string(v)); }                         \
    bool isset_##x() const { return _n->attribute(#x) != nullptr; }                                \
    void unset_##x() { _n->unset_attribute(#x); }
#define BINDING_ATTR_DOUBLE(x)                                                                     \
    double get_##x() const { return double_of(#x); }                                               \
    void set_##x(double v) {                                                                       \
        std::string s;                                                                             \
        lmx::output_convert_to_xml(s, v);                                                          \
        _n->set_attribute(#x, s);                                                                  \
    }                                                                                              \
    bool isset_##x() const { return _n->attribute(#x) != nullptr; }                                \
    void unset_##x() { _n->unset_attribute(#x); }
#define BINDING_ATTR_BOOL(x)                                                                       \
    bool get_##x() const { return bool_of(#x); }                                                   \
    void set_##x(bool v) { _n->set_attribute(#x, v ? "1" : "0"); }                                 \
    bool isset_##x() const { return _n->attribute(#x) != nullptr; }                                \
    void unset_##x() { _n->unset_attribute(#x); }
// Accessors of an attribute of an enumerated simple type: the generated
// enumeration E, and the text itself (kept as read, also outside the list).
#define BINDING_ATTR_ENUM(E, x)                                                                    \
    E get_##x() const { return enum_of<E>(#x); }                                                   \
    void set_##x(E v) {                                                                            \
        if (v != E::OTHER) _n->set_attribute(#x, text_of_enum(v));                                 \
    }                                                                                              \
    std::string_view get_##x##_text() const { return text_of(#x); }                                \
    void set_##x##_text(std::string v) { _n->set_attribute(#x, std::move(v)); }                    \
    bool isset_##x() const { return _n->attribute(#x) != nullptr; }                                \
    void unset_##x() { _n->unset_attribute(#x); }

// A repeated child of facade type T.
#define BINDING_MULTI(T, x)                                                                        \
    size_t size_##x() const { return _n->count(#x); }                                              \
    T get_##x(size_t i) const { return T(_n->child(#x, i)); }                                      \
    T append_##x() { return T(_n->append(#x)); }                                                   \
    void delete_##x(size_t i) { _n->remove(#x, i); }
// An optional child of facade type T, made on first get.
#define BINDING_OPTIONAL(T, x)                                                                     \
    T get_##x() { return T(lazy(#x)); }                                                            \
    bool isset_##x() const { return _n->child(#x) != nullptr; }                                    \
    void unset_##x() { _n->remove(#x, 0); }

} // namespace binding
