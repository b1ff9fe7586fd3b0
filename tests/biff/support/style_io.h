// Helpers for the styling tests: records written into a new container and
// read back one at a time through the record layer.
#ifndef TABRIX_TESTS_BIFF_STYLE_IO_H
#define TABRIX_TESTS_BIFF_STYLE_IO_H
#include "biff/xls.h"
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>
namespace bifftest {
using StyleRecords = std::vector<std::pair<uint16_t, std::vector<uint8_t>>>;
// The records that `body` writes, as (id, data).
StyleRecords styleRecords(const std::function<void(tabrix::Xls<char> &)> &body);
// Writes with `body`, then hands the first record's header to `reader` and
// answers the id of the record that follows it (0 at the end).
uint16_t styleReadBack(const std::function<void(tabrix::Xls<char> &)> &body,
                       const std::function<void(tabrix::Xls<char> &, uint16_t size)> &reader);
// A workbook stream of raw records, first one read by `reader`; answers the
// reader's error message or "".
std::string styleReadError(const StyleRecords &records,
                           const std::function<void(tabrix::Xls<char> &, uint16_t size)> &reader);
} // namespace bifftest
#endif
