#include "file_kind.h"

#include "cli.h"

#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sys/stat.h>

namespace cli {

namespace {

struct ExtensionKind {
    const char *extension;
    FileKind kind;
};

const ExtensionKind kExtensions[] = {
    {".xls", FileKind::Compound}, {".xlt", FileKind::Compound}, {".xlsx", FileKind::Zip},
    {".xlsm", FileKind::Zip},     {".xltx", FileKind::Zip},     {".xltm", FileKind::Zip},
    {".csv", FileKind::Csv},      {".txt", FileKind::Csv},      {".tsv", FileKind::Tsv},
    {".tab", FileKind::Tsv},
};

struct Signature {
    const char *bytes;
    size_t size;
    FileKind kind;
};

// The compound file header, the local file header and the end record of a
// zip archive (an empty archive has only the latter), and the BOF record of
// the versions of the bare record stream.
const Signature kSignatures[] = {
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8, FileKind::Compound},
    {"PK\x03\x04", 4, FileKind::Zip},
    {"PK\x05\x06", 4, FileKind::Zip},
    {"\x09\x08", 2, FileKind::Biff},
    {"\x09\x04", 2, FileKind::Biff},
    {"\x09\x02", 2, FileKind::Biff},
    {"\x09\x00", 2, FileKind::Biff},
};

std::string lower(std::string s) {
    for (char &c : s) c = char(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

bool startsWithNoCase(const std::string &text, size_t at, const char *prefix) {
    size_t n = std::strlen(prefix);
    return text.size() >= at + n && lower(text.substr(at, n)) == prefix;
}

} // namespace

FileKind kindFromExtension(const std::string &path) {
    size_t slash = path.find_last_of('/');
    size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return FileKind::Unknown;
    std::string ext = lower(path.substr(dot));
    for (const ExtensionKind &e : kExtensions)
        if (ext == e.extension) return e.kind;
    return FileKind::Unknown;
}

FileKind kindFromContent(const std::string &head) {
    if (head.empty()) return FileKind::Empty;
    for (const Signature &s : kSignatures)
        if (head.size() >= s.size && head.compare(0, s.size, s.bytes, s.size) == 0) return s.kind;
    size_t at = head.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    while (at < head.size() && std::isspace(static_cast<unsigned char>(head[at]))) ++at;
    if (startsWithNoCase(head, at, "<?xml") || startsWithNoCase(head, at, "<html") ||
        startsWithNoCase(head, at, "<!doctype") || startsWithNoCase(head, at, "<table"))
        return FileKind::Markup;
    // Text has no NUL and few other control characters.
    size_t controls = 0;
    for (char c : head) {
        unsigned char u = static_cast<unsigned char>(c);
        if (u == 0) return FileKind::Unknown;
        if (u < 0x20 && u != '\t' && u != '\n' && u != '\r' && u != '\f') ++controls;
    }
    return controls * 8 > head.size() ? FileKind::Unknown : FileKind::Csv;
}

std::string readHead(const std::string &path, size_t count) {
    struct stat st;
    if (stat(path.c_str(), &st) != 0)
        throw Failure("cannot open " + path + ": " + std::strerror(errno));
    if (S_ISDIR(st.st_mode)) throw Failure("cannot open " + path + ": it is a directory");
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Failure("cannot open " + path + ": " + std::strerror(errno));
    std::string head(count, '\0');
    in.read(&head[0], std::streamsize(count));
    head.resize(size_t(in.gcount()));
    return head;
}

const char *describeKind(FileKind kind) {
    switch (kind) {
    case FileKind::Compound: return "a compound file (a binary .xls workbook)";
    case FileKind::Zip: return "a zip archive (an Open XML .xlsx workbook)";
    case FileKind::Biff:
        return "a bare binary record stream (an .xls of before 1997, without a compound file)";
    case FileKind::Markup: return "an HTML or XML document";
    case FileKind::Csv: return "comma-separated text";
    case FileKind::Tsv: return "tab-separated text";
    case FileKind::Empty: return "an empty file";
    case FileKind::Unknown: break;
    }
    return "a file of unknown kind";
}

bool isWorkbook(FileKind kind) { return kind == FileKind::Compound || kind == FileKind::Zip; }

bool isText(FileKind kind) { return kind == FileKind::Csv || kind == FileKind::Tsv; }

} // namespace cli
