// Converter: numbers to and from wide text.
#ifndef TABRIX_CONVERTER_H
#define TABRIX_CONVERTER_H

#include <string>

namespace tabrix {

class Converter {
public:
    // "%.17g", at most 50 characters.
    static std::wstring doubleToString(double value);
    static std::wstring intToString(int value);
    // Upper-case hexadecimal without prefix.
    static std::wstring intToHexString(int value);
    static std::string intToAnsiString(int value);
    // No error test: text that isn't a number gives 0.0.
    static double stringToDouble(const std::wstring &text);
    // Plain conversion: text that isn't a number gives 0.
    static int ansiStringToInt(const std::string &text);
    // These two throw tberror "can't convert string to int" when no number
    // can be read.
    static int stringToInt(const std::wstring &text);
    static int hexStringToInt(const std::wstring &text);
};

} // namespace tabrix

#endif
