#include "ooxml/package/relationships.h"

#include <cwchar>
#include <tuple>

#include "ooxml/lmx/xml_writer.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/flat_part.h"
#include "ooxml/package/package_names.h"

namespace tabrix {

Relationships::Relationships(const char *bytes, size_t size) {
    readFlatPart(bytes, size, pkg::kNsRelationships, "Relationships", [this](lmx::c_xml_reader &r) {
        if (r.ns() != kFlatNs || r.local() != "Relationship") return lmx::ELMX_OK;
        Entry e;
        if (!flatAttribute(r, "Target", e.target) || !flatAttribute(r, "Type", e.type) ||
            !flatAttribute(r, "Id", e.id))
            return r.capture_error(lmx::ELMX_REQUIRED_ATTRIBUTES_MISSING, "CT_Relationship",
                                   __FILE__, __LINE__);
        flatAttribute(r, "TargetMode", e.targetMode);
        _list.push_back(std::move(e));
        return lmx::ELMX_OK;
    });
    fillMap();
}

void Relationships::save(std::string &out) {
    out.clear();
    const lmx::s_ns_map map[] = {{kFlatNs, "", pkg::kNsRelationships}, {0, nullptr, nullptr}};
    lmx::c_xml_writer w(out, map);
    w.start_element(kFlatNs, "Relationships");
    for (const Entry &e : _list) {
        w.start_element(kFlatNs, "Relationship");
        if (!e.targetMode.empty())
            w.attribute(lmx::NS_NONE, "TargetMode", packageNarrow(e.targetMode));
        w.attribute(lmx::NS_NONE, "Target", packageNarrow(e.target));
        w.attribute(lmx::NS_NONE, "Type", packageNarrow(e.type));
        w.attribute(lmx::NS_NONE, "Id", packageNarrow(e.id));
        w.end_element();
    }
    w.end_element();
    throwXmlError(w.finish());
}

std::wstring Relationships::makeId() const {
    long long highest = 0;
    for (const Entry &e : _list) {
        if (e.id.size() <= 3) continue;
        const wchar_t *digits = e.id.c_str() + 3;
        wchar_t *end = nullptr;
        long long n = std::wcstoll(digits, &end, 10);
        if (end != digits && n > highest && n < (1LL << 62)) highest = n;
    }
    return L"rId" + std::to_wstring(highest + 1);
}

std::wstring Relationships::addRelation(const std::wstring &type, const std::wstring &target) {
    std::wstring id = makeId();
    _list.push_back({id, type, target, {}});
    _targets[id] = target;
    _byType.emplace(type, target);
    return id;
}

std::wstring Relationships::target(const std::wstring &id) const {
    auto it = _targets.find(id);
    return it == _targets.end() ? std::wstring() : it->second;
}

std::wstring Relationships::firstTargetByType(const std::wstring &type) {
    std::tie(_cursor, _cursorEnd) = _byType.equal_range(type);
    return nextTarget();
}

std::wstring Relationships::nextTarget() {
    if (_cursor == _cursorEnd) return std::wstring();
    return (_cursor++)->second;
}

void Relationships::delRelation(const std::wstring &id) {
    for (auto it = _list.begin(); it != _list.end(); ++it)
        if (it->id == id) {
            _list.erase(it);
            break;
        }
    fillMap();
}

void Relationships::delRelationByTarget(const std::wstring &target) {
    for (auto it = _list.begin(); it != _list.end(); ++it)
        if (it->target == target) {
            _list.erase(it);
            break;
        }
    fillMap();
}

void Relationships::fillMap() {
    _targets.clear();
    _byType.clear();
    for (const Entry &e : _list) {
        _targets[e.id] = e.target;
        _byType.emplace(e.type, e.target);
    }
    _cursor = _cursorEnd = _byType.end();
}

} // namespace tabrix
