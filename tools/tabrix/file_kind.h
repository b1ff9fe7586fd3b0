// What a file is, told by its first bytes (the signature) and, for a file
// that does not exist yet, by its extension.
#ifndef TABRIX_CLI_FILE_KIND_H
#define TABRIX_CLI_FILE_KIND_H

#include <string>

namespace cli {

enum class FileKind {
    Unknown,
    Empty,    // a file of no bytes
    Compound, // a compound file: the binary workbook (.xls)
    Zip,      // a zip archive: an Open XML workbook (.xlsx, .xlsm ...)
    Biff,     // a bare binary record stream without the compound file
    Markup,   // an HTML or XML document
    Csv,      // comma-separated text
    Tsv       // tab-separated text
};

// The kind the extension of `path` names (case-insensitive); Unknown for
// any other extension.
FileKind kindFromExtension(const std::string &path);

// The kind the first bytes of a file show.  Text files answer Csv; the
// caller tells csv from tsv by the extension.  Answers Unknown for bytes
// that match no signature and are not text.
FileKind kindFromContent(const std::string &head);

// Reads the first bytes of `path`; throws Failure when it cannot be read.
std::string readHead(const std::string &path, size_t count);

// A phrase for messages: "a compound file (a binary .xls workbook)".
const char *describeKind(FileKind kind);

// Whether the library reads and writes this kind as a workbook.
bool isWorkbook(FileKind kind);
bool isText(FileKind kind);

} // namespace cli

#endif
