// A picture's entry in the store: kind, digest, size and reference count,
// an optional UTF-16 name, and the blip record it holds behind its fields.
#ifndef TABRIX_OFFICEART_FBSE_H
#define TABRIX_OFFICEART_FBSE_H

#include "officeart/blip.h"

namespace tabrix {

class OfficeArtFBSE : public OfficeArtRecordBase {
public:
    static const size_t kFixed = 36;

    explicit OfficeArtFBSE(int depth = 0) : _depth(depth) {}
    // A new entry holding blip.
    explicit OfficeArtFBSE(std::unique_ptr<OfficeArtBlip> blip);
    OfficeArtFBSE(const OfficeArtFBSE &other);

    std::unique_ptr<OfficeArtRecordBase> clone() const override;
    void readBody(ByteCursor &body) override;
    void writeBody(std::vector<uint8_t> &out) const override;
    uint32_t bodySize() const override;
    const char *name() const override { return "OfficeArtFBSE"; }
    int width() const override;
    int height() const override;

    // The blip held, or nullptr (an empty or delayed entry).
    const OfficeArtBlip *blip() const;
    uint32_t refCount() const { return _cRef; }
    void addRef() {
        ++_cRef;
        _dirty = true;
    }

private:
    int _depth = 0;
    uint8_t _btWin32 = 0, _btMacOS = 0;
    uint8_t _uid[16] = {};
    uint16_t _tag = 0x00FF;
    uint32_t _blipSize = 0, _cRef = 0, _foDelay = 0;
    uint8_t _unused1 = 0, _cbName = 0, _unused2 = 0, _unused3 = 0;
    std::vector<uint8_t> _name;
    std::vector<std::unique_ptr<OfficeArtRecordBase>> _embedded;
    std::vector<uint8_t> _tail;
};

} // namespace tabrix

#endif
