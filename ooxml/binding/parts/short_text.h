// A text that keeps up to 15 bytes in place and longer ones on the heap:
// half the size of a std::string, for the values of millions of cells,
// which are mostly short numbers and string indexes.
#pragma once

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace binding {

class c_short_text {
public:
    c_short_text() { _b[15] = 0; }
    c_short_text(const c_short_text &o) : c_short_text() { assign(o.view()); }
    c_short_text(c_short_text &&o) noexcept {
        std::memcpy(_b, o._b, sizeof _b);
        o._b[15] = 0;
    }
    c_short_text &operator=(const c_short_text &o) {
        if (this != &o) assign(o.view());
        return *this;
    }
    c_short_text &operator=(c_short_text &&o) noexcept {
        if (this != &o) {
            clear();
            std::memcpy(_b, o._b, sizeof _b);
            o._b[15] = 0;
        }
        return *this;
    }
    ~c_short_text() { clear(); }

    std::string_view view() const {
        return heap() ? std::string_view(heap_data(), heap_size())
                      : std::string_view(reinterpret_cast<const char *>(_b), _b[15]);
    }
    bool empty() const { return view().empty(); }
    void clear() {
        if (heap()) delete[] heap_data();
        _b[15] = 0;
    }
    void assign(std::string_view s) {
        if (s.size() <= kInline) {
            unsigned char keep[kInline];
            std::memcpy(keep, s.data(), s.size()); // `s` may live in this text
            clear();
            std::memcpy(_b, keep, s.size());
            _b[15] = static_cast<unsigned char>(s.size());
            return;
        }
        if (s.size() > UINT32_MAX) throw std::length_error("value text too long");
        char *p = new char[s.size()];
        std::memcpy(p, s.data(), s.size());
        clear();
        const uint32_t n = static_cast<uint32_t>(s.size());
        std::memcpy(_b, &p, sizeof p);
        std::memcpy(_b + 8, &n, sizeof n);
        _b[15] = kHeap;
    }

private:
    static constexpr size_t kInline = 15;
    static constexpr unsigned char kHeap = 0xFF;
    bool heap() const { return _b[15] == kHeap; }
    char *heap_data() const {
        char *p;
        std::memcpy(&p, _b, sizeof p);
        return p;
    }
    uint32_t heap_size() const {
        uint32_t n;
        std::memcpy(&n, _b + 8, sizeof n);
        return n;
    }

    // In place: the bytes, and their count in the last byte.  On the heap:
    // the pointer, the size in bytes 8-11, and kHeap in the last byte.
    alignas(8) unsigned char _b[16];
};

} // namespace binding
