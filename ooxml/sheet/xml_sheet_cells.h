// The cell-level half of an Open XML sheet: the worksheet's bound tree and
// every cell operation of ISheetT, as plain methods that throw tberror.
// Cells live in the tree itself (see XMLCellStore); numbers stay as text
// until read, strings go to the book's shared string table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>

#include "book/unsupported_operations.h"
#include "book/xstring.h"
#include "ooxml/binding/engine/document.h"
#include "ooxml/binding/parts/cell.h"
#include "ooxml/sheet/sheet_services.h"
#include "ooxml/sheet/xml_cell_store.h"

namespace tabrix {

// First and last row and column of the cells, each pair half-open.
struct XMLDimensions {
    int firstRow = 0, lastRow = 0, firstCol = 0, lastCol = 0;
    void update(int row, int col) {
        if (firstRow == lastRow || row < firstRow) firstRow = row;
        if (row >= lastRow) lastRow = row + 1;
        if (firstCol == lastCol || col < firstCol) firstCol = col;
        if (col >= lastCol) lastCol = col + 1;
    }
};

template <class C> class XMLSheetCellsT : public UnsupportedSheetT<C> {
public:
    XMLSheetCellsT &operator=(const XMLSheetCellsT &) = delete;
    ~XMLSheetCellsT() override;

    CellType cellType(int row, int col) override;
    bool isFormula(int row, int col) override;
    IFormatT<C> *cellFormat(int row, int col) override;
    void setCellFormat(int row, int col, IFormatT<C> *format) override;
    const C *readStr(int row, int col, IFormatT<C> **format) override;
    bool writeStr(int row, int col, const C *value, IFormatT<C> *format) override;
    double readNum(int row, int col, IFormatT<C> **format) override;
    bool writeNum(int row, int col, double value, IFormatT<C> *format) override;
    bool readBool(int row, int col, IFormatT<C> **format) override;
    bool writeBool(int row, int col, bool value, IFormatT<C> *format) override;
    bool readBlank(int row, int col, IFormatT<C> **format) override;
    bool writeBlank(int row, int col, IFormatT<C> *format) override;
    const C *readFormula(int row, int col, IFormatT<C> **format) override;
    bool writeFormula(int row, int col, const C *expr, IFormatT<C> *format) override;
    bool isDate(int row, int col) override;
    ErrorCode readError(int row, int col) override;
    bool copyCell(int rowSrc, int colSrc, int rowDst, int colDst) override;
    bool clear(int rowFirst, int rowLast, int colFirst, int colLast) override;
    int firstRow() override;
    int lastRow() override;
    int firstCol() override;
    int lastCol() override;

    // Deletes one cell (a shared formula's master hands its formula on
    // first), and its row when it was the row's last cell.
    void delCell(int row, int col);

protected:
    XMLSheetCellsT(SheetServicesT<C> &book, binding::e_edition edition);
    XMLSheetCellsT(SheetServicesT<C> &book, binding::e_edition edition, const char *bytes,
                   size_t size);
    XMLSheetCellsT(const XMLSheetCellsT &source, SheetServicesT<C> &book);
    binding::c_document &document() { return _doc; }
    SheetServicesT<C> &book() { return *_book; }
    // Rows and cells by address, for the sheet's structure operations.
    XMLCellStore &cellStore() { return _store; }
    // After a structure edit of sheetData: the row index and the extents
    // are made again at their next use.
    void markDimensionsStale();
    // A read that went well but lost characters converting its text leaves
    // this warning; the owner puts it in its message.
    virtual void noteWarning(const char *text);

private:
    void init();
    void recalcDimensions();
    binding::c_cell *find(int row, int col);
    // The cell for a read: found or "cell is not found"; `format` filled.
    binding::c_cell &lookup(int row, int col, IFormatT<C> **format);
    // The gate of every write: the cell, made when missing, emptied (but
    // for style and address) when `clearCell`, styled with `format`.
    binding::c_cell &write(int row, int col, IFormatT<C> *format, bool clearCell);
    const C *tc(const std::wstring &wide);
    std::wstring callerText(const C *text);

    // Shared formulas (xml_sheet_formulas.cpp).
    std::wstring sharedFormula(int row, int col, const std::string &si);
    void moveMasterFormula(int row, int col, binding::c_cell &cell);
    void delSharedFormula(binding::c_cell &cell, int row, int col);

    SheetServicesT<C> *_book;
    binding::c_document _doc;
    XMLCellStore _store{_doc};
    XString _text;
    std::string _scratch; // a formula's text on its way out
    XMLDimensions _dims;
    bool _dimsStale = true;
    // Master of each shared formula index, found by one scan.
    struct SharedMaster {
        int row, col;
        const binding::c_node *f;
    };
    std::unordered_map<std::string, SharedMaster> _masters;
    bool _mastersValid = false;
};

extern template class XMLSheetCellsT<char>;
extern template class XMLSheetCellsT<wchar_t>;

} // namespace tabrix
