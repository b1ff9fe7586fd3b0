// XMLBookImplT: the Open XML workbook.  The book is a dictionary of package
// parts: each zip entry is a live object (the workbook, which is the book
// itself, worksheets, styles, shared strings, relationships, content types)
// or a byte-exact opaque part.  Saving asks every part for its bytes and
// writes a new zip, so what the book does not model comes back unchanged.
// Operations are plain methods that throw tberror; books are handed out
// framed (FramedBookT).
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "book/operation_frame.h"
#include "book/str_util.h"
#include "book/unsupported_operations.h"
#include "book/xstring.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/relationships.h"
#include "ooxml/package/xml_file.h"
#include "ooxml/sheet/sheet_services.h"

namespace tabrix {

class ZipReader;
template <class C> class XMLSheetImplT;

// An image part of the package, in the order found or added.
struct PicInfo {
    std::wstring path; // the part's name
    int type;          // the picture kind getPicture answers
    const BinaryFile *file;
};

template <class C>
class XMLBookImplT : public UnsupportedBookT<C>, public SheetServicesT<C>, public XmlFile {
public:
    using CharType = C;
    using PartMap = std::map<std::wstring, XFile *, CaseInsensitiveLess>;

    explicit XMLBookImplT(binding::e_edition edition);
    ~XMLBookImplT() override;
    XMLBookImplT(const XMLBookImplT &) = delete;
    XMLBookImplT &operator=(const XMLBookImplT &) = delete;

    // ---- load and save (xml_book_io.cpp) ----
    bool load(const C *filename) override;
    bool save(const C *filename) override;
    bool loadRaw(const char *data, unsigned size) override;
    bool saveRaw(const char **data, unsigned *size) override;

    // ---- sheets (xml_book_sheets.cpp) ----
    ISheetT<C> *addSheet(const C *name, ISheetT<C> *initSheet) override;
    ISheetT<C> *insertSheet(int index, const C *name, ISheetT<C> *initSheet) override;
    ISheetT<C> *getSheet(int index) override;
    SheetType sheetType(int index) override;
    bool delSheet(int index) override;
    int sheetCount() override;
    int activeSheet() override;
    void setActiveSheet(int index) override;

    // ---- styles, forwarded to the stylesheet part ----
    IFormatT<C> *addFormat(IFormatT<C> *initFormat) override {
        return styles().addFormat(initFormat);
    }
    IFontT<C> *addFont(IFontT<C> *initFont) override { return styles().addFont(initFont); }
    int addCustomNumFormat(const C *text) override;
    const C *customNumFormat(int fmt) override;
    IFormatT<C> *format(int index) override { return styles().format(index); }
    int formatSize() override { return styles().formatSize(); }
    IFontT<C> *font(int index) override { return styles().font(index); }
    int fontSize() override { return styles().fontSize(); }
    Color colorPack(int red, int green, int blue) override {
        return styles().colorPack(red, green, blue);
    }
    void colorUnpack(Color color, int *red, int *green, int *blue) override {
        styles().colorUnpack(color, red, green, blue);
    }
    const C *defaultFont(int *size) override { return styles().defaultFont(size); }
    void setDefaultFont(const C *name, int size) override { styles().setDefaultFont(name, size); }
    bool rgbMode() override { return styles().rgbMode(); }
    void setRgbMode(bool rgbMode) override { styles().setRgbMode(rgbMode); }

    // ---- book settings (xml_book_impl.cpp) ----
    double datePack(int year, int month, int day, int hour, int min, int sec, int msec) override;
    bool dateUnpack(double value, int *year, int *month, int *day, int *hour, int *min, int *sec,
                    int *msec) override;
    bool refR1C1() override;
    bool r1c1Mode() override;
    void setRefR1C1(bool refR1C1) override;
    int version() override;
    int biffVersion() override { return 0; }
    bool isDate1904() override;
    void setDate1904(bool date1904) override;
    bool isTemplate() override;
    void setTemplate(bool tmpl) override;
    bool setLocale(const char *locale) override;
    const C *errorMessage() override { return _message.template c_str<C>(_utf8); }
    void release() override { delete this; }

    // ---- pictures (xml_book_pictures.cpp) ----
    int pictureSize() override { return int(_pictures.size()); }
    int getPicture(int index, const char **data, unsigned *size) override;
    int addPicture(const C *filename) override;
    int addPicture2(const char *data, unsigned size) override;

