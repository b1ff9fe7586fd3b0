// SheetImplT: a worksheet of a binary book.  Every cell lives in one dense
// vector per cell kind; the SheetIndex answers which kind and position a
// cell has in two array look-ups.  A replaced cell leaves its old element
// behind, unreachable: saving walks the index, not the vectors.
//
// The sheet reads its record substream when a book is loaded and writes it
// when the book is saved.  Records it does not model come back as they were
// read; a chart or macro sheet is kept whole as raw records.
#ifndef TABRIX_BIFF_SHEET_IMPL_H
#define TABRIX_BIFF_SHEET_IMPL_H

#include "biff/biff_record.h"
#include "biff/drawing_run.h"
#include "biff/records/note_sh.h"
#include "officeart/sheet_shapes.h"
#include "book/pod_vector.h"
#include "biff/records/blank.h"
#include "biff/records/bool_err.h"
#include "biff/records/col_info.h"
#include "biff/records/db_cell.h"
#include "biff/records/dimensions.h"
#include "biff/runs/formula_block.h"
#include "biff/records/index.h"
#include "biff/records/label.h"
#include "biff/records/label_sst.h"
#include "biff/records/merge_cells.h"
#include "biff/records/number.h"
#include "biff/records/phonetic_info.h"
#include "biff/records/rk.h"
#include "biff/records/row.h"
#include "biff/sheet_header.h"
#include "biff/sheet_index.h"
#include "biff/sheet_names.h"
#include "biff/sheet_setup.h"
#include "biff/sheet_string_cache.h"
#include "book/operation_frame.h"
#include "book/unsupported_operations.h"
#include "book/xstring.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace tabrix {

template <class C> class ISheetOwner;
class MsoDrawingGroup;

// A record the sheet keeps as bytes in a fixed slot, written only when
// present.
struct OptionalRecord {
    bool absent = true;
    Biff record;
    explicit OptionalRecord(uint16_t id = 0) { record.id = id; }
};

