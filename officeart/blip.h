// A picture's record: its digest (or two), then for a bitmap a tag byte and
// for a metafile a 34-byte metafile header, then the image bytes, kept as
// stored (a compressed metafile stays compressed).
#ifndef TABRIX_OFFICEART_BLIP_H
#define TABRIX_OFFICEART_BLIP_H

#include "officeart/picture_kind.h"
#include "officeart/record.h"

namespace tabrix {

class OfficeArtBlip : public OfficeArtRecordBase {
public:
    explicit OfficeArtBlip(BlipKind kind) : _kind(kind) {}
    // A new blip of prepared image bytes, with its digest and header.
    OfficeArtBlip(BlipKind kind, std::vector<uint8_t> image);

    std::unique_ptr<OfficeArtRecordBase> clone() const override;
    void readBody(ByteCursor &body) override;
    void writeBody(std::vector<uint8_t> &out) const override;
    uint32_t bodySize() const override { return uint32_t(_head.size() + _image.size()); }
    int width() const override { return _size.width; }
    int height() const override { return _size.height; }
    const char *name() const override { return blipKindInfo(_kind).name; }

    // From the instance; throws "error in record OfficeArtBlip<kind>" for
    // an instance of neither form.
    bool isOneUid() const;
    BlipKind kind() const { return _kind; }
    const std::vector<uint8_t> &image() const { return _image; }
    // The first digest.
    const uint8_t *digest() const { return _head.data(); }

private:
    size_t headSize(bool oneUid) const;

    BlipKind _kind;
    std::vector<uint8_t> _head; // digests, then the tag or the metafile header
    std::vector<uint8_t> _image;
    PictureSize _size;
};

} // namespace tabrix

#endif
