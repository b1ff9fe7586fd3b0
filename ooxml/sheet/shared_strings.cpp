#include "ooxml/sheet/shared_strings.h"

#include "book/failure_frame.h"
#include "book/tberror.h"

namespace tabrix {

SharedStrings::SharedStrings(binding::e_edition edition) : _part(edition, binding::PART_SST) {}
SharedStrings::SharedStrings(binding::e_edition edition, const char *bytes, size_t size)
    : _part(edition, binding::PART_SST, bytes, size) {}
SharedStrings::~SharedStrings() = default;
void SharedStrings::save(std::string &out) { _part.save(out); }
uint32_t SharedStrings::addString(const std::wstring &) { throw tberror(kNotSupportedYet); }
std::wstring SharedStrings::stringByIndex(uint32_t) const { throw tberror(kNotSupportedYet); }
size_t SharedStrings::size() const { return 0; }

} // namespace tabrix
