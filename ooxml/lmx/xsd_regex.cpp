// Patterns through libxml2's regular-expression automata.
#include "ooxml/lmx/xsd_regex.h"

#include <libxml/xmlregexp.h>

namespace lmx {

c_regex::c_regex(const char *pattern)
    : _compiled(xmlRegexpCompile(reinterpret_cast<const xmlChar *>(pattern))) {}

c_regex::~c_regex() {
    if (_compiled) xmlRegFreeRegexp(static_cast<xmlRegexpPtr>(_compiled));
}

bool c_regex::is_match(std::string_view value) const {
    if (!_compiled) return false;
    const std::string v(value); // the automaton reads a terminated string
    return xmlRegexpExec(static_cast<xmlRegexpPtr>(_compiled),
                         reinterpret_cast<const xmlChar *>(v.c_str())) == 1;
}

} // namespace lmx
