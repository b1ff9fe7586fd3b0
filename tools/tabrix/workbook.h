// A book of the library held for the length of a command, and the steps
// around it: opening a file by what it contains, making a new book for a
// file to be written, choosing a sheet.
#ifndef TABRIX_CLI_WORKBOOK_H
#define TABRIX_CLI_WORKBOOK_H

#include "file_kind.h"

#include <tabrix/IBookT.h>

#include <string>
#include <unordered_map>

namespace cli {

using Book = tabrix::IBookT<char>;
using Sheet = tabrix::ISheetT<char>;
using Format = tabrix::IFormatT<char>;

// Owns one book and releases it at the end.
class Workbook {
public:
    // A new, empty book for the kind (Compound or Zip), with UTF-8 texts.
    explicit Workbook(FileKind kind);
    ~Workbook();
    Workbook(const Workbook &) = delete;
    Workbook &operator=(const Workbook &) = delete;

    // Opens `path` as the workbook its first bytes say it is.  A name whose
    // extension says otherwise gets a note on stderr; a file that is no
    // workbook, or that the library cannot load, throws Failure.
    static FileKind sniff(const std::string &path);
    void load(const std::string &path);
    void save(const std::string &path);

    Book *book() { return _book; }
    FileKind kind() const { return _kind; }
    // The last message of the library.
    std::string message();
    // The rows and columns this format can hold.
    int maxRows() const;
    int maxCols() const;

    // The sheet a user names: a sheet's name (exact, then without regard to
    // case), or its number counted from 1.  Empty text picks the first
    // worksheet.  Throws Failure naming the sheets there are.
    int findSheet(const std::string &nameOrNumber);
    Sheet *sheet(int index);

    // The index of a format in the book's list, -1 when it is not there.
    int formatIndex(Format *format);

private:
    Book *_book = nullptr;
    FileKind _kind;
    // Format indexes by address, filled on first use.
    std::unordered_map<Format *, int> _formats;
    bool _formatsListed = false;
};

// A version number of the library, 0x03050408, as "3.5.4.8".
std::string versionText(int version);

} // namespace cli

#endif