    // ---- what the sheets use ----
    SharedStrings &sharedStrings() override;
    SharedStrings *sharedStringsIfAny() override { return _sharedStrings; }
    Styles<C> &styles() override;
    bool utf8Mode() override { return _utf8; }
    XString &message() { return _message; }
    // The index of a sheet part in the book's order; -1 when it has none.
    int sheetIndexOf(const XFile *sheet);
    // The sheet's entry of the workbook; throws when the sheet has none.
    binding::c_node &sheetEntry(const XFile *sheet);
    // Renames a sheet (31 characters at most, unique case-insensitively);
    // answers whether the name was cut.
    bool renameSheet(const XFile *sheet, const C *name);
    // Hidden state of a sheet; hiding the last visible sheet is refused.
    SheetState sheetState(const XFile *sheet);
    void setSheetState(const XFile *sheet, SheetState state);

    // ---- defined names (xml_book_names.cpp) ----
    // The workbook's definedNames, made on first use.
    binding::c_node &definedNames();
    // Removes the names of `name` whose formula cites sheet `sheetIndex` and
    // whose scope fits (-2 any, -1 the workbook, else that local sheet);
    // answers whether any went.
    bool clearDefinedName(int sheetIndex, const std::string &name, int scope);
    // Formulas of defined names citing the old sheet name cite the new one.
    void changeDependencies(const std::wstring &oldName, const std::wstring &newName);

    // ---- the package ----
    const PartMap &parts() const { return _parts; }
    // How far the last load got: two for each part read, one more when it
    // failed on something else than a part of the other edition.
    int loadProgress() const { return _loadProgress; }
    // Part name of sheet `index` ("index is out of range").
    std::wstring sheetPath(int index);
    // A part of type T by name, or null.
    template <class T> T *getXml(const std::wstring &name) {
        auto it = _parts.find(name);
        return it == _parts.end() ? nullptr : dynamic_cast<T *>(it->second);
    }
    std::wstring getFileName(const XFile *file) const;
    Relationships *getRelationships(const XFile *file);
    // The relationships part name of a part; with mustExist the stored
    // spelling of it, or "" when the book has none.
    std::wstring relationPath(const std::wstring &partName, bool mustExist) const;
    // Stores `file` under prefix + n + "." + extension, the first n free.
    std::wstring addFile(XFile *file, const std::wstring &prefix, const std::wstring &extension);
    int picIndex(const std::wstring &imagePath) const;
    // The picture of an id, or null when out of range.
    const PicInfo *pictureInfo(int id) const {
        return id < 0 || size_t(id) >= _pictures.size() ? nullptr : &_pictures[size_t(id)];
    }
    // Stores a new part under `name`; the book owns it.
    void addPart(const std::wstring &name, XFile *file) { storePart(name, file); }
    ContentTypes &contentTypes() { return *_contentTypes; }

protected:
    XString &frameMessage() { return _message; }

private:
    void clear();
    void newBook();
    void loadPackage(ZipReader &zip);
    void readPackage(ZipReader &zip);
    void savePackage(const std::wstring *path, char **bytes, size_t *size);
    void storePart(const std::wstring &name, XFile *file);
    void erasePart(const std::wstring &name);
    void removeCalcChains();
    void addFullCalcOnLoad();
    // The relationship type of this edition for a kind ("worksheet").
    std::wstring relType(const wchar_t *kind) const;
    // The first target of either edition's type of `kind`, resolved; "" when none.
    std::wstring findTarget(const wchar_t *kind);
    std::wstring makeSheetPath();
    uint32_t makeSheetId();
    std::wstring sheetName(const C *name, bool &cut);
    void checkUniqueName(const std::wstring &utf8Name, const binding::c_node *except);
    void addPictureInfo(const std::wstring &path, const BinaryFile *file);
    void unselectAll();
    void calcActiveSheet();
    binding::c_node &sheets();

    PartMap _parts;
    Relationships *_workbookRels = nullptr;
    std::wstring _workbookPart;
    SharedStrings *_sharedStrings = nullptr;
    Styles<C> *_styles = nullptr;
    ContentTypes *_contentTypes = nullptr;
    std::vector<PicInfo> _pictures;
    char *_rawBuffer = nullptr;
    int8_t _r1c1 = -1; // the reference mode once asked for, -1 before
    std::string _localeName;
    XString _message;
    int _loadProgress = 0;
    bool _utf8 = false;
};

template <class C> using XMLBookT = FramedBookT<XMLBookImplT<C>>;

extern template class XMLBookImplT<char>;
extern template class XMLBookImplT<wchar_t>;

} // namespace tabrix
