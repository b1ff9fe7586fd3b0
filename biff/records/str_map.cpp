#include "biff/records/str_map.h"

#include <cstdint>

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

size_t HashFnv::operator()(const ExtString &s) const {
    uint64_t h = 0x811C9DC5u;
    for (const wchar_t *p = s.text; p && *p; ++p) {
        h *= 16777619u;
        h ^= uint64_t(uint32_t(*p));
    }
    return size_t(h);
}

bool EqStr::operator()(const ExtString &a, const ExtString &b) const {
    if (isDeleted(a) || isDeleted(b)) return isDeleted(a) && isDeleted(b);
    const wchar_t *x = a.text ? a.text : L"";
    const wchar_t *y = b.text ? b.text : L"";
    for (; *x && *x == *y; ++x, ++y) {
    }
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

StrMap::StrMap() { map_.set_deleted_key(deletedKey()); }

void StrMap::sync() {
    for (; mapped_ < strings_.size(); ++mapped_) map_[strings_[mapped_]] = unsigned(mapped_);
}

unsigned StrMap::insert(const ExtString &s, bool force, bool &inserted) {
    unsigned index = unsigned(strings_.size());
    if (force) {
        // Appended without a look-up; the hash table takes it at the next one.
        strings_.push_back(s);
        inserted = true;
        return index;
    }
    sync();
    auto it = map_.find(s);
    if (it != map_.end()) {
        inserted = false;
        return it->second;
    }
    map_[s] = index;
    strings_.push_back(s);
    mapped_ = strings_.size();
    inserted = true;
    return index;
}

void StrMap::insert(unsigned index, const ExtString &s) {
    if (index >= strings_.size()) return;
    sync();
    for (auto it = map_.begin(); it != map_.end(); ++it)
        if (it->second == index) {
            map_.erase(it);
            break;
        }
    strings_[index] = s;
    map_[s] = index;
}

void StrMap::reset() {
    strings_.clear();
    map_.clear();
    mapped_ = 0;
}

} // namespace tabrix
