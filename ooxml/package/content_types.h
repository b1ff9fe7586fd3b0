// "[Content_Types].xml": a list of Default (by extension) and Override (by
// part name) entries in file order, a new entry at the end, looked up
// case-insensitively.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "book/str_util.h"
#include "ooxml/package/xfile.h"

namespace tabrix {

class ContentTypes : public XFile {
public:
    struct Entry {
        bool isDefault;
        std::wstring key; // Extension or PartName
        std::wstring type;
    };

    ContentTypes() = default;
    ContentTypes(const char *bytes, size_t size);
    void save(std::string &out) override;

    // The override of the (normalised) name, else the default of its
    // extension, else "".
    std::wstring contentType(std::wstring partName) const;
    void addOverride(const std::wstring &partName, const std::wstring &type);
    void addDefault(const std::wstring &extension, const std::wstring &type);
    // Removes the first Override whose PartName equals the name exactly.
    void delOverride(const std::wstring &partName);
    void fillMaps();
    const std::vector<Entry> &entries() const { return _list; }

private:
    void add(bool isDefault, const std::wstring &key, const std::wstring &type);
    std::vector<Entry> _list;
    std::map<std::wstring, size_t, CaseInsensitiveLess> _defaults, _overrides;
};

} // namespace tabrix
