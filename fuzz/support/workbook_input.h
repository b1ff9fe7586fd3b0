// Helpers of the record fuzz targets: record bytes are built little-endian
// and wrapped in a compound file so that they are read through Xls, and
// what a target writes is collected the same way.
#ifndef TABRIX_FUZZ_WORKBOOK_INPUT_H
#define TABRIX_FUZZ_WORKBOOK_INPUT_H

#include "biff/xls.h"
#include "book/mem_pool.h"
#include "book/tberror.h"

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace fuzzinput {

inline void put16(std::vector<uint8_t> &v, uint16_t x) {
    v.push_back(uint8_t(x));
    v.push_back(uint8_t(x >> 8));
}

// The bytes of one record: id, length and at most one record's worth of body.
inline std::vector<uint8_t> record(uint16_t id, const uint8_t *body, size_t n) {
    if (n > 8224) n = 8224;
    std::vector<uint8_t> v;
    put16(v, id);
    put16(v, uint16_t(n));
    v.insert(v.end(), body, body + n);
    return v;
}

// The compound file that `write` fills through an Xls writer.
template <class Write> std::string written(Write write) {
    std::stringstream ss;
    tabrix::Xls<char> x;
    x.reset(true);
    x.setStreamPtr(&ss);
    x.writeHeader();
    write(x);
    x.close();
    return ss.str();
}

// A compound file whose workbook stream is `wb`.
inline std::string container(const std::vector<uint8_t> &wb) {
    return written([&](tabrix::Xls<char> &x) {
        if (!wb.empty()) x.write(wb.data(), wb.size());
    });
}

// Positions `x` at the first record of the workbook stream held by `ss`.
inline void openStream(tabrix::Xls<char> &x, std::stringstream &ss) {
    x.setStreamPtr(&ss);
    x.calcFileSize();
    unsigned total = 0;
    x.readHeader(total);
}

// Reads the compound file `file` through `read`; false when it throws the
// library's error.
template <class Read> bool readFile(const std::string &file, Read read) {
    try {
        std::stringstream ss(file);
        tabrix::Xls<char> x;
        openStream(x, ss);
        read(x);
        return true;
    } catch (const tabrix::tberror &) {
        return false;
    }
}

// One pool for a target's records, emptied by the target for each input.
inline tabrix::MemPool &pool() {
    static tabrix::MemPool p;
    return p;
}

} // namespace fuzzinput

#endif
