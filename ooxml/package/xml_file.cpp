#include "ooxml/package/xml_file.h"

#include "book/tberror.h"
#include "ooxml/package/flat_part.h"

namespace tabrix {

XmlFile::XmlFile(binding::e_edition edition, binding::e_part part)
    : _edition(edition), _part(part) {
    reset();
}

XmlFile::XmlFile(binding::e_edition edition, binding::e_part part, const char *bytes, size_t size)
    : _edition(edition), _part(part) {
    read(bytes, size);
}

void XmlFile::reset() { _document.create(_edition, _part); }

void XmlFile::read(const char *bytes, size_t size) {
    if (size == 0) throw tberror("data is empty");
    throwXmlError(_document.unmarshal(bytes, size, _edition, _part));
}

void XmlFile::save(std::string &out) {
    out.clear();
    throwXmlError(_document.marshal(out));
}

} // namespace tabrix
