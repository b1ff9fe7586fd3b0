// The kinds of stored picture: their blip record types and instances, the
// type code of the store entry and of getPicture, recognition of image
// bytes and file names, the header stripping before storage, and the size
// of the image in pixels.
#ifndef TABRIX_OFFICEART_PICTURE_KIND_H
#define TABRIX_OFFICEART_PICTURE_KIND_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tabrix {

enum class BlipKind { EMF, WMF, PICT, JPEG, PNG, DIB, TIFF };

struct BlipKindInfo {
    BlipKind kind;
    uint16_t type;
    uint16_t oneUid, twoUid;       // instances with one digest and with two
    uint16_t oneUidAlt, twoUidAlt; // the CMYK JPEG pair, 0 for others
    uint8_t fbseType;
    int pictureCode; // what getPicture answers
    bool metafile;
    const char *name;
};

const BlipKindInfo &blipKindInfo(BlipKind kind);
// The kind of a blip record type 0xF01A to 0xF020.
BlipKind blipKindOfType(uint16_t type);

// By magic bytes; throws "unknown picture format".  Any FF D8 FF is a JPEG.
BlipKind sniffPicture(const uint8_t *data, size_t size);
// By the last four characters of a file name, exact case; throws
// "unknown picture format".
BlipKind pictureKindOfName(const std::string &path);
// Drops a placeable metafile header and a bitmap file header.
void preparePictureBytes(std::vector<uint8_t> &bytes);

struct PictureSize {
    int width = 0, height = 0;
};
// The image's size by its kind; a JPEG without a leading FF D8 throws
// "invalid jpg file".
PictureSize pictureSizeOf(BlipKind kind, const std::vector<uint8_t> &image);

} // namespace tabrix

#endif
