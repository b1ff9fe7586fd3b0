// tberror: the library's one exception.  Internal code throws it with a fixed
// English text; every public operation catches it and turns its `what` text
// into the book's message.
#ifndef TABRIX_TBERROR_H
#define TABRIX_TBERROR_H

#include <stdexcept>
#include <string>

namespace tabrix {

class tberror : public std::runtime_error {
public:
    explicit tberror(const std::string &what) : std::runtime_error(what) {}
    explicit tberror(const char *what) : std::runtime_error(what) {}
};

} // namespace tabrix

#endif
