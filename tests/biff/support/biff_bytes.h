// Byte-level helpers for the binary workbook tests: little-endian fields,
// hand-made records, containers written around a workbook stream and read
// back, and the message of a failing call.
#ifndef TABRIX_TESTS_BIFF_BIFF_BYTES_H
#define TABRIX_TESTS_BIFF_BIFF_BYTES_H

#include "biff/xls.h"

#include <cstdint>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace bifftest {

void put16(std::vector<uint8_t> &v, uint16_t x);
void put32(std::vector<uint8_t> &v, uint32_t x);

// Appends a record of `id` holding `data`.
void record(std::vector<uint8_t> &v, uint16_t id, const std::vector<uint8_t> &data);

// A new container whose workbook stream is what `body` writes.
std::string writeBook(const std::function<void(tabrix::Xls<char> &)> &body);
// A new container whose workbook stream is exactly `wb`.
std::string rawBook(const std::vector<uint8_t> &wb);

// The message of the tberror `f` throws, or "" when it throws none.
std::string errorOf(const std::function<void()> &f);

// A container opened for reading its workbook stream.
struct Opened {
    std::stringstream ss;
    tabrix::Xls<char> x;
    explicit Opened(const std::string &file);
    std::vector<uint8_t> bytes(size_t n);
    // Records up to the first id 0 or the end: (id, data).
    std::vector<std::pair<uint16_t, std::vector<uint8_t>>> records();
};

} // namespace bifftest

#endif
