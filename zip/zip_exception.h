// CZipException: a failure of the archive engine, a numeric code (system
// errors keep the platform's number) and the archive's file name.
#pragma once

#include <stdexcept>
#include <string>

namespace tabrix {

class CZipException : public std::exception {
public:
    enum {
        badZipFile = 201,
        badCrc = 202,
        tooManyFiles = 210,
        tooLongData = 211,
        tooBigSize = 212,
        badPassword = 213,
        internalError = 215,
        cdirNotFound = 221,
        noZip64 = 222,
        bytesBeforeZip64 = 223,
        zlibBuffer = 506,
        noMemory = 505,
        zipBomb = 230,
        bzSequence = 600,
        bzData = 603,
        bzMagic = 604,
        bzEof = 606,
    };
    explicit CZipException(int code, std::string fileName = std::string());
    int code() const { return _code; }
    const std::string &fileName() const { return _fileName; }
    // The text of the code, "%s (%s)" with the file name where one is known
    // for the system codes.
    std::string GetErrorDescription() const;
    const char *what() const noexcept override { return _text.c_str(); }
    // The bare text of a code; "Unknown error" for codes without one.
    static const char *textOf(int code);

private:
    int _code;
    std::string _fileName;
    std::string _text;
};

} // namespace tabrix
