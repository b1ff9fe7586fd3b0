#include "biff/strings/str_map.h"

#include <cstdint>
#include <utility>

namespace tabrix {

namespace {

// The key that marks erased slots: no text, and flags no real string has.
ExtString deletedKey() {
    ExtString s;
    s.flags = 0xFF;
    s.text = nullptr;
    return s;
}

bool isDeleted(const ExtString &s) { return s.text == nullptr && s.flags == 0xFF; }

} // namespace

uint64_t HashFnv::of(const wchar_t *text) {
    uint64_t h = 0x811C9DC5u;
    for (const wchar_t *p = text; p && *p; ++p) {
        h *= 16777619u;
        h ^= uint64_t(uint32_t(*p));
    }
    return h;
}

bool EqStr::equal(const ExtString &a, const ExtString &b) {
    if (isDeleted(a) || isDeleted(b)) return isDeleted(a) && isDeleted(b);
    const wchar_t *x = a.text ? a.text : L"";
    const wchar_t *y = b.text ? b.text : L"";
    for (; *x && *x == *y; ++x, ++y) {}
    if (*x != *y) return false;
    const uint8_t bits = ExtString::kPhonetic | ExtString::kRichText;
    if ((a.flags & bits) != (b.flags & bits)) return false;
    if (a.flags & ExtString::kPhonetic) return false;
    if (a.flags & ExtString::kRichText) {
        static const std::vector<FormatRun> none;
        const std::vector<FormatRun> &ra = a.format ? a.format->runs : none;
        const std::vector<FormatRun> &rb = b.format ? b.format->runs : none;
        if (ra.size() != rb.size()) return false;
        for (size_t i = 0; i < ra.size(); ++i)
            if (ra[i].ich != rb[i].ich || ra[i].ifnt != rb[i].ifnt) return false;
    }
    return true;
}

StrMap::StrMap() { _map.set_deleted_key(deletedKey()); }

void StrMap::sync() {
    for (; _mapped < _strings.size(); ++_mapped) {
        ExtString &s = _strings[_mapped];
        if (!s.hash) s.hash = HashFnv::of(s.text);
        _map[s] = unsigned(_mapped);
    }
}

void StrMap::filterAll() {
    for (; _filtered < _strings.size(); ++_filtered) {
        ExtString &s = _strings[_filtered];
        if (!s.hash) s.hash = HashFnv::of(s.text);
        _filter.put(s.hash);
    }
}

// The filter answers most misses; the hash table, brought up to date, the
// rest.  `key` carries its hash.
int64_t StrMap::lookUp(const ExtString &key) {
    filterAll();
    if (!_filter.mayHold(key.hash)) return -1;
    sync();
    auto it = _map.find(key);
    return it == _map.end() ? -1 : int64_t(it->second);
}

int64_t StrMap::find(const wchar_t *text, uint64_t hash) {
    ExtString probe;
    probe.text = text;
    probe.hash = hash;
    return lookUp(probe);
}

unsigned StrMap::insert(const ExtString &s, bool force, bool &inserted) {
    unsigned index = unsigned(_strings.size());
    if (force) {
        // Appended without a look-up; the hash table takes it at the next one.
        _strings.push_back(s);
        inserted = true;
        return index;
    }
    ExtString key = s;
    if (!key.hash) key.hash = HashFnv::of(key.text);
    const int64_t found = lookUp(key);
    inserted = found < 0;
    return inserted ? add(key) : unsigned(found);
}

// The hash table takes the string at the next look-up that needs it.
unsigned StrMap::add(const ExtString &s) {
    filterAll();
    const unsigned index = unsigned(_strings.size());
    ExtString key = s;
    if (!key.hash) key.hash = HashFnv::of(key.text);
    _strings.push_back(key);
    _filter.put(key.hash);
    _filtered = _strings.size();
    return index;
}

void StrMap::insert(unsigned index, const ExtString &s) {
    if (index >= _strings.size()) return;
    sync();
    for (auto it = _map.begin(); it != _map.end(); ++it)
        if (it->second == index) {
            _map.erase(it);
            break;
        }
    ExtString key = s;
    key.hash = HashFnv::of(key.text);
    _strings[index] = key;
    _map[key] = index;
    _filter.put(key.hash);
}

void StrMap::reset() {
    _strings.clear();
    _map.clear();
    _mapped = 0;
    _filter.clear();
    _filtered = 0;
}

} // namespace tabrix
