// Pictures on an Open XML sheet: a two-cell anchor in the sheet's drawing
// part for each placed picture, whose relation names an image part of the
// book.  The drawing and its relationships are made on first use.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <vector>

#include "book/tberror.h"
#include "book/units.h"
#include "ooxml/binding/parts/worksheet_facades.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/drawing/drawing.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/package_names.h"
#include "ooxml/sheet/xml_sheet_impl.h"
#include "officeart/picture_kind.h"

namespace tabrix {

namespace {

const int kLastCol = 16383;
const int kLastRow = 1048575;

double attributeNumber(const binding::c_node *n, const char *name, double fallback) {
    const std::string *v = n ? n->attribute(name) : nullptr;
    return v ? std::strtod(v->c_str(), nullptr) : fallback;
}

// Pixel sizes of the sheet's cells, from its columns, rows and format
// defaults, read once so that a walk over many cells stays cheap.
class CellPixels {
public:
    CellPixels(binding::c_node &worksheet, int maxDigWidth) {
        const binding::c_node *format = worksheet.child("sheetFormatPr");
        if (format && format->attribute("defaultColWidth"))
            _defaultCol = ExcelUnitsConverter::xmlWidthToPx(
                attributeNumber(format, "defaultColWidth", 0), maxDigWidth);
        else
            _defaultCol = ExcelUnitsConverter::defaultColWidthPx(
                int(attributeNumber(format, "baseColWidth", 8)), maxDigWidth);
        _defaultRow = pixels(attributeNumber(format, "defaultRowHeight", 15.0));
        if (binding::c_node *cols = worksheet.child("cols")) {
            binding::c_cols list(cols);
            for (size_t i = 0; i < list.size_col(); ++i) {
                binding::c_col c = list.get_col(i);
                if (!c.get_hidden() && !c.isset_width()) continue;
                const int px = c.get_hidden()
                                   ? 0
                                   : ExcelUnitsConverter::xmlWidthToPx(c.get_width(), maxDigWidth);
                _cols.push_back({c.get_min(), c.get_max(), px});
            }
        }
        if (binding::c_node *data = worksheet.child("sheetData"))
            for (const binding::c_child &child : data->_children) {
                if (child.kind != binding::K_HAND) continue;
                binding::c_row r(static_cast<binding::c_row_data *>(child.hand.get()));
                if (r.get_hidden())
                    _rows[r.get_r()] = 0;
                else if (r.isset_ht())
                    _rows[r.get_r()] = pixels(r.get_ht());
            }
    }

    // The first span naming the column decides.
    int col(int col) const {
        const uint32_t number = uint32_t(col) + 1;
        for (const Span &s : _cols)
            if (number >= s.min && number <= s.max) return s.px;
        return _defaultCol;
    }

    int row(int row) const {
        auto it = _rows.find(uint32_t(row) + 1);
        return it == _rows.end() ? _defaultRow : it->second;
    }

private:
    struct Span {
        uint32_t min, max;
        int px;
    };
    static int pixels(double points) { return int(points * 20.0 + 0.5) / 15; }

