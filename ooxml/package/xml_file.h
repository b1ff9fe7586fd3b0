// An XML part bound to a schema tree: read from bytes of one edition and
// part kind, written back through the same tables.
#pragma once

#include <string>

#include "ooxml/binding/engine/document.h"
#include "ooxml/package/xfile.h"

namespace tabrix {

class XmlFile : public XFile {
public:
    // An empty part of this kind.
    XmlFile(binding::e_edition edition, binding::e_part part);
    // A part read from bytes: size 0 throws "data is empty", a read error
    // throws the XML layer's description of it.
    XmlFile(binding::e_edition edition, binding::e_part part, const char *bytes, size_t size);
    void save(std::string &out) override;

    binding::e_edition edition() const { return _edition; }
    binding::e_part partKind() const { return _part; }
    binding::c_document &document() { return _document; }
    const binding::c_document &document() const { return _document; }

protected:
    // Reads bytes into the tree in place of what it held.
    void read(const char *bytes, size_t size);
    // Starts over with an empty part.
    void reset();

private:
    binding::e_edition _edition;
    binding::e_part _part;
    binding::c_document _document;
};

} // namespace tabrix
