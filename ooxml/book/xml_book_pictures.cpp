// The pictures of an Open XML book: image parts kept byte for byte.
#include <fstream>
#include <iterator>
#include <memory>

#include "book/tberror.h"
#include "book/text_result.h"
#include "officeart/picture_kind.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/package/file_util.h"

namespace tabrix {

namespace {

struct ImageKind {
    const wchar_t *extension;
    const wchar_t *contentType;
    BlipKind kind;
};

const ImageKind kImageKinds[] = {
    {L"png", L"image/png", BlipKind::PNG},    {L"jpg", L"image/jpeg", BlipKind::JPEG},
    {L"wmf", L"image/x-wmf", BlipKind::WMF},  {L"bmp", L"image/bmp", BlipKind::DIB},
    {L"emf", L"image/x-emf", BlipKind::EMF},  {L"jpeg", L"image/jpeg", BlipKind::JPEG},
    {L"jpe", L"image/jpeg", BlipKind::JPEG},  {L"dib", L"image/bmp", BlipKind::DIB},
    {L"tif", L"image/tiff", BlipKind::TIFF},  {L"tiff", L"image/tiff", BlipKind::TIFF},
    {L"pict", L"image/pict", BlipKind::PICT},
};
const int kUnknownPicture = 255;

// The index into kImageKinds of a picture's bytes; -1 when unknown.  The
// first hit wins.
int sniff(const unsigned char *b, size_t size) {
    if (size <= 4) return -1;
    if (b[0] == 137 && b[1] == 'P' && b[2] == 'N' && b[3] == 'G') return 0;
    if (b[0] == 255 && b[1] == 216 && b[2] == 255) return 1;
    if (b[0] == 215 && b[1] == 205 && b[2] == 198 && b[3] == 154) return 2;
    if ((b[0] == 'B' && b[1] == 'M') || b[0] == 12 || b[0] == 40 || b[0] == 64 || b[0] == 108 ||
        b[0] == 124)
        return 3;
    if (b[0] == 1 && b[1] == 0) return 4;
    return -1;
}

int pictureCodeOfName(const std::wstring &name) {
    const std::wstring ext = FileUtil::getExtension(name);
    for (const ImageKind &k : kImageKinds)
        if (sicmp(ext, k.extension) == 0) return blipKindInfo(k.kind).pictureCode;
    return kUnknownPicture;
}

} // namespace

template <class C>
void XMLBookImplT<C>::addPictureInfo(const std::wstring &path, const BinaryFile *file) {
    _pictures.push_back({path, pictureCodeOfName(path), file});
}

template <class C> int XMLBookImplT<C>::getPicture(int index, const char **data, unsigned *size) {
    if (data) *data = nullptr;
    if (size) *size = 0;
    if (index < 0 || size_t(index) >= _pictures.size()) {
        _message.assign("index is out of range");
        return kUnknownPicture;
    }
    const PicInfo &p = _pictures[size_t(index)];
    if (data) *data = p.file->data().data();
    if (size) *size = unsigned(p.file->data().size());
    return p.type;
}

template <class C> int XMLBookImplT<C>::addPicture(const C *filename) {
    std::wstring wide;
    if (!filename || !wideText(filename, _utf8, wide)) throw tberror("can't open file");
    std::ifstream in(packageNarrow(wide), std::ios::binary);
    if (!in) throw tberror("can't open file");
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) throw tberror("can't open file");
    return addPicture2(bytes.data(), unsigned(bytes.size()));
}

template <class C> int XMLBookImplT<C>::addPicture2(const char *data, unsigned size) {
    const int kind = data ? sniff(reinterpret_cast<const unsigned char *>(data), size) : -1;
    if (kind < 0) throw tberror("unknown picture format");
    const ImageKind &k = kImageKinds[kind];
    auto file = std::make_unique<BinaryFile>(data, size);
    const std::wstring dir = FileUtil::getDir(_workbookPart);
    const std::wstring name = addFile(file.get(), dir + L"/media/image", k.extension);
    const BinaryFile *stored = file.release();
    if (_contentTypes->contentType(name) != k.contentType)
        _contentTypes->addDefault(k.extension, k.contentType);
    _pictures.push_back({name, blipKindInfo(k.kind).pictureCode, stored});
    return int(_pictures.size() - 1);
}

#define TABRIX_XML_BOOK_PICTURES(C)                                                                \
    template void XMLBookImplT<C>::addPictureInfo(const std::wstring &, const BinaryFile *);       \
    template int XMLBookImplT<C>::getPicture(int, const char **, unsigned *);                      \
    template int XMLBookImplT<C>::addPicture(const C *);                                           \
    template int XMLBookImplT<C>::addPicture2(const char *, unsigned);
TABRIX_XML_BOOK_PICTURES(char)
TABRIX_XML_BOOK_PICTURES(wchar_t)
#undef TABRIX_XML_BOOK_PICTURES

} // namespace tabrix
