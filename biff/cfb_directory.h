// One 128-byte directory entry of a compound file.
#ifndef TABRIX_BIFF_CFB_DIRECTORY_H
#define TABRIX_BIFF_CFB_DIRECTORY_H

#include <cstdint>
#include <string>

namespace tabrix {

const uint32_t kDirEntrySize = 128;

struct DirEntry {
    enum Type : uint8_t { Unknown = 0, Storage = 1, Stream = 2, Root = 5 };

    wchar_t name[32];
    uint16_t length;
    uint8_t type;
    uint8_t color;
    uint32_t leftSiblingID;
    uint32_t rightSiblingID;
    uint32_t childID;
    uint8_t clsid[16];
    uint32_t state;
    uint64_t creationTime;
    uint64_t modifiedTime;
    uint32_t startingSectorLocation;
    uint64_t streamSize;

    // An all-zero (free) entry.
    DirEntry();
    // A fresh entry: black, no siblings, no stream.  Fails when the name has
    // 32 or more characters.
    DirEntry(const std::wstring &newName, uint8_t newType, uint32_t child);

    std::wstring nameString() const;
    // Case-insensitive comparison of the name, as the directory lookups use.
    bool nameIs(const wchar_t *other) const;
    bool isWorkbook() const { return nameIs(L"Workbook"); }
    bool isBook() const { return nameIs(L"Book"); }
    bool isRoot() const { return nameIs(L"Root Entry"); }

    void toBytes(uint8_t *out) const;
    // Reads a stored entry; only the low 32 bits of the size are kept.
    void fromBytes(const uint8_t *in);
    std::string dump() const;
};

} // namespace tabrix

#endif
