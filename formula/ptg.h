// The token model of stored formulas: opcodes, the length of each token's
// payload, the error constants and the cell and area references with their
// relative flags.  Multi-byte values are little-endian.
#ifndef TABRIX_FORMULA_PTG_H
#define TABRIX_FORMULA_PTG_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tabrix {

namespace ptg {
// Tokens without operand class.
constexpr uint8_t kExp = 0x01, kTbl = 0x02, kAdd = 0x03, kSub = 0x04, kMul = 0x05, kDiv = 0x06,
                  kPower = 0x07, kConcat = 0x08, kLt = 0x09, kLe = 0x0A, kEq = 0x0B, kGe = 0x0C,
                  kGt = 0x0D, kNe = 0x0E, kIsect = 0x0F, kUnion = 0x10, kRange = 0x11,
                  kUplus = 0x12, kUminus = 0x13, kPercent = 0x14, kParen = 0x15, kMissArg = 0x16,
                  kStr = 0x17, kExtend = 0x18, kAttr = 0x19, kErr = 0x1C, kBool = 0x1D, kInt = 0x1E,
                  kNum = 0x1F;
// Operand tokens in their reference class; value adds 0x20, array 0x40.
constexpr uint8_t kArray = 0x20, kFunc = 0x21, kFuncVar = 0x22, kName = 0x23, kRef = 0x24,
                  kArea = 0x25, kMemArea = 0x26, kMemErr = 0x27, kMemNoMem = 0x28, kMemFunc = 0x29,
                  kRefErr = 0x2A, kAreaErr = 0x2B, kRefN = 0x2C, kAreaN = 0x2D, kNameX = 0x39,
                  kRef3d = 0x3A, kArea3d = 0x3B, kRefErr3d = 0x3C, kAreaErr3d = 0x3D;
constexpr uint8_t kValueClass = 0x20, kArrayClass = 0x40;
// Attribute subtypes written by the parser.
constexpr uint8_t kAttrVolatile = 0x01, kAttrChoose = 0x04, kAttrSum = 0x10;

// The opcode of an operand token in the reference class (0x20-0x3F);
// other opcodes (0x80 and up among them) come back unchanged.
inline uint8_t base(uint8_t op) {
    return op >= 0x20 && op < 0x80 ? uint8_t((op & 0x1F) | 0x20) : op;
}

// Payload length of the token that starts at `p` (at most `n` bytes
// there), opcode excluded.  Throws "can't recognize formula block: unknown
// ptg", "unknown Ptg 0x18", "unknown Ptg 0x19", and "GetFormula move1 error"
// when a length the token announces lies beyond `n`.
size_t payloadLength(const uint8_t *p, size_t n);

// Text of an error code ("#N/A" ...), null for an unknown code.
const wchar_t *errorText(uint8_t code);
// Code of an error text, -1 when it is none.
int errorCode(const wchar_t *text, size_t len);
} // namespace ptg

// A cell in a token: row, then a column word with bit 14 column-relative
// and bit 15 row-relative.
class RgceLoc {
public:
    RgceLoc() = default;
    // Fails with "RgceLoc: col must be less than 256" for a column of 256
    // or more.
    RgceLoc(int row, int col, bool rowRelative, bool colRelative);
    int row() const { return _row; }
    int col() const { return _col & 0x3FFF; }
    bool rowRelative() const { return (_col & 0x8000) != 0; }
    bool colRelative() const { return (_col & 0x4000) != 0; }
    // Four bytes off `p`.
    void read(const uint8_t *p);
    void write(std::vector<uint8_t> &out) const;

private:
    uint16_t _row = 0, _col = 0;
};

// An area in a token: first row, last row, first column word, last column
// word, the column words with the flags of RgceLoc.
class RgceArea {
public:
    RgceArea() = default;
    RgceArea(int rowFirst, int rowLast, int colFirst, int colLast, bool rowFirstRelative,
             bool rowLastRelative, bool colFirstRelative, bool colLastRelative);
    int rowFirst() const { return _rowFirst; }
    int rowLast() const { return _rowLast; }
    int colFirst() const { return _colFirst & 0x3FFF; }
    int colLast() const { return _colLast & 0x3FFF; }
    bool rowFirstRelative() const { return (_colFirst & 0x8000) != 0; }
    bool colFirstRelative() const { return (_colFirst & 0x4000) != 0; }
    bool rowLastRelative() const { return (_colLast & 0x8000) != 0; }
    bool colLastRelative() const { return (_colLast & 0x4000) != 0; }
    // Eight bytes off `p`.
    void read(const uint8_t *p);
    void write(std::vector<uint8_t> &out) const;

private:
    uint16_t _rowFirst = 0, _rowLast = 0, _colFirst = 0, _colLast = 0;
};

} // namespace tabrix

#endif
