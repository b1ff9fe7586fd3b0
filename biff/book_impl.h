// BookImplT: the binary workbook.  It owns the globals of the workbook
// stream, the sheets, the styling, the shared string table and the
// compound file container.  Records it does not model are kept as bytes and
// written back, so a loaded file comes out with its parts intact.
//
// The styling table's message and pool serve as the book's: fonts, formats,
// sheets and the book leave their texts in one message.
#ifndef TABRIX_BIFF_BOOK_IMPL_H
#define TABRIX_BIFF_BOOK_IMPL_H

#include "biff/biff_record.h"
#include "biff/records/bof.h"
#include "biff/records/bound_sheet8.h"
#include "biff/records/lbl.h"
#include "biff/records/password.h"
#include "biff/records/prot4rev.h"
#include "biff/records/prot4rev_pass.h"
#include "biff/records/protect.h"
#include "biff/records/sst.h"
#include "biff/records/sup_book_block.h"
#include "biff/records/win_protect.h"
#include "biff/records/write_access.h"
#include "biff/sheet_owner.h"
#include "biff/style_table.h"
#include "biff/xls.h"
#include "officeart/drawing_group.h"
#include "book/operation_frame.h"
#include "book/unsupported_operations.h"

#include <cstdint>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace tabrix {

template <class C> class SheetImplT;

// The two-byte globals without a class of their own, in the file's form.
struct BookWords {
    uint16_t interfaceHdr = 1200; // InterfaceHdr codePage
    uint16_t codePage = 1200;
    uint16_t dsf = 0;
    uint16_t builtInFnGroupCount = 14;
    uint16_t backup = 0;
    uint16_t hideObj = 0;
    uint16_t date1904 = 0;
    uint16_t calcPrecision = 1;
    uint16_t refreshAll = 0;
    uint16_t bookBool = 0;
    uint16_t usesELFs = 0;
};

// Window1: position and size of the book's window and its tab state.
struct Window1 {
    uint16_t xWn = 0, yWn = 15, dxWn = 16155, dyWn = 10230, flags = 56;
    uint16_t itabCur = 0, itabFirst = 0, ctabSel = 1, wTabRatio = 600;
};

// A record kept whole because the book only carries it: written back when
// one was read.
struct KeptRecord {
    bool absent = true;
    Biff record;
};

