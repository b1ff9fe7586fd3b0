// The shared string table of a book.
#pragma once

#include <string>

#include "ooxml/package/xml_file.h"

namespace tabrix {

class SharedStrings : public XFile {
public:
    explicit SharedStrings(binding::e_edition edition); // an empty table
    SharedStrings(binding::e_edition edition, const char *bytes,
                  size_t size); // a loaded part; throws tberror
    ~SharedStrings() override;
    void save(std::string &out) override;
    uint32_t addString(const std::wstring &text); // index of the item; counts every call
    std::wstring stringByIndex(
        uint32_t index) const; // the user's text; throws "index is out of range or no value"
    size_t size() const;

private:
    XmlFile _part;
};

} // namespace tabrix
