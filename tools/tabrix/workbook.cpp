#include "workbook.h"

#include "cli.h"
#include "progress.h"

#include <tabrix.h>

#include <cctype>
#include <iostream>
#include <sys/stat.h>

namespace cli {

namespace {

bool sameNoCase(const std::string &a, const char *b) {
    size_t i = 0;
    for (; i < a.size() && b[i]; ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return i == a.size() && b[i] == 0;
}

bool allDigits(const std::string &s) {
    if (s.empty() || s.size() > 9) return false;
    for (char c : s)
        if (!std::isdigit(static_cast<unsigned char>(c))) return false;
    return true;
}

std::string extensionOf(const std::string &path) {
    size_t dot = path.find_last_of('.');
    return dot == std::string::npos ? "" : path.substr(dot);
}

// Above this size a load shows its progress line at once.
const long long kLargeFile = 4 * 1024 * 1024;

} // namespace

Workbook::Workbook(FileKind kind) : _kind(kind) {
    void *handle = kind == FileKind::Zip ? tbCreateXMLBookCA() : tbCreateBookCA();
    if (!handle) throw Failure("the library could not make a book");
    _book = static_cast<Book *>(handle);
    _book->setLocale("UTF-8");
}

Workbook::~Workbook() {
    if (_book) _book->release();
}

FileKind Workbook::sniff(const std::string &path) {
    FileKind content = kindFromContent(readHead(path, 512));
    FileKind named = kindFromExtension(path);
    if (content == FileKind::Csv && named == FileKind::Tsv) content = FileKind::Tsv;
    if (isWorkbook(content)) {
        if (named != FileKind::Unknown && named != content)
            std::cerr << "tabrix: note: " << path << " looks like " << describeKind(content)
                      << ", not what its extension " << extensionOf(path)
                      << " says; reading it as one\n";
        return content;
    }
    if (isText(content) && (isText(named) || named == FileKind::Unknown)) return content;
    std::string msg = path + " looks like " + describeKind(content);
    if (content == FileKind::Biff)
        msg += ", which the library does not read";
    else if (content == FileKind::Unknown)
        msg += ", not a workbook: it has neither the compound file nor the zip signature";
    else if (content != FileKind::Empty)
        msg += ", not a workbook";
    throw Failure(msg);
}

// Both book kinds load and save here, so the progress line holds for each.
void Workbook::load(const std::string &path) {
    struct stat st;
    long long size = stat(path.c_str(), &st) == 0 ? st.st_size : 0;
    bool ok;
    {
        Busy busy("loading " + path + " (" + sizeText(size) + ")", size > kLargeFile);
        ok = _book->load(path.c_str());
    }
    _formatsListed = false;
    if (!ok) throw Failure("cannot load " + path + ": " + message());
}

void Workbook::save(const std::string &path) {
    bool ok;
    {
        Busy busy("saving " + path, false);
        ok = _book->save(path.c_str());
    }
    if (!ok) throw Failure("cannot save " + path + ": " + message());
}

std::string Workbook::message() {
    const char *m = _book->errorMessage();
    return m ? m : "";
}

int Workbook::maxRows() const { return _kind == FileKind::Zip ? 1048576 : 65536; }
int Workbook::maxCols() const { return _kind == FileKind::Zip ? 16384 : 256; }

int Workbook::findSheet(const std::string &nameOrNumber) {
    int count = _book->sheetCount();
    if (nameOrNumber.empty()) {
        for (int i = 0; i < count; ++i)
            if (_book->sheetType(i) == tabrix::SHEETTYPE_SHEET) return i;
        if (count > 0) return 0;
        throw Failure("the book has no sheet");
    }
    std::string list;
    for (int i = 0; i < count; ++i) {
        Sheet *s = _book->getSheet(i);
        const char *name = s ? s->name() : nullptr;
        if (name && nameOrNumber == name) return i;
    }
    for (int i = 0; i < count; ++i) {
        Sheet *s = _book->getSheet(i);
        const char *name = s ? s->name() : nullptr;
        if (name && sameNoCase(nameOrNumber, name)) return i;
        list += std::string(list.empty() ? "" : ", ") + "'" + (name ? name : "") + "'";
    }
    if (allDigits(nameOrNumber)) {
        int n = std::stoi(nameOrNumber);
        if (n >= 1 && n <= count) return n - 1;
        throw Failure("no sheet number " + nameOrNumber + ": the book has " +
                      std::to_string(count) + (count == 1 ? " sheet" : " sheets"));
    }
    throw Failure("no sheet named '" + nameOrNumber + "'; the sheets are " +
                  (list.empty() ? "none" : list));
}

Sheet *Workbook::sheet(int index) {
    Sheet *s = _book->getSheet(index);
    if (!s) throw Failure("cannot read sheet " + std::to_string(index + 1) + ": " + message());
    return s;
}

int Workbook::formatIndex(Format *format) {
    if (!format) return -1;
    if (!_formatsListed) {
        _formats.clear();
        int n = _book->formatSize();
        for (int i = 0; i < n; ++i) _formats.emplace(_book->format(i), i);
        _formatsListed = true;
    }
    auto it = _formats.find(format);
    return it == _formats.end() ? -1 : it->second;
}

std::string versionText(int version) {
    unsigned v = unsigned(version);
    return std::to_string(v >> 24) + "." + std::to_string((v >> 16) & 0xFF) + "." +
           std::to_string((v >> 8) & 0xFF) + "." + std::to_string(v & 0xFF);
}

} // namespace cli
