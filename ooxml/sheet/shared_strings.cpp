// The shared string table: loading, adding with de-duplication, reading.
#include "ooxml/sheet/shared_strings.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>

#include "book/tberror.h"
#include "ooxml/binding/parts/sst_facades.h"
#include "ooxml/lmx/lmx_error.h"
#include "ooxml/lmx/xml_names.h"
#include "ooxml/sheet/xml_text.h"

namespace tabrix {

namespace {

const char *const kNoIndex = "index is out of range or no value";

uint32_t hashOf(std::string_view s) { return uint32_t(std::hash<std::string_view>()(s)); }

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
    _keys.reserve(_items.size());
    while (_slots.size() < 2 * (_items.size() + 1)) grow();
    for (size_t i = 0; i < _items.size(); ++i) {
        std::string joined;
        std::string_view key = storedText(*_items[i], joined);
        if (!textChild(*_items[i])) {
            _joinedKeys.push_back(std::move(joined));
            key = _joinedKeys.back();
        }
        _keys.push_back(key);
        const uint32_t h = hashOf(key);
        const size_t slot = probe(key, h);
        if (_slots[slot])
            _slots[slot] = (uint64_t(h) << 32) | (i + 1); // of two equal items the later one wins
        else
            enter(key, h, uint32_t(i));
    }
}

size_t SharedStrings::probe(std::string_view key, uint32_t h) const {
    const size_t mask = _slots.size() - 1;
    for (size_t at = h & mask;; at = (at + 1) & mask) {
        const uint64_t s = _slots[at];
        if (!s) return at;
        if (uint32_t(s >> 32) == h && _keys[uint32_t(s) - 1] == key) return at;
    }
}

void SharedStrings::enter(std::string_view key, uint32_t h, uint32_t index) {
    if (2 * (_used + 1) > _slots.size()) grow();
    _slots[probe(key, h)] = (uint64_t(h) << 32) | (uint64_t(index) + 1);
    ++_used;
}

void SharedStrings::grow() {
    std::vector<uint64_t> old(std::max<size_t>(64, _slots.size() * 2), 0);
    old.swap(_slots);
    const size_t mask = _slots.size() - 1;
    for (uint64_t s : old) {
        if (!s) continue;
        size_t at = uint32_t(s >> 32) & mask;
        while (_slots[at]) at = (at + 1) & mask;
        _slots[at] = s;
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
    const uint32_t h = hashOf(stored);
    if (!_slots.empty()) {
        const uint64_t s = _slots[probe(stored, h)];
        if (s) return uint32_t(s) - 1;
    }
    binding::c_node *item = _doc.root().append("si");
    binding::c_node *t = item->append("t");
    t->_text = stored;
    if (!stored.empty() && (isBlank(stored.front()) || isBlank(stored.back())))
        t->_foreign.push_back({"xml", std::string(lmx::k_uri_xml), "space", "preserve"});
    const uint32_t index = uint32_t(_items.size());
    _items.push_back(item);
    _keys.push_back(t->_text);
    enter(_keys.back(), h, index);
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
