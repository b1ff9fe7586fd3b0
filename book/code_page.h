// Texts of the older binary format: one or two bytes a character in the
// book's code page (its CodePage record), turned into the library's UTF-16
// units.
#ifndef TABRIX_CODE_PAGE_H
#define TABRIX_CODE_PAGE_H

#include <cstddef>
#include <string>

namespace tabrix {

// `bytes` holds one byte a element (values 0 to 255), as the string readers
// leave a text without a flags byte.  A code page the system cannot convert,
// or a byte sequence it rejects, keeps each byte as the character of the
// same number.
std::wstring codePageToUnits(const wchar_t *bytes, size_t n, unsigned codePage);

} // namespace tabrix

#endif
