// XML Schema patterns, compiled once by libxml2's automata and matched
// against whole UTF-8 values.
#pragma once

#include <string>
#include <string_view>

namespace lmx {

class c_regex {
public:
    // Compiles `pattern`; an invalid pattern leaves the object invalid.
    explicit c_regex(const char *pattern);
    c_regex(const c_regex &) = delete;
    c_regex &operator=(const c_regex &) = delete;
    ~c_regex();

    // Whether the pattern compiled.
    bool is_valid() const { return _compiled != nullptr; }
    // Whether the whole of `value` matches; false for an invalid pattern.
    bool is_match(std::string_view value) const;

private:
    void *_compiled;
};

} // namespace lmx
