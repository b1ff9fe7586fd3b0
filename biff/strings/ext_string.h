// ExtString: one entry of the shared string table, with optional
// formatting runs and opaque phonetic data; reads and writes across
// CONTINUE records, where character data restarts with a flags byte.
#ifndef TABRIX_BIFF_STRINGS_EXT_STRING_H
#define TABRIX_BIFF_STRINGS_EXT_STRING_H

#include "biff/xls.h"
#include "book/mem_pool.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace tabrix {

struct FormatRun {
    uint16_t ich = 0;
    uint16_t ifnt = 0;
};

class ExtStringPhonetic : public BaseClass {
public:
    int32_t size = 0;
    std::vector<uint8_t> data;
};

class ExtStringFormat : public BaseClass {
public:
    std::vector<FormatRun> runs;
    ExtStringPhonetic *phonetic = nullptr;
};

// (stream position of a record's size field, bytes in that record so far)
typedef std::vector<std::pair<uint32_t, uint32_t>> PatchList;

class ExtString {
public:
    static const uint8_t kHighByte = 0x01;
    static const uint8_t kPhonetic = 0x04;
    static const uint8_t kRichText = 0x08;

    uint8_t flags = kHighByte;
    const wchar_t *text = nullptr; // terminated, pool-owned
    ExtStringFormat *format = nullptr;
    // The text's hash once the string table has computed it, else 0; kept
    // so that look-ups and the table's growth never walk stored texts.
    uint64_t hash = 0;

    uint16_t cch() const;
    // A pool copy of `s` with flags 0x01 and no runs.
    void setString(const wchar_t *s, MemPool &pool);

    // The counter is 32 bits; a stream that ends or a next record that is not
    // a CONTINUE cuts the string short without failing: answers false then.
    bool read(XlsRecords &xls, uint32_t &remaining, MemPool &pool);
    void write(XlsRecords &xls, uint32_t &remaining, PatchList &patches) const;
};

} // namespace tabrix

#endif
