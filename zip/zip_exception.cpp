#include "zip/zip_exception.h"

namespace tabrix {
namespace {

struct CodeText {
    int code;
    const char *text;
};

// System errors keep the platform's number; the archive's own codes start at 200.
const CodeText kTexts[] = {
    {1, "Not super-user."},
    {2, "No such file or directory."},
    {4, "Interrupted system call."},
    {5, "I/O error."},
    {6, "No such device or address."},
    {9, "Bad file number."},
    {12, "Not enough space."},
    {13, "Permission denied."},
    {14, "Bad address."},
    {17, "File exists."},
    {18, "Cross-device link."},
    {19, "No such device."},
    {20, "Not a directory."},
    {21, "Is a directory."},
    {22, "Invalid argument."},
    {23, "File table overflow."},
    {24, "Too many open files."},
    {27, "File too large."},
    {28, "No space left on device."},
    {29, "Illegal seek."},
    {30, "Read-only file system."},
    {201, "Damaged or not a zip file."},
    {202, "Crc is mismatched."},
    {210, "The limit of the maximum number of files in an archive has been reached."},
    {211, "The filename, the comment or local or central extra field of the file added to the "
          "archive is too long."},
    {212, "The file size is too large to be supported."},
    {213, "An incorrect password set for the file being decrypted."},
    {215, "An internal error."},
    {221, "The central directory was not found in the archive (or you were trying to open not the "
          "last volume of a segmented archive)."},
    {222, "The Zip64 central directory signature was not found in the archive where expected."},
    {223, "The number of bytes before a zip archive must be zero in the Zip64 format."},
    // Bounded inflation: a member or an archive that would inflate beyond a
    // fixed multiple of the archive's size is refused before any allocation.
    {230, "The declared size of a member is out of proportion to the archive (possible zip bomb)."},
    {500, "Zlib library error (end of stream)."},
    {502, "Zlib library error (stream error)."},
    {503, "Zlib library error (stream error)."},
    {504, "Zlib library error (data error)."},
    {505, "Not enough memory."},
    {506, "Zlib library error (buffer error)."},
    {507, "Zlib library error (version error)."},
    {600, "Bzlib library sequence error."},
    {601, "Bzlib library parameters error."},
    {602, "Bzlib library memory error."},
    {603, "Bzlib library data error."},
    {604, "Bzlib library error (invalid magic value)."},
    {605, "Bzlib library IO error."},
    {606, "Bzlib library error (unexpected EOF)."},
    {607, "Bzlib library error (buffer full)."},
    {608, "Bzlib library configuration error."},
    {609, "Bzlib library internal error."},
};

} // namespace

const char *CZipException::textOf(int code) {
    for (const CodeText &t : kTexts)
        if (t.code == code) return t.text;
    return "Unknown error";
}

CZipException::CZipException(int code, std::string fileName)
    : _code(code), _fileName(std::move(fileName)), _text(GetErrorDescription()) {}

std::string CZipException::GetErrorDescription() const {
    std::string text = textOf(_code);
    if (_code < 200 && !_fileName.empty()) text += " (" + _fileName + ")";
    return text;
}

} // namespace tabrix
