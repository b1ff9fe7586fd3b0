// Formula (id 6): one formula cell with its cached result.  The parsed
// expression (cce, rgce and the extra data behind it) is kept as raw bytes.
#ifndef TABRIX_BIFF_RECORDS_FORMULA_H
#define TABRIX_BIFF_RECORDS_FORMULA_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include <cstdint>
#include <vector>
namespace tabrix {
class Formula : public Record<Formula> {
public:
    static constexpr uint16_t kId = rid::Formula;
    static constexpr const char *kName = "Formula";
    // Result kinds in the first byte of a non-numeric cached value.
    enum Result : uint8_t { kString = 0, kBool = 1, kError = 2, kBlank = 3 };

    uint16_t rw = 0, colIndex = 0, xf = 15;
    uint8_t value[8] = {0, 0, 0, 0, 0, 0, 0, 0};
    uint16_t grbit = 0;
    uint32_t chn = 0;
    // cce, the tokens and their extra data, as stored.
    std::vector<uint8_t> expression;

    void reset() { *this = Formula(); }
    int row() const { return rw; }
    int col() const { return colIndex; }
    uint16_t XFIndex() const { return xf; }

    // A number when the last 16-bit word of the cached value is not 0xFFFF.
    bool isNumber() const { return value[6] != 0xFF || value[7] != 0xFF; }
    double doubleValue() const;
    void setDoubleValue(double v);
    // Kind of a non-numeric result; only when !isNumber().
    uint8_t resultKind() const { return value[0]; }
    void setResult(uint8_t kind, uint8_t byte);
    // An empty string result: the text lies in the String record behind.
    bool stringValue() const { return !isNumber() && value[0] == kString; }
    bool boolValue() const { return value[2] != 0; }
    uint8_t errorValue() const { return value[2]; }
    // CellType of the cached result: 1 number, 2 string, 3 boolean, 5 error,
    // 4 blank, 0 for an unknown kind.
    int cellType() const;

    // The expression is a single reference to the anchor of a shared or
    // array formula (PtgExp); its cell through the arguments.
    bool isExp(int *anchorRow = nullptr, int *anchorCol = nullptr) const;
    void setExp(int anchorRow, int anchorCol);

    // A formula just written: these tokens, a cached result of 0 and the
    // flag that asks the reader to calculate the cell.
    void setTokens(const std::vector<uint8_t> &rgce);
    // The tokens behind the count, and their number.
    const uint8_t *tokens(size_t &count) const;

    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Formula>::read;
};
} // namespace tabrix
#endif
