// The shared string table: loading, adding with de-duplication, reading.
#include "ooxml/sheet/shared_strings.h"

#include <cstring>
#include <memory>

#include "book/tberror.h"
#include "ooxml/binding/parts/sst_facades.h"
#include "ooxml/lmx/lmx_error.h"
#include "ooxml/lmx/xml_names.h"
#include "ooxml/sheet/xml_text.h"

namespace tabrix {

namespace {

const char *const kNoIndex = "index is out of range or no value";

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The text child of an item or run, or null.
const binding::c_node *textChild(const binding::c_node &n) { return n.child("t"); }

} // namespace

SharedStrings::SharedStrings(binding::e_edition edition) {
    _doc.create(edition, binding::PART_SST);
    _siDecl = _doc.root().decl_of("si");
}

SharedStrings::SharedStrings(binding::e_edition edition, const char *bytes, size_t size) {
    lmx::s_debug_error debug;
    if (lmx::elmx_error e = _doc.unmarshal(bytes, size, edition, binding::PART_SST, &debug))
        throw tberror(lmx::get_error_description(e));
    _siDecl = _doc.root().decl_of("si");
    binding::c_sst sst(&_doc.root());
    if (sst.isset_count()) {
        _count = sst.get_count();
        _counted = true;
    }
    indexItems();
}

SharedStrings::~SharedStrings() = default;

void SharedStrings::indexItems() {
    for (binding::c_child &c : _doc.root()._children)
        if (c.kind == binding::K_NODE && c.decl == _siDecl) _items.push_back(c.node.get());
    _index.reserve(_items.size());
    for (size_t i = 0; i < _items.size(); ++i) {
        std::string joined;
        std::string_view key = storedText(*_items[i], joined);
        if (!textChild(*_items[i])) {
            _joinedKeys.push_back(std::move(joined));
            key = _joinedKeys.back();
        }
        _index[key] = uint32_t(i); // of two equal items the later one wins
    }
}

std::string_view SharedStrings::storedText(const binding::c_node &item, std::string &joined) const {
    if (const binding::c_node *t = textChild(item)) return t->_text;
    for (const binding::c_child &c : item._children) {
        if (c.kind != binding::K_NODE || !c.node) continue;
        if (std::strcmp(_doc.set()->elems[c.decl].name, "r") != 0) continue;
        if (const binding::c_node *t = textChild(*c.node)) joined += t->_text;
    }
    return joined;
}

uint32_t SharedStrings::addString(const std::wstring &text) {
    _scratch.clear();
    escapeXmlText(text, _scratch);
    return addStoredText(_scratch);
}

uint32_t SharedStrings::addStoredText(std::string_view stored) {
    ++_count;
    _counted = true;
    auto found = _index.find(stored);
    if (found != _index.end()) return found->second;
    binding::c_node *item = _doc.root().append("si");
    binding::c_node *t = item->append("t");
    t->_text = stored;
    if (!stored.empty() && (isBlank(stored.front()) || isBlank(stored.back())))
        t->_foreign.push_back({"xml", std::string(lmx::k_uri_xml), "space", "preserve"});
    const uint32_t index = uint32_t(_items.size());
    _items.push_back(item);
    _index.emplace(std::string_view(t->_text), index);
    _grown = true;
    return index;
}

std::wstring SharedStrings::stringByIndex(uint32_t index) const {
    if (index >= _items.size()) throw tberror(kNoIndex);
    std::string joined;
    std::wstring out;
    unescapeXmlText(storedText(*_items[index], joined), out);
    return out;
}

const std::string *SharedStrings::plainStoredText(uint32_t index) const {
    if (index >= _items.size()) return nullptr;
    const binding::c_node *t = textChild(*_items[index]);
    return t ? &t->_text : nullptr;
}

void SharedStrings::save(std::string &out) {
    binding::c_sst sst(&_doc.root());
    if (_counted) sst.set_count(uint32_t(_count > 0xFFFFFFFFu ? 0xFFFFFFFFu : _count));
    if (_grown) sst.set_uniqueCount(uint32_t(_items.size()));
    lmx::s_debug_error debug;
    if (lmx::elmx_error e = _doc.marshal(out, &debug)) throw tberror(lmx::get_error_description(e));
}

} // namespace tabrix
