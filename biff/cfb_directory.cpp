#include "biff/cfb_directory.h"

#include "biff/cfb_header.h"
#include "book/tberror.h"

#include <cstring>
#include <cwctype>
#include <sstream>

namespace tabrix {

DirEntry::DirEntry() {
    std::memset(name, 0, sizeof name);
    length = 0;
    type = Unknown;
    color = 0;
    leftSiblingID = rightSiblingID = childID = 0;
    std::memset(clsid, 0, sizeof clsid);
    state = 0;
    creationTime = modifiedTime = 0;
    startingSectorLocation = 0;
    streamSize = 0;
}

DirEntry::DirEntry(const std::wstring &newName, uint8_t newType, uint32_t child) : DirEntry() {
    if (newName.size() >= 32)
        throw tberror("DirEntry::DirEntry(): newName is too big (length must be less 32)");
    for (size_t i = 0; i < newName.size(); ++i) name[i] = newName[i];
    length = uint16_t(2 * newName.size() + 2);
    type = newType;
    childID = child;
    color = 1;
    leftSiblingID = rightSiblingID = kSectorFree;
    startingSectorLocation = kEndOfChain;
}

std::wstring DirEntry::nameString() const {
    size_t n = 0;
    while (n < 32 && name[n] != 0) ++n;
    return std::wstring(name, n);
}

bool DirEntry::nameIs(const wchar_t *other) const {
    std::wstring mine = nameString();
    size_t n = std::wcslen(other);
    if (mine.size() != n) return false;
    for (size_t i = 0; i < n; ++i)
        if (std::towlower(wint_t(mine[i])) != std::towlower(wint_t(other[i]))) return false;
    return true;
}

void DirEntry::toBytes(uint8_t *out) const {
    for (int i = 0; i < 32; ++i) putLE16(out + 2 * i, uint16_t(name[i]));
    putLE16(out + 64, length);
    out[66] = type;
    out[67] = color;
    putLE32(out + 68, leftSiblingID);
    putLE32(out + 72, rightSiblingID);
    putLE32(out + 76, childID);
    std::memcpy(out + 80, clsid, 16);
    putLE32(out + 96, state);
    putLE32(out + 100, uint32_t(creationTime));
    putLE32(out + 104, uint32_t(creationTime >> 32));
    putLE32(out + 108, uint32_t(modifiedTime));
    putLE32(out + 112, uint32_t(modifiedTime >> 32));
    putLE32(out + 116, startingSectorLocation);
    putLE32(out + 120, uint32_t(streamSize));
    putLE32(out + 124, uint32_t(streamSize >> 32));
}

void DirEntry::fromBytes(const uint8_t *in) {
    for (int i = 0; i < 32; ++i) name[i] = wchar_t(getLE16(in + 2 * i));
    length = getLE16(in + 64);
    type = in[66];
    color = in[67];
    leftSiblingID = getLE32(in + 68);
    rightSiblingID = getLE32(in + 72);
    childID = getLE32(in + 76);
    std::memcpy(clsid, in + 80, 16);
    state = getLE32(in + 96);
    creationTime = getLE32(in + 100) | (uint64_t(getLE32(in + 104)) << 32);
    modifiedTime = getLE32(in + 108) | (uint64_t(getLE32(in + 112)) << 32);
    startingSectorLocation = getLE32(in + 116);
    streamSize = getLE32(in + 120); // the upper half is not used
}

std::string DirEntry::dump() const {
    std::ostringstream os;
    std::string ascii;
    for (wchar_t c : nameString()) ascii += (c >= 32 && c < 127) ? char(c) : '?';
    os << "[DirEntry]\n"
       << "name=" << ascii << "\nlength=" << length << "\ntype=" << unsigned(type)
       << "\ncolor=" << unsigned(color) << "\nleftSiblingID=" << leftSiblingID
       << "\nrightSiblingID=" << rightSiblingID << "\nchildID=" << childID << "\nstate=" << state
       << "\ncreationTime=" << creationTime << "\nmodifiedTime=" << modifiedTime
       << "\nstartingSectorLocation=" << startingSectorLocation << "\nstreamSize=" << streamSize
       << "\n";
    return os.str();
}

} // namespace tabrix
