// Lbl (id 24): a defined name.  The fields in file order, the name's text
// (for a built-in name, one character holding its code), and the formula
// kept as its bytes: `cce` bytes of tokens and whatever data the record
// carries behind them, so that it is written back unchanged.
#ifndef TABRIX_BIFF_RECORDS_LBL_H
#define TABRIX_BIFF_RECORDS_LBL_H

#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include "biff/strings/xl_unicode_string_no_cch.h"
#include "book/mem_pool.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tabrix {

class Lbl : public Record<Lbl> {
public:
    static constexpr uint16_t kId = rid::Lbl;
    static constexpr const char *kName = "Lbl";
    static constexpr uint16_t kFixedSize = 14;
    static constexpr uint16_t kHiddenBit = 0x0001;
    static constexpr uint16_t kBuiltinBit = 0x0020;

    uint16_t flags = 0;
    uint8_t chKey = 0;
    uint8_t cch = 0;
    uint16_t cce = 0;
    uint16_t reserved = 0;
    uint16_t itab = 0; // 0: the whole book, else the sheet's index + 1
    uint8_t reserved4[4] = {0, 0, 0, 0};
    XLUnicodeStringNoCch name;
    std::vector<uint8_t> rgce;  // the formula's tokens, `cce` bytes
    std::vector<uint8_t> extra; // the record's bytes behind the tokens

    Lbl() { name.cch = 0; }
    void reset() { *this = Lbl(); }

    bool builtin() const { return (flags & kBuiltinBit) != 0; }
    void setBuiltin(bool on) { flags = uint16_t(on ? flags | kBuiltinBit : flags & ~kBuiltinBit); }
    bool hidden() const { return (flags & kHiddenBit) != 0; }
    void setHidden(bool on) { flags = uint16_t(on ? flags | kHiddenBit : flags & ~kHiddenBit); }

    // The text of a built-in name's code, or null for an unknown code.
    static const wchar_t *builtinName(unsigned code);
    // The code of a built-in name's text (any case), or -1.
    static int builtinCode(const wchar_t *text);

    // The name as text: a built-in name's code turned into its text.
    std::wstring nameText() const;
    // Whether this is the name `text`, without regard to case.
    bool isContains(const wchar_t *text) const;
    // Sets a user name, or a built-in one when `text` is a built-in text.
    void setName(const wchar_t *text, MemPool &pool);

    // 14 + the name's bytes + the formula's bytes.
    uint32_t size() const;

    // `old`: a file of the 5.0 format, whose name has no flags byte.
    void read(XlsRecords &xls, uint16_t size, MemPool &pool, bool old);
    // A record above 8224 bytes runs on in CONTINUE records.
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;

private:
    // The characters the name holds: what `cch` is written as.
    uint8_t nameLength() const;
};

} // namespace tabrix

#endif
