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
#include "ooxml/sheet/plain_strings.h"
#include "ooxml/sheet/xml_text.h"

namespace tabrix {

namespace {

const char *const kNoIndex = "index is out of range or no value";

uint32_t hashOf(std::string_view s) { return uint32_t(std::hash<std::string_view>()(s)); }

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The text child of an item or run (declaration `t`), or null: the first
// child is the text in every plain item, so it is looked at first.
const binding::c_node *textChild(const binding::c_node &n, int32_t t) {
    for (const binding::c_child &c : n._children)
        if (c.kind == binding::K_NODE && c.decl == t) return c.node.get();
    return nullptr;
}

} // namespace

SharedStrings::SharedStrings(binding::e_edition edition) : _edition(edition), _plain(true) {
    _indexed = true;
}

SharedStrings::SharedStrings(binding::e_edition edition, const char *bytes, size_t size)
    : _edition(edition) {
    if (readPlainStrings(std::string_view(bytes, size), edition, _table)) {
        _plain = true;
        _count = _table.count;
        _counted = _table.hasCount;
        return;
    }
    _table = PlainStrings();
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
    if (!_items.empty()) {
        _tDecl = _items[0]->decl_of("t");
        _rDecl = _items[0]->decl_of("r");
    }
}

// The hash index is made at the first addition: a book that is only read
// never needs it.
void SharedStrings::indexTexts() {
    _indexed = true;
    if (!_plain) _keys.reserve(size());
    while (_slots.size() < 2 * (size() + 1)) grow();
    for (size_t i = 0; i < size(); ++i) {
        std::string joined;
        std::string_view key = _plain ? _table.texts[i] : storedText(*_items[i], joined);
        if (!_plain && !textChild(*_items[i], _tDecl)) {
            _joinedKeys.push_back(std::move(joined));
            key = _joinedKeys.back();
        }
        if (!_plain) _keys.push_back(key);
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
        if (uint32_t(s >> 32) == h && keyOf(uint32_t(s) - 1) == key) return at;
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
    if (const binding::c_node *t = textChild(item, _tDecl)) return t->_text;
    for (const binding::c_child &c : item._children) {
        if (c.kind != binding::K_NODE || !c.node || c.decl != _rDecl) continue;
        if (const binding::c_node *t = c.node->child("t")) joined += t->_text;
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
    if (!_indexed) indexTexts();
    const uint32_t h = hashOf(stored);
    if (!_slots.empty()) {
        const uint64_t s = _slots[probe(stored, h)];
        if (s) return uint32_t(s) - 1;
    }
    const bool blankEnd = !stored.empty() && (isBlank(stored.front()) || isBlank(stored.back()));
    _grown = true;
    if (_plain) {
        const uint32_t index = uint32_t(_table.texts.size());
        const std::string_view key = _table.texts.push_back(stored);
        _table.preserve.push_back(blankEnd);
        enter(key, h, index);
        return index;
    }
    if (_siDecl < 0) _siDecl = _doc.root().decl_of("si");
    binding::c_node *item = _doc.root().append("si");
    binding::c_node *t = item->append("t");
    if (_tDecl < 0) _tDecl = item->decl_of("t");
    t->_text = stored;
    if (blankEnd) t->_foreign.push_back({"xml", std::string(lmx::k_uri_xml), "space", "preserve"});
    const uint32_t index = uint32_t(_items.size());
    _items.push_back(item);
    _keys.push_back(t->_text);
    enter(_keys.back(), h, index);
    return index;
}

std::wstring SharedStrings::stringByIndex(uint32_t index) const {
    if (index >= size()) throw tberror(kNoIndex);
    std::string joined;
    std::wstring out;
    unescapeXmlText(_plain ? _table.texts[index] : storedText(*_items[index], joined), out);
    return out;
}

bool SharedStrings::plainStoredText(uint32_t index, std::string_view &text) const {
    if (index >= size()) return false;
    if (_plain) {
        text = _table.texts[index];
        return true;
    }
    const binding::c_node *t = textChild(*_items[index], _tDecl);
    if (t) text = t->_text;
    return t;
}

void SharedStrings::save(std::string &out) {
    if (_plain) {
        _table.hasCount = _counted;
        _table.count = std::min<uint64_t>(_count, 0xFFFFFFFFu);
        if (_grown) {
            _table.hasUnique = true;
            _table.unique = uint32_t(_table.texts.size());
        }
        writePlainStrings(_table, _edition, out);
        return;
    }
    binding::c_sst sst(&_doc.root());
    if (_counted) sst.set_count(uint32_t(_count > 0xFFFFFFFFu ? 0xFFFFFFFFu : _count));
    if (_grown) sst.set_uniqueCount(uint32_t(_items.size()));
    lmx::s_debug_error debug;
    if (lmx::elmx_error e = _doc.marshal(out, &debug)) throw tberror(lmx::get_error_description(e));
}

} // namespace tabrix