// The binary workbook.  Its operations are plain methods that throw
// tberror; books are made as BinaryBookT (FramedBookT<BookImplT>), which
// runs each one in the failure frame.
template <class C> class BookImplT : public UnsupportedBookT<C>, public ISheetOwner<C> {
protected:
    BookImplT();
    XString &frameMessage() { return message(); }

public:
    // Ids of the records kept whole in their own save slots.
    static const uint16_t kOpaqueIds[11];
    static const int kOpaqueCount = 11;
    // Every sheet holds its row table whatever its size, so a file can't ask
    // for more sheets than this.
    static const int kMaxSheets = 4096;

    ~BookImplT() override;
    BookImplT(const BookImplT &) = delete;
    BookImplT &operator=(const BookImplT &) = delete;

    // ---- IBookT: load and save (book_load.cpp, book_save.cpp) ----
    bool load(const C *filename) override;
    bool save(const C *filename) override;
    bool loadRaw(const char *data, unsigned size) override;
    bool saveRaw(const char **data, unsigned *size) override;

    // ---- IBookT: sheets (book_sheets.cpp) ----
    ISheetT<C> *addSheet(const C *name, ISheetT<C> *initSheet) override;
    ISheetT<C> *insertSheet(int index, const C *name, ISheetT<C> *initSheet) override;
    ISheetT<C> *getSheet(int index) override;
    SheetType sheetType(int index) override;
    bool delSheet(int index) override;
    int sheetCount() override { return int(_sheets.size()); }
    int activeSheet() override { return _window1.itabCur; }
    void setActiveSheet(int index) override;

    // ---- IBookT: styles, dates, colours, settings (book_impl.cpp) ----
    IFormatT<C> *addFormat(IFormatT<C> *initFormat) override;
    IFontT<C> *addFont(IFontT<C> *initFont) override;
    int addCustomNumFormat(const C *customNumFormat) override;
    const C *customNumFormat(int fmt) override;
    IFormatT<C> *format(int index) override;
    int formatSize() override { return _styles.formatSize(); }
    IFontT<C> *font(int index) override;
    int fontSize() override { return _styles.fontSize(); }
    double datePack(int year, int month, int day, int hour, int min, int sec, int msec) override;
    bool dateUnpack(double value, int *year, int *month, int *day, int *hour, int *min, int *sec,
                    int *msec) override;
    Color colorPack(int red, int green, int blue) override;
    void colorUnpack(Color color, int *red, int *green, int *blue) override;
    int pictureSize() override { return int(_drawingGroup.pictureCount()); }
    int getPicture(int index, const char **data, unsigned *size) override;
    int addPicture(const C *filename) override;
    int addPicture2(const char *data, unsigned size) override;
    // Counts one more shape using picture id (one-based).
    void addPicRef(int id) { _drawingGroup.addPicRef(id); }
    MsoDrawingGroup &drawingGroup() override { return _drawingGroup; }
    const C *defaultFont(int *fontSize) override;
    void setDefaultFont(const C *fontName, int fontSize) override;
    bool refR1C1() override;
    void setRefR1C1(bool refR1C1) override;
    bool rgbMode() override { return _styles.rgbMode(); }
    void setRgbMode(bool rgbMode) override { _styles.setRgbMode(rgbMode); }
    int version() override;
    int biffVersion() override { return _bof.vers; }
    bool isDate1904() override { return _words.date1904 != 0; }
    void setDate1904(bool date1904) override { _words.date1904 = date1904 ? 1 : 0; }
    bool isTemplate() override { return _template; }
    void setTemplate(bool tmpl) override { _template = tmpl; }
    bool setLocale(const char *locale) override;
    const C *errorMessage() override;
    void release() override { delete this; }

    // ---- ISheetOwner ----
    XString &message() override { return _styles.message(); }
    bool utf8Mode() const override { return _utf8Mode; }
    MemPool &pool() override { return _styles.pool(); }
    SST &sst() override { return _sst; }
    int globalsVersion() override { return _bof.vers; }
    unsigned codePage() override { return _words.codePage; }
    StyleTable<C> &styles() override { return _styles; }
    SheetImplT<C> *sheetAt(int index) override;
    int getTabIndex(const SheetImplT<C> *sheet) override;
    std::vector<Lbl> &names() override { return _names; }
    std::vector<SupBookBlock> &supBooks() override { return _supBookBlocks; }
    SheetState sheetHidden(int index) override;
    void setSheetHidden(int index, SheetState state) override;

    // ---- for the other parts of the binary book ----
    std::vector<BoundSheet8> &boundSheetsRef() { return _boundSheets; }
    int maxDigWidth() const { return _maxDigWidth; }
    // A wide text in the caller's encoding, valid until the next text result.
    const C *tc(const wchar_t *wide);

    // Sheets whose state bits are 0.
    int visibleSheetCount() const;
    // The next visible sheet after `index`, wrapping around; `index` itself
    // when no other is visible or when it is out of range.
    int getNextVisibleSheet(int index) const;
    // itabFirst to the first visible sheet (unchanged when none is).
    void calcFirstTab();
    // Moves the active sheet forward off a hidden sheet.
    void calcActiveSheet();

    // The kept records of a load, for tests and diagnostics.
    const std::vector<Biff> &unknownRecords() const { return _unknown; }
    const BookWords &words() const { return _words; }
    const Window1 &window1() const { return _window1; }
    const std::vector<uint16_t> &rrTabId() const { return _rrTabId; }
    bool hasBookExt() const { return _hasBookExt; }

    // Destroys sheets, fonts, formats and pooled text.
    void free();
    // The globals of a new book; lists emptied.
    void reset();
    // The tables a new book needs: 21 formats, 5 fonts, 6 styles.
    void init();
    // Back to a new book.
    void clear();

private:
    // One public operation: "ok", or the failure text and `neutral`.
    // ---- load (book_load.cpp) ----
    bool loadFrom(std::iostream &stream);
    template <class Work> bool loadOrClear(Work &&work);
    void readStream();
    // Answers false at the EOF record.
    bool readGlobal(uint16_t id, uint16_t size);
    void keepUnknown(uint16_t id, uint16_t size);
    void readSheets();
    KeptRecord *opaque(uint16_t id);
    void calcMaxDigWidth();
    bool openFile(std::fstream &file, const C *name, std::ios::openmode mode);
    // A file name in the form the system's calls take; false when it has
    // none.
    bool narrowPath(const C *name, std::string &narrow);

    // ---- save (book_save.cpp) ----
    bool saveTo(std::iostream *stream);
    void checkSavable() const;
    void writeStream();
    void writeGlobals(std::vector<uint32_t> &boundPos);
    void writeDrawingGroup();
    void writeWord(uint16_t id, uint16_t value);
    void writeOpaque(uint16_t id);

    // ---- sheets (book_sheets.cpp) ----
    SheetImplT<C> *newSheet(const std::wstring &name, ISheetT<C> *initSheet);
    void shiftNamesOnInsert(int index);
    void shiftNamesOnDelete(int index);
    void rebuildRRTabId();
    void selectOnly(int index);

    XString _textBuf;
    Xls<C> _xls;
    std::vector<SheetImplT<C> *> _sheets;
    // Sheets removed by delSheet: alive until the book is cleared, so that a
    // caller's handle stays usable.
    std::vector<SheetImplT<C> *> _removedSheets;

    Bof _bof;
    uint8_t _mms[2] = {0, 0};
    WriteAccess _writeAccess;
    BookWords _words;
    std::vector<uint16_t> _rrTabId;
    WinProtect _winProtect;
    Protect _protect;
    Password _password;
    Prot4Rev _prot4Rev;
    Prot4RevPass _prot4RevPass;
    Window1 _window1;
    uint16_t _country[2] = {1, 1};
    uint16_t _recalcRt = 449, _recalcReserved = 0;
    uint32_t _recalcBuild = 114210;

    // Before the string table, which takes its pool.
    StyleTable<C> _styles;
    SST _sst;
    bool _hasBookExt = false;
    // MsoDrawingGroup (235): its bytes joined across CONTINUE records, and
    // the record ids and sizes of the pieces as read, which an unchanged
    // group keeps.
    MsoDrawingGroup _drawingGroup;
    std::vector<std::pair<uint16_t, uint16_t>> _drawingGroupPieces;
    std::vector<SupBookBlock> _supBookBlocks;
    std::vector<BoundSheet8> _boundSheets;
    std::vector<Biff> _unknown;
    std::vector<Lbl> _names;
    std::vector<Biff> _hfPictures; // 2150
    KeptRecord _opaque[kOpaqueCount];
    std::vector<Biff> _xfExt; // 2173

    // The bytes of the last saveRaw, alive until the next one.
    ByteRegion _rawOut;
    bool _utf8Mode = false;
    bool _template = false;
    std::string _savedLocale;
    bool _refR1C1 = false;
    int _maxDigWidth = 7;
};

extern template class BookImplT<char>;
extern template class BookImplT<wchar_t>;

// The book tbCreateBook hands out.
template <class C> using BinaryBookT = FramedBookT<BookImplT<C>>;
extern template class FramedBookT<BookImplT<char>>;
extern template class FramedBookT<BookImplT<wchar_t>>;

} // namespace tabrix

#endif
