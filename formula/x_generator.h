// XGenerator: which object reads a package part, told by the part's
// content type.  The package layer hands in one maker for each kind of part
// it models; a part of any other type is kept as bytes by the binary maker,
// and the workbook part gets no object, since its caller reads it itself.
#ifndef TABRIX_FORMULA_X_GENERATOR_H
#define TABRIX_FORMULA_X_GENERATOR_H

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace tabrix {

enum class PartKind {
    Relationships,
    Styles,
    Worksheet,
    ChartSheet,
    Drawing,
    SharedStrings,
    Workbook, // no object: the caller handles it
    Binary,   // kept unread and written back
};

// The kind of part a content type stands for.
PartKind partKind(const std::string &contentType);

template <class Part> class XGenerator {
public:
    // data, size, and the flag handed on to the styles maker.
    using Maker = std::function<std::unique_ptr<Part>(const char *, size_t, bool)>;

    void setMaker(PartKind kind, Maker maker) { _makers[size_t(kind)] = std::move(maker); }

    // A new object over the part's bytes; null for the workbook part.  A
    // kind without its maker falls back on the binary one.
    std::unique_ptr<Part> create(const char *data, size_t size, const std::string &contentType,
                                 bool flag) const {
        const PartKind kind = partKind(contentType);
        if (kind == PartKind::Workbook) return nullptr;
        const Maker &m =
            _makers[size_t(kind)] ? _makers[size_t(kind)] : _makers[size_t(PartKind::Binary)];
        return m ? m(data, size, kind == PartKind::Styles && flag) : nullptr;
    }

private:
    Maker _makers[size_t(PartKind::Binary) + 1];
};

} // namespace tabrix

#endif
