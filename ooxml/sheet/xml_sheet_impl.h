// XMLSheetImplT: one worksheet part of an Open XML book.  The cells and the
// bound tree are the cell half's; this half is the sheet as a part of the
// package (its bytes at save), its name and hidden state, which live in the
// workbook's entry for it, and its view selection.  Handed out as
// FramedSheetT<XMLSheetImplT<C>>.
#pragma once

#include <string>

#include "book/xstring.h"
#include "ooxml/package/xfile.h"
#include "ooxml/sheet/xml_sheet_cells.h"

namespace tabrix {

template <class C> class XMLBookImplT;
class Drawing;

template <class C> class XMLSheetImplT : public XMLSheetCellsT<C>, public XFile {
public:
    using CharType = C;

    XMLSheetImplT(XMLBookImplT<C> &book, binding::e_edition edition);
    XMLSheetImplT(XMLBookImplT<C> &book, binding::e_edition edition, const char *bytes,
                  size_t size);
    // A copy of `source` for a place in `book`.
    XMLSheetImplT(const XMLSheetImplT &source, XMLBookImplT<C> &book);

    // The part's bytes.
    void save(std::string &out) override;

    const C *name() override;
    void setName(const C *name) override;
    SheetState hidden() override;
    bool setHidden(SheetState state) override;

    // The tabSelected flag of every view of the sheet.
    void setSelected(bool selected);
    XMLBookImplT<C> &owner() { return *_owner; }

    // ---- pictures (xml_sheet_pictures.cpp) ----
    int pictureSize() override;
    int getPicture(int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight, int *width,
                   int *height, int *offsetX, int *offsetY) override;
    void setPicture(int row, int col, int pictureId, double scale, int offsetX,
                    int offsetY) override;
    void setPicture2(int row, int col, int pictureId, int width, int height, int offsetX,
                     int offsetY) override;
    // The drawing a relation of the sheet names, or null.
    Drawing *getDrawing(const std::wstring &relationId);

protected:
    XString &frameMessage();

private:
    XMLBookImplT<C> *_owner;
    XString _text;
};

extern template class XMLSheetImplT<char>;
extern template class XMLSheetImplT<wchar_t>;

} // namespace tabrix