// The binary worksheet.  Its operations are plain methods that throw
// tberror; sheets are made as FramedSheetT<SheetImplT>, which runs each
// one in the failure frame.
template <class C> class SheetImplT : public UnsupportedSheetT<C> {
protected:
    // A new worksheet with the defaults of a fresh sheet.
    SheetImplT(ISheetOwner<C> &owner, const std::wstring &name);
    // A copy of `src` for `owner`.  From another owner, strings go into this
    // owner's shared string table and formats are added to its styles.
    SheetImplT(const SheetImplT &src, ISheetOwner<C> &owner);
    // The message the frame sets: the owning book's.
    XString &frameMessage();

public:
    SheetImplT(const SheetImplT &) = delete;
    SheetImplT &operator=(const SheetImplT &) = delete;
    ~SheetImplT() override;

    // ---- cells (sheet_cells.cpp, sheet_extents.cpp) ----
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

    // ---- rows, columns, merges, name, addresses (sheet_structure.cpp) ----
    double colWidth(int col) override;
    double rowHeight(int row) override;
    bool setCol(int colFirst, int colLast, double width, IFormatT<C> *format, bool hidden) override;
    bool setRow(int row, double height, IFormatT<C> *format, bool hidden) override;
    bool rowHidden(int row) override;
    bool setRowHidden(int row, bool hidden) override;
    bool colHidden(int col) override;
    bool setColHidden(int col, bool hidden) override;
    bool getMerge(int row, int col, int *rowFirst, int *rowLast, int *colFirst,
                  int *colLast) override;
    bool setMerge(int rowFirst, int rowLast, int colFirst, int colLast) override;
    bool delMerge(int row, int col) override;
    const C *name() override;
    void setName(const C *name) override;
    // A caller's sheet name as UTF-16 units, cut at a whole character within
    // 31 units (`cut` tells whether it was); an empty name, or one that
    // doesn't convert, throws.
    static std::wstring sheetName(const C *name, bool utf8Mode, bool &cut);
    void addrToRowCol(const C *addr, int *row, int *col, bool *rowRelative,
                      bool *colRelative) override;
    const C *rowColToAddr(int row, int col, bool rowRelative, bool colRelative) override;

    // ---- inserting and removing rows and columns (sheet_shift.cpp) ----
    bool insertRow(int rowFirst, int rowLast) override;
    bool removeRow(int rowFirst, int rowLast) override;
    bool insertCol(int colFirst, int colLast) override;
    bool removeCol(int colFirst, int colLast) override;
    // ---- outline groups (sheet_outline.cpp) ----
    bool groupRows(int rowFirst, int rowLast, bool collapsed) override;
    bool groupCols(int colFirst, int colLast, bool collapsed) override;

    // ---- pictures and comments (sheet_pictures.cpp, sheet_comments.cpp) ----
    int pictureSize() override;
    int getPicture(int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight, int *width,
                   int *height, int *offsetX, int *offsetY) override;
    void setPicture(int row, int col, int pictureId, double scale, int offsetX,
                    int offsetY) override;
    void setPicture2(int row, int col, int pictureId, int width, int height, int offsetX,
                     int offsetY) override;
    const C *readComment(int row, int col) override;
    void writeComment(int row, int col, const C *value, const C *author, int width,
                      int height) override;
    // The anchor of a box of width by height pixels whose top left lies at
    // the offsets in the cell; -1 for a size reaches to the cell's end.
    OfficeArtCoord calcCoord(int row, int col, int width, int height, int offsetX, int offsetY);
    // A row's height and a column's width in pixels.
    int rowHeightInt(int row) const;
    int colWidthPx(int col) const;

    // ---- page breaks, panes, window, printout, protection (sheet_settings.cpp) ----
    int getHorPageBreak(int index) override;
    int getHorPageBreakSize() override;
    int getVerPageBreak(int index) override;
    int getVerPageBreakSize() override;
    bool setHorPageBreak(int row, bool pageBreak) override;
    bool setVerPageBreak(int col, bool pageBreak) override;
    void split(int row, int col) override;
    bool groupSummaryBelow() override;
    void setGroupSummaryBelow(bool below) override;
    bool groupSummaryRight() override;
    void setGroupSummaryRight(bool right) override;
    bool displayGridlines() override;
    void setDisplayGridlines(bool show) override;
    void getTopLeftView(int *row, int *col) override;
    void setTopLeftView(int row, int col) override;
    bool rightToLeft() override;
    void setRightToLeft(bool rightToLeft) override;
    bool printGridlines() override;
    void setPrintGridlines(bool print) override;
    int zoom() override;
    void setZoom(int zoom) override;
    int printZoom() override;
    void setPrintZoom(int zoom) override;
    bool getPrintFit(int *wPages, int *hPages) override;
    void setPrintFit(int wPages, int hPages) override;
    bool landscape() override;
    void setLandscape(bool landscape) override;
    Paper paper() override;
    void setPaper(Paper paper) override;
    const C *header() override;
    bool setHeader(const C *header, double margin) override;
    double headerMargin() override;
    const C *footer() override;
    bool setFooter(const C *footer, double margin) override;
    double footerMargin() override;
    bool hCenter() override;
    void setHCenter(bool center) override;
    bool vCenter() override;
    void setVCenter(bool center) override;
    double marginLeft() override;
    void setMarginLeft(double margin) override;
    double marginRight() override;
    void setMarginRight(double margin) override;
    double marginTop() override;
    void setMarginTop(double margin) override;
    double marginBottom() override;
    void setMarginBottom(double margin) override;
    bool printRowCol() override;
    void setPrintRowCol(bool print) override;
    bool protect() override;
    void setProtect(bool protect) override;

    // ---- print area and titles, names, visibility (sheet_name_ops.cpp) ----
    void setPrintRepeatRows(int rowFirst, int rowLast) override;
    void setPrintRepeatCols(int colFirst, int colLast) override;
    void setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) override;
    void clearPrintRepeats() override;
    void clearPrintArea() override;
    bool getNamedRange(const C *name, int *rowFirst, int *rowLast, int *colFirst, int *colLast,
                       int scopeId, bool *hidden) override;
    bool setNamedRange(const C *name, int rowFirst, int rowLast, int colFirst, int colLast,
                       int scopeId) override;
    bool delNamedRange(const C *name, int scopeId) override;
    int namedRangeSize() override;
    const C *namedRange(int index, int *rowFirst, int *rowLast, int *colFirst, int *colLast,
                        int *scopeId, bool *hidden) override;
    SheetState hidden() override;
    bool setHidden(SheetState state) override;

    // ---- what the book and other parts use ----
    // The substream from its BOF to its EOF (sheet_read.cpp); failures throw.
    void read(XlsRecords &xls);
    // The substream in save order (sheet_write.cpp); failures throw.
    void write(XlsRecords &xls);
    const std::wstring &wideName() const { return _name; }
    void setWideName(const std::wstring &name) { _name = name; }
    // The BOF type: 16 worksheet; anything else is kept opaque.
    uint16_t docType() const { return _bof.dt; }
    bool selected() const;
    void setSelected(bool selected);
    bool refA1() const;
    void setRefA1(bool a1);
    int getTab();
    ISheetOwner<C> &owner() { return *_owner; }
    static const char *commentAuthor() { return "tabrix"; }

    // The xf of the cell at (row, col), 15 without one.
    uint16_t getFormatID(int row, int col) const;
    // Throws the range messages for a row outside 0-65535 or a column
    // outside 0-255 (negative numbers included).
    static void checkRanges(int row, int col) {
        if (unsigned(row) > 65535u || unsigned(col) > 255u) rangeError(row);
    }
    [[noreturn]] static void rangeError(int row);
    void recalcDimensions();
    // Zeroes the codes of the area, with blanksOnly only those of blanks;
    // allocates the row pages it touches.
    void clearIndexes(int rowFirst, int rowLast, int colFirst, int colLast, bool blanksOnly);
    // Moves the definition of a shared formula anchored at (row, col) to
    // the next cell that uses it, before that cell is overwritten.
    void delSharedFormula(int row, int col);

    const PodVector<LabelSst> &labelSst() const { return _labelSst; }
    const SheetIndex &sheetIndex() const { return _index; }
    const std::vector<MergeCells> &mergeCells() const { return _mergeCells; }
    const std::vector<ColInfo> &colInfos() const { return _colInfos; }
    const std::vector<Row> &rows() const { return _rowList; }
    const std::vector<Biff> &unknownRecords() const { return _unknown; }
    const Dimensions &dimensions() const { return _dimensions; }
    SheetSetup &setup() { return _setup; }
    const SheetSetup &setup() const { return _setup; }

    // Bytes held by the cell store (index pages and cell vectors), for
    // measurements.
    size_t cellMemory() const;

