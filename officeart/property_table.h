// Shape properties: the six-byte entries (property id with its blip and
// complex flags, then a signed value) and the block of complex bytes that
// follows all entries on file; the record that holds them counts them in
// its header's instance.
#ifndef TABRIX_OFFICEART_PROPERTY_TABLE_H
#define TABRIX_OFFICEART_PROPERTY_TABLE_H

#include "officeart/record.h"

#include <cstdint>
#include <vector>

namespace tabrix {

class OfficeArtFOPTEOPID {
public:
    OfficeArtFOPTEOPID() = default;
    // Throws "error in OfficeArtFOPTEOPID" for an id of 16384 or more.
    OfficeArtFOPTEOPID(unsigned opid, bool fBid, bool fComplex);
    explicit OfficeArtFOPTEOPID(uint16_t raw) : _raw(raw) {}
    unsigned opid() const { return _raw & 0x3FFF; }
    bool fBid() const { return (_raw & 0x4000) != 0; }
    bool fComplex() const { return (_raw & 0x8000) != 0; }
    uint16_t raw() const { return _raw; }

private:
    uint16_t _raw = 0;
};

struct OfficeArtFOPTE {
    OfficeArtFOPTEOPID id;
    int32_t op = 0;
};

class OfficeArtRGFOPTE {
public:
    OfficeArtRGFOPTE() = default;
    // The table of a picture shape: the blip id and the fixed picture name.
    explicit OfficeArtRGFOPTE(int32_t pictureId);

    // count entries, then the complex bytes up to bodyLength.
    void read(ByteCursor &in, unsigned count, uint32_t bodyLength);
    void write(std::vector<uint8_t> &out) const;
    uint32_t size() const { return uint32_t(6 * _entries.size() + _complex.size()); }
    void clear() {
        _entries.clear();
        _complex.clear();
    }
    // Returns 6 plus the number of complex bytes.
    uint32_t addProperty(const OfficeArtFOPTE &entry, const std::vector<uint8_t> &complexBytes);

    const std::vector<OfficeArtFOPTE> &entries() const { return _entries; }
    const std::vector<uint8_t> &complexBytes() const { return _complex; }

private:
    std::vector<OfficeArtFOPTE> _entries;
    std::vector<uint8_t> _complex;
};

// The property records 0xF00B, 0xF121 and 0xF122.
class OfficeArtFOPT : public OfficeArtRecordBase {
public:
    explicit OfficeArtFOPT(uint16_t type);
    std::unique_ptr<OfficeArtRecordBase> clone() const override;
    void readBody(ByteCursor &body) override;
    void writeBody(std::vector<uint8_t> &out) const override { _table.write(out); }
    uint32_t bodySize() const override { return _table.size(); }
    const char *name() const override { return "OfficeArtRGFOPTE"; }

    void addProperty(const OfficeArtFOPTE &entry, const std::vector<uint8_t> &complexBytes = {});
    void clearProperties();
    const OfficeArtRGFOPTE &table() const { return _table; }

private:
    OfficeArtRGFOPTE _table;
};

} // namespace tabrix

#endif
