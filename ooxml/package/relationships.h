// A relationships part (".rels"): Relationship entries in file order, with
// maps by id and by type.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ooxml/package/xfile.h"

namespace tabrix {

class Relationships : public XFile {
public:
    struct Entry {
        std::wstring id, type, target, targetMode;
    };

    Relationships() { fillMap(); }
    Relationships(const char *bytes, size_t size);
    // Attributes go out in the order TargetMode, Target, Type, Id.
    void save(std::string &out) override;

    // Appends a relation under a new id and answers the id.
    std::wstring addRelation(const std::wstring &type, const std::wstring &target);
    // The target of `id`, or "".
    std::wstring target(const std::wstring &id) const;
    // Targets of one type in insertion order: the first, then each next; "" at the end.
    std::wstring firstTargetByType(const std::wstring &type);
    std::wstring nextTarget();
    void delRelation(const std::wstring &id);
    void delRelationByTarget(const std::wstring &target);
    // "rId" + (highest number after the first three characters of an id + 1).
    std::wstring makeId() const;
    void fillMap();
    const std::vector<Entry> &entries() const { return _list; }

private:
    using ByType = std::multimap<std::wstring, std::wstring>;
    std::vector<Entry> _list;
    std::map<std::wstring, std::wstring> _targets;
    ByType _byType;
    ByType::const_iterator _cursor, _cursorEnd;
};

} // namespace tabrix
