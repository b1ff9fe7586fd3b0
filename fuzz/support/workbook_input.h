// Helpers of the record fuzz targets: record bytes are built little-endian
// and wrapped in a compound file so that they are read through Xls.
#ifndef TABRIX_FUZZ_WORKBOOK_INPUT_H
#define TABRIX_FUZZ_WORKBOOK_INPUT_H

#include "biff/xls.h"

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace fuzzinput {

inline void put16(std::vector<uint8_t> &v, uint16_t x) {
    v.push_back(uint8_t(x));
    v.push_back(uint8_t(x >> 8));
}

// A compound file whose workbook stream is `wb`.
inline std::string container(const std::vector<uint8_t> &wb) {
    std::stringstream ss;
    tabrix::Xls<char> x;
    x.reset(true);
    x.setStreamPtr(&ss);
    x.writeHeader();
    if (!wb.empty()) x.write(wb.data(), wb.size());
    x.close();
    return ss.str();
}

} // namespace fuzzinput

#endif