private:
    friend class SheetImplT<wchar_t>;
    friend class SheetImplT<char>;

    // ---- cell helpers (sheet_cells.cpp) ----
    uint16_t resolveFormat(IFormatT<C> *format, uint16_t present) const;
    int formatPosition(IFormatT<C> *format) const;
    IFormatT<C> *formatAt(uint16_t xf) const;
    uint32_t codeAt(int row, int col) const { return _index.find(unsigned(row), unsigned(col)); }
    uint16_t xfOf(uint32_t code) const;
    void setXf(uint32_t code, uint16_t xf);
    // Looks the cell up for a read: clears *format, checks ranges, and sets
    // *format to the cell's format.
    uint32_t lookup(int row, int col, IFormatT<C> **format);
    const wchar_t *cellText(uint32_t code) const;
    const wchar_t *formulaText(const FormulaBlock &block) const;
    bool sstShared(uint32_t sstIndex, const LabelSst *self) const;
    void putLabelSst(int row, int col, uint32_t sstIndex, uint16_t xf);
    void setBlank(int row, int col, uint16_t xf);
    void writeNumCell(int row, int col, double value, IFormatT<C> *format);
    // Answers the shared string index the cell got.
    uint32_t writeStrCell(int row, int col, const std::wstring &text, IFormatT<C> *format);
    // Whether entry `index` of the shared string table is the plain text
    // `text` of `len` units.
    bool sstHolds(uint32_t index, const C *text, size_t len) const;
    IFormatT<C> *cellFormatOf(int row, int col);
    int rowIndexOf(int row) const;
    // A wide text in the caller's encoding, kept until the next text result.
    const C *textResult(const wchar_t *wide);
    // Sets the message directly: a wrong argument reported without an
    // exception.
    void fail(const char *message);
    uint32_t appendPosition(size_t size) const;
    // This sheet's view of the book's defined names.
    SheetNames names();
    // A caller's text as a wide text, in the book's encoding.
    std::wstring wideArg(const C *text) const;
    uint16_t mapXf(const SheetImplT &src, uint16_t xf);

    // ---- moving cells and properties (sheet_shift.cpp) ----
    // Sets the row and column kept in each cell object of rows
    // [rowFirst, rowLast], from column colFirst on, to its place in the index.
    void placeCells(int rowFirst, int rowLast, int colFirst);
    // Height and hidden state of row `to` become those of row `from`
    // (or, with from < 0, the given ones) when they differ.
    void copyRowLook(std::vector<int> &at, int to, int from, uint16_t twips, bool hidden);
    // Width and hidden state of column `to` become those of column `from`.
    void copyColLook(int to, int from);
    // One ColInfo a column, runs split.
    void splitColInfos();
    // Range names of this sheet follow inserted or removed rows.
    void updateNames(int first, int last, bool insert);
    void moveNotes(bool rows, int first, int n, bool insert);
    // Drops the notes anchored in the area.
    void eraseNotes(int rowFirst, int rowLast, int colFirst, int colLast);

    // ---- load and save (sheet_read.cpp, sheet_write.cpp) ----
    void resetForRead();
    void reserveCells();
    static constexpr size_t kMaxReservedCells = size_t(1) << 22;
    bool readWorksheetRecord(XlsRecords &xls, uint16_t id, uint16_t size);
    void readDrawingRun(XlsRecords &xls, uint16_t id, uint16_t size);
    void readCellRecord(XlsRecords &xls, uint16_t id, uint16_t size);
    // The book's globals are of the older format, and so is every sheet.
    bool oldFormat() const;
    // The text of an older format's String record: a 16-bit count and bytes
    // in the book's code page.
    const wchar_t *oldStringResult(const Biff &record);
    void writeCells(XlsRecords &xls);
    void writeColInfos(XlsRecords &xls);
    void setDefaults();
    void copyFrom(const SheetImplT &src);

    // ---- the drawing (sheet_pictures.cpp) ----
    MsoDrawingGroup &drawingGroup();
    // Starts the drawing when there is none, claims the next shape id and
    // counts the shape in the drawing record.
    uint32_t newShapeId(DrawingRun &run, DrawingLayout &layout);
    // Puts the records of a new shape at the end of the drawing's group.
    void addShape(DrawingRun &run, const DrawingLayout &layout, std::vector<Biff> pieces);
    uint16_t nextObjectId(const DrawingRun &run) const;
    // The drawing ids of the book's other sheets.
    std::vector<uint32_t> otherDrawingIds();
    // A copied drawing takes a drawing id and shape ids of its own; one
    // that can't be read, or a copy without a book, stays as it came.
    void renumberDrawing();
    // The NoteSh of the cell in _notes, -1 without one.
    int findNote(int row, int col, NoteSh &note) const;

    ISheetOwner<C> *_owner;
    std::wstring _name;
    SubstreamHeader _bof;

    // Index record fields, repeated on save.
    Index _indexRecord;

    // Calculation settings.
    uint16_t _calcMode = 1;
    uint16_t _calcCount = 100;
    uint16_t _calcRefMode = 1;
    uint16_t _calcIter = 0;
    double _calcDelta = 0.001;
    uint16_t _calcSaveRecalc = 1;

    uint16_t _gridSet = 1;
    uint16_t _guts[4] = {0, 0, 0, 0};
    uint16_t _defaultRowHeightFlags = 0;
    uint16_t _defaultRowHeight = 255;
    uint16_t _defColWidth = 8;
    Dimensions _dimensions;
    PhoneticInfo _phoneticInfo;
    bool _hasPhoneticInfo = false;

    // Printout, protection, page breaks, window, panes and selections.
    SheetSetup _setup;

    // ---- records of later work, kept raw in their save slots ----
    // The drawing run from MsoDrawing 236 with its Obj 93, TxO 438,
    // CONTINUE 60 and embedded chart substreams, in stream order.
    std::vector<Biff> _objects;
    // NoteSh 28.
    std::vector<Biff> _notes;

    // Opaque records in fixed slots.
    OptionalRecord _opaque2204{2204}, _opaque144{144}, _opaque2164{2164}, _opaque157{157},
        _opaque450{450}, _opaque80{80}, _opaque2187{2187}, _opaque153{153}, _opaque442{442};

    // Rows and cells.
    std::vector<Row> _rowList;
    PodVector<LabelSst> _labelSst;
    std::vector<Label> _labels;
    PodVector<RK> _rk;
    PodVector<Number> _numbers;
    std::vector<DBCell> _dbCells;
    std::vector<Biff> _unknown;
    std::vector<ColInfo> _colInfos;
    std::vector<MergeCells> _mergeCells;
    PodVector<Blank> _blanks;
    PodVector<BoolErr> _boolErrs;
    std::vector<FormulaBlock> _formulas;

    SheetIndex _index;

    bool _hasUncalced = false;
    uint16_t _uncalced = 0;

    // Text results (narrow callers) and scratch space for conversions.
    std::string _narrow;
    std::wstring _wideResult;
    std::wstring _wide;
    std::wstring _addr;
    // Texts written lately and their shared string indexes.
    StringCache<C> _strings;
    // From a copy of another owner's sheet: source xf -> this owner's xf.
    std::unordered_map<uint16_t, uint16_t> _xfMap;

    bool _dirty = false;
};

extern template class SheetImplT<char>;
extern template class SheetImplT<wchar_t>;

// The sheet a binary book makes and hands out.
template <class C> using BinarySheetT = FramedSheetT<SheetImplT<C>>;
extern template class FramedSheetT<SheetImplT<char>>;
extern template class FramedSheetT<SheetImplT<wchar_t>>;

} // namespace tabrix

#endif