    std::vector<Span> _cols;
    std::map<uint32_t, int> _rows; // by one-based row number
    int _defaultCol = 64, _defaultRow = 20;
};

// Walks `length` pixels from `first` over sizes `size(i)`: the cell where
// they end and what is left of them there.
template <class Size> void walk(int first, int last, int &length, int &at, Size size) {
    at = first;
    for (int px = size(at); length >= px && at < last; px = size(at)) {
        length -= px;
        ++at;
    }
}

// The target of `part` as seen from `source` ("../media/image1.png").
std::wstring relativeTarget(const std::wstring &source, const std::wstring &part) {
    std::wstring from = FileUtil::getDir(source) + L"/";
    std::wstring up;
    while (!from.empty() && part.compare(0, from.size(), from) != 0) {
        from.pop_back();
        const size_t slash = from.rfind(L'/');
        from.erase(slash == std::wstring::npos ? 0 : slash + 1);
        up += L"../";
    }
    return up + part.substr(from.size());
}

// The picture's size in pixels, by its bytes.
PictureSize imageSize(const BinaryFile &file) {
    const std::vector<char> &d = file.data();
    try {
        const BlipKind kind = sniffPicture(reinterpret_cast<const uint8_t *>(d.data()), d.size());
        size_t skip = 0;
        if (kind == BlipKind::DIB && d.size() > 14 && d[0] == 'B' && d[1] == 'M') skip = 14;
        const std::vector<uint8_t> bytes(d.begin() + std::ptrdiff_t(skip), d.end());
        if (bytes.size() < 24) return PictureSize();
        PictureSize s = pictureSizeOf(kind, bytes);
        s.height = std::abs(s.height); // a bottom-up bitmap
        return s;
    } catch (const std::exception &) {
        return PictureSize();
    }
}

} // namespace

template <class C> Drawing *XMLSheetImplT<C>::getDrawing(const std::wstring &relationId) {
    Relationships *rels = _owner->getRelationships(this);
    const std::wstring target = rels ? rels->target(relationId) : std::wstring();
    if (target.empty()) return nullptr;
    return _owner->template getXml<Drawing>(
        FileUtil::resolveTarget(_owner->getFileName(this), target));
}

template <class C> int XMLSheetImplT<C>::pictureSize() {
    const binding::c_node *ref = this->document().root().child("drawing");
    Drawing *drawing =
        ref ? getDrawing(packageWide(std::string(ref->attribute_or_default("id")))) : nullptr;
    return drawing ? drawing->pictureSize() : 0;
}

template <class C>
int XMLSheetImplT<C>::getPicture(int index, int *rowTop, int *colLeft, int *rowBottom,
                                 int *colRight, int *width, int *height, int *offsetX,
                                 int *offsetY) {
    const binding::c_node *ref = this->document().root().child("drawing");
    Drawing *drawing =
        ref ? getDrawing(packageWide(std::string(ref->attribute_or_default("id")))) : nullptr;
    XString &message = _owner->message();
    if (!drawing) {
        message.assign("can't find drawing object");
        return -1;
    }
    Relationships *rels = _owner->getRelationships(drawing);
    if (!rels) {
        message.assign("can't find drawing relationships");
        return -1;
    }
    if (index < 0 || index >= drawing->pictureSize()) {
        message.assign("picture index is out of range");
        return -1;
    }
    const DrawingPicture p = drawing->picture(index);
    const std::wstring target = rels->target(packageWide(p.embed));
    const int id =
        target.empty()
            ? -1
            : _owner->picIndex(FileUtil::resolveTarget(_owner->getFileName(drawing), target));
    if (id < 0) {
        message.assign("picture not found");
        return -1;
    }
    const CellPixels px(this->document().root(), _owner->styles().maxDigWidth());
    const int x = int(p.from.colOff / kEmuPerPixel), y = int(p.from.rowOff / kEmuPerPixel);
    int w, h, lastCol, lastRow, restX, restY;
    if (p.kind == DrawingPicture::TwoCell) {
        lastCol = p.to.col;
        lastRow = p.to.row;
        restX = int(p.to.colOff / kEmuPerPixel);
        restY = int(p.to.rowOff / kEmuPerPixel);
        w = restX - x;
        for (int c = p.from.col; c < lastCol && c <= kLastCol; ++c) w += px.col(c);
        h = restY - y;
        for (int r = p.from.row; r < lastRow && r <= kLastRow; ++r) h += px.row(r);
    } else {
        // A one-cell anchor has a size of its own; its far corner is where
        // that size ends.
        w = int(p.cx / kEmuPerPixel);
        h = int(p.cy / kEmuPerPixel);
        restX = x + w;
        restY = y + h;
        walk(p.from.col, kLastCol, restX, lastCol, [&](int c) { return px.col(c); });
        walk(p.from.row, kLastRow, restY, lastRow, [&](int r) { return px.row(r); });
    }
    if (rowTop) *rowTop = p.from.row;
    if (colLeft) *colLeft = p.from.col;
    if (rowBottom) *rowBottom = lastRow;
    if (colRight) *colRight = lastCol;
    if (width) *width = w;
    if (height) *height = h;
    if (offsetX) *offsetX = x;
    if (offsetY) *offsetY = y;
    return id;
}

template <class C>
void XMLSheetImplT<C>::setPicture(int row, int col, int pictureId, double scale, int offsetX,
                                  int offsetY) {
    const PicInfo *pic = _owner->pictureInfo(pictureId);
    if (!pic) throw tberror("pictureId is out of range");
    const PictureSize size = imageSize(*pic->file);
    setPicture2(row, col, pictureId, int(size.width * scale), int(size.height * scale), offsetX,
                offsetY);
}

template <class C>
void XMLSheetImplT<C>::setPicture2(int row, int col, int pictureId, int width, int height,
                                   int offsetX, int offsetY) {
    const PicInfo *pic = _owner->pictureInfo(pictureId);
    if (!pic) throw tberror("pictureId is out of range");
    if (row < 0 || row > kLastRow || col < 0 || col > kLastCol)
        throw tberror("invalid row or column");

    // A size of -1 fills a merged area: its first cell is the top left and
    // the walk starts from its last.
    int walkRow = row, walkCol = col;
    if (width == -1 || height == -1) {
        int rowFirst = 0, rowLast = 0, colFirst = 0, colLast = 0;
        bool merged = false;
        try {
            merged = this->getMerge(row, col, &rowFirst, &rowLast, &colFirst, &colLast);
        } catch (const std::exception &) {
            merged = false; // a sheet without merges
        }
        if (merged && height == -1) row = rowFirst, walkRow = rowLast;
        if (merged && width == -1) col = colFirst, walkCol = colLast;
    }

    binding::c_node &root = this->document().root();
    const std::wstring sheetName = _owner->getFileName(this);
    binding::c_node *ref = root.child("drawing");
    Drawing *drawing = nullptr;
    std::wstring drawingName;
    if (ref) {
        drawing = getDrawing(packageWide(std::string(ref->attribute_or_default("id"))));
        if (!drawing) throw tberror("can't find drawing object");
        drawingName = _owner->getFileName(drawing);
    } else {
        auto made = std::make_unique<Drawing>(_owner->edition());
        const std::wstring base = FileUtil::getDir(FileUtil::getDir(sheetName));
        drawingName = _owner->addFile(made.get(), base + L"/drawings/drawing", L"xml");
        drawing = made.release();
        _owner->contentTypes().addOverride(drawingName, pkg::kCtDrawing);
    }

    Relationships *drawingRels = _owner->getRelationships(drawing);
    if (!drawingRels) {
        drawingRels = new Relationships();
        _owner->addPart(_owner->relationPath(drawingName, false), drawingRels);
    }
    const std::wstring imageId =
        drawingRels->addRelation(pkg::kRelImage, relativeTarget(drawingName, pic->path));

    const CellPixels px(root, _owner->styles().maxDigWidth());
    const bool beyondY = offsetY > px.row(row), beyondX = offsetX > px.col(col);
    if (beyondY) offsetY = px.row(row);
    if (beyondX) offsetX = px.col(col);

    int restX = offsetX + width, restY = offsetY + height, lastCol, lastRow;
    walk(walkCol, kLastCol, restX, lastCol, [&](int c) { return px.col(c); });
    walk(walkRow, kLastRow, restY, lastRow, [&](int r) { return px.row(r); });
    drawing->addAnchor(row, col, lastRow, lastCol, offsetX, offsetY, restX, restY,
                       packageNarrow(imageId));

    if (!ref) {
        Relationships *sheetRels = _owner->getRelationships(this);
        if (!sheetRels) {
            sheetRels = new Relationships();
            _owner->addPart(_owner->relationPath(sheetName, false), sheetRels);
        }
        const std::wstring id =
            sheetRels->addRelation(pkg::kRelDrawing, relativeTarget(sheetName, drawingName));
        if (binding::c_node *d = root.append("drawing")) d->set_attribute("id", packageNarrow(id));
    }

    XString &message = _owner->message();
    if (beyondX && beyondY)
        message.assign("warning: offset_x and offset_y exceed cell's size");
    else if (beyondY)
        message.assign("warning: offset_y exceed cell's height");
    else if (beyondX)
        message.assign("warning: offset_x exceed cell's width");
}

#define TABRIX_XML_SHEET_PICTURES(C)                                                               \
    template Drawing *XMLSheetImplT<C>::getDrawing(const std::wstring &);                          \
    template int XMLSheetImplT<C>::pictureSize();                                                  \
    template int XMLSheetImplT<C>::getPicture(int, int *, int *, int *, int *, int *, int *,       \
                                              int *, int *);                                       \
    template void XMLSheetImplT<C>::setPicture(int, int, int, double, int, int);                   \
    template void XMLSheetImplT<C>::setPicture2(int, int, int, int, int, int, int);
TABRIX_XML_SHEET_PICTURES(char)
TABRIX_XML_SHEET_PICTURES(wchar_t)
#undef TABRIX_XML_SHEET_PICTURES

} // namespace tabrix
