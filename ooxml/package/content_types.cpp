#include "ooxml/package/content_types.h"

#include "ooxml/lmx/xml_writer.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/flat_part.h"
#include "ooxml/package/package_names.h"

namespace tabrix {

ContentTypes::ContentTypes(const char *bytes, size_t size) {
    readFlatPart(bytes, size, pkg::kNsContentTypes, "Types", [this](lmx::c_xml_reader &r) {
        const bool isDefault = r.local() == "Default";
        if (r.ns() != kFlatNs || (!isDefault && r.local() != "Override")) return lmx::ELMX_OK;
        Entry e{isDefault, {}, {}};
        if (!flatAttribute(r, isDefault ? "Extension" : "PartName", e.key) ||
            !flatAttribute(r, "ContentType", e.type))
            return r.capture_error(lmx::ELMX_REQUIRED_ATTRIBUTES_MISSING,
                                   isDefault ? "CT_Default" : "CT_Override", __FILE__, __LINE__);
        _list.push_back(std::move(e));
        return lmx::ELMX_OK;
    });
    fillMaps();
}

void ContentTypes::save(std::string &out) {
    out.clear();
    const lmx::s_ns_map map[] = {{kFlatNs, "", pkg::kNsContentTypes}, {0, nullptr, nullptr}};
    lmx::c_xml_writer w(out, map);
    w.start_element(kFlatNs, "Types");
    for (const Entry &e : _list) {
        w.start_element(kFlatNs, e.isDefault ? "Default" : "Override");
        w.attribute(lmx::NS_NONE, e.isDefault ? "Extension" : "PartName", packageNarrow(e.key));
        w.attribute(lmx::NS_NONE, "ContentType", packageNarrow(e.type));
        w.end_element();
    }
    w.end_element();
    throwXmlError(w.finish());
}

std::wstring ContentTypes::contentType(std::wstring partName) const {
    FileUtil::normalize(partName);
    auto o = _overrides.find(partName);
    if (o != _overrides.end()) return _list[o->second].type;
    auto d = _defaults.find(FileUtil::getExtension(partName));
    return d == _defaults.end() ? std::wstring() : _list[d->second].type;
}

void ContentTypes::add(bool isDefault, const std::wstring &key, const std::wstring &type) {
    auto &map = isDefault ? _defaults : _overrides;
    auto it = map.find(key);
    if (it != map.end()) {
        _list[it->second].type = type;
        return;
    }
    map.emplace(key, _list.size());
    _list.push_back({isDefault, key, type});
}

void ContentTypes::addOverride(const std::wstring &partName, const std::wstring &type) {
    add(false, partName, type);
}

void ContentTypes::addDefault(const std::wstring &extension, const std::wstring &type) {
    add(true, extension, type);
}

void ContentTypes::delOverride(const std::wstring &partName) {
    for (size_t i = 0; i < _list.size(); ++i)
        if (!_list[i].isDefault && _list[i].key == partName) {
            _list.erase(_list.begin() + static_cast<std::ptrdiff_t>(i));
            fillMaps();
            return;
        }
}

void ContentTypes::fillMaps() {
    _defaults.clear();
    _overrides.clear();
    for (size_t i = 0; i < _list.size(); ++i)
        (_list[i].isDefault ? _defaults : _overrides).emplace(_list[i].key, i);
}

} // namespace tabrix
