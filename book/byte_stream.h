// Little-endian helpers over byte queues (formula token streams) and over
// plain iostreams.
#ifndef TABRIX_BYTE_STREAM_H
#define TABRIX_BYTE_STREAM_H

#include "book/tberror.h"

#include <cstdint>
#include <deque>
#include <iostream>

namespace tabrix {

struct ByteStream {
    // A short queue gives 0 for the missing bytes.
    static uint16_t popInt16(std::deque<unsigned char> &q) {
        return uint16_t(pop(q) | (pop(q) << 8));
    }
    static uint32_t popInt32(std::deque<unsigned char> &q) {
        uint32_t v = 0;
        for (int i = 0; i < 4; ++i) v |= uint32_t(pop(q)) << (8 * i);
        return v;
    }
    static void pushInt16(std::deque<unsigned char> &q, uint16_t v) {
        q.push_back(uint8_t(v));
        q.push_back(uint8_t(v >> 8));
    }

private:
    static unsigned pop(std::deque<unsigned char> &q) {
        if (q.empty()) return 0;
        unsigned c = q.front();
        q.pop_front();
        return c;
    }
};

struct IOCtrl {
    // Little-endian integers straight on a stream; a short read leaves the
    // stream failed and `value` holding what was read.
    template <class T> static void read(std::istream &s, T &value) {
        unsigned char b[sizeof(T)] = {};
        s.read(reinterpret_cast<char *>(b), sizeof(T));
        value = 0;
        for (size_t i = 0; i < sizeof(T); ++i) value = T(value | (T(b[i]) << (8 * i)));
    }
    template <class T> static void write(std::ostream &s, T value) {
        unsigned char b[sizeof(T)];
        for (size_t i = 0; i < sizeof(T); ++i) b[i] = static_cast<unsigned char>(value >> (8 * i));
        s.write(reinterpret_cast<const char *>(b), sizeof(T));
        if (!s) throw tberror("stream error, perhaps it's too small writing buffer");
    }
};

} // namespace tabrix

#endif
