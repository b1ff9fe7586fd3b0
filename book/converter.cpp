#include "book/converter.h"

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <sstream>

#include "book/tberror.h"

namespace tabrix {

namespace {
const size_t kBuffer = 50;

int readInt(const std::wstring &text, std::ios_base &(*base)(std::ios_base &)) {
    std::wistringstream in(text);
    int value = 0;
    if (!(in >> base >> value)) throw tberror("can't convert string to int");
    return value;
}
} // namespace

std::wstring Converter::doubleToString(double value) {
    wchar_t buf[kBuffer];
    std::swprintf(buf, kBuffer, L"%.17g", value);
    return buf;
}

std::wstring Converter::intToString(int value) {
    wchar_t buf[kBuffer];
    std::swprintf(buf, kBuffer, L"%d", value);
    return buf;
}

std::wstring Converter::intToHexString(int value) {
    wchar_t buf[kBuffer];
    std::swprintf(buf, kBuffer, L"%X", static_cast<unsigned>(value));
    return buf;
}

std::string Converter::intToAnsiString(int value) {
    char buf[kBuffer];
    std::snprintf(buf, kBuffer, "%d", value);
    return buf;
}

double Converter::stringToDouble(const std::wstring &text) {
    return std::wcstod(text.c_str(), nullptr);
}

int Converter::ansiStringToInt(const std::string &text) { return std::atoi(text.c_str()); }

int Converter::stringToInt(const std::wstring &text) { return readInt(text, std::dec); }

int Converter::hexStringToInt(const std::wstring &text) { return readInt(text, std::hex); }

} // namespace tabrix
