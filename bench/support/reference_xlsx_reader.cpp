#include "support/reference_xlsx_reader.h"

#include <pugixml.hpp>
#include <zlib.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

namespace tabrix::bench {

namespace {

uint32_t le16(const unsigned char *p) { return uint32_t(p[0]) | uint32_t(p[1]) << 8; }
uint32_t le32(const unsigned char *p) { return le16(p) | le16(p + 2) << 16; }

// One member of the archive, inflated; false when absent or damaged.
bool member(const std::vector<unsigned char> &zip, const std::string &name,
            std::vector<char> &out) {
    const size_t n = zip.size();
    if (n < 22) return false;
    size_t eocd = n - 22;
    while (eocd > 0 && le32(&zip[eocd]) != 0x06054b50) --eocd;
    if (le32(&zip[eocd]) != 0x06054b50) return false;
    size_t at = le32(&zip[eocd + 16]);
    for (uint32_t i = 0, count = le16(&zip[eocd + 10]); i < count && at + 46 <= n; ++i) {
        const unsigned char *h = &zip[at];
        const uint32_t nameLen = le16(h + 28);
        const size_t next = at + 46 + nameLen + le16(h + 30) + le16(h + 32);
        if (le32(h) != 0x02014b50 || next > n) return false;
        if (nameLen == name.size() && std::memcmp(h + 46, name.data(), nameLen) == 0) {
            const size_t local = le32(h + 42);
            if (local + 30 > n) return false;
            const size_t data = local + 30 + le16(&zip[local + 26]) + le16(&zip[local + 28]);
            const size_t packed = le32(h + 20);
            if (data + packed > n) return false;
            out.resize(le32(h + 24));
            if (le16(h + 10) == 0) {
                std::memcpy(out.data(), &zip[data], out.size());
                return packed == out.size();
            }
            z_stream z{};
            if (inflateInit2(&z, -MAX_WBITS) != Z_OK) return false;
            z.next_in = const_cast<unsigned char *>(&zip[data]);
            z.avail_in = uInt(packed);
            z.next_out = reinterpret_cast<unsigned char *>(out.data());
            z.avail_out = uInt(out.size());
            const int rc = inflate(&z, Z_FINISH);
            inflateEnd(&z);
            return rc == Z_STREAM_END && z.total_out == out.size();
        }
        at = next;
    }
    return false;
}

// The text of a string item: its <t>, or the <t> of each rich run.
size_t itemLength(pugi::xml_node si) {
    size_t len = std::strlen(si.child_value("t"));
    for (pugi::xml_node r : si.children("r")) len += std::strlen(r.child_value("t"));
    return len;
}

bool parse(pugi::xml_document &doc, std::vector<char> &text, const char *what, std::string &error) {
    pugi::xml_parse_result rc = doc.load_buffer_inplace(text.data(), text.size());
    if (!rc) error = std::string(what) + ": " + rc.description();
    return bool(rc);
}

} // namespace

bool referenceRead(const std::string &path, ReferenceSums &sums, std::string &error) {
    std::ifstream in(path, std::ios::binary);
    std::vector<unsigned char> zip((std::istreambuf_iterator<char>(in)),
                                   std::istreambuf_iterator<char>());
    std::vector<char> stringsXml, sheetXml;
    if (!member(zip, "xl/worksheets/sheet1.xml", sheetXml)) {
        error = "no readable xl/worksheets/sheet1.xml";
        return false;
    }
    std::vector<size_t> lengths;
    pugi::xml_document strings;
    if (member(zip, "xl/sharedStrings.xml", stringsXml)) {
        if (!parse(strings, stringsXml, "shared strings", error)) return false;
        for (pugi::xml_node si : strings.child("sst").children("si"))
            lengths.push_back(itemLength(si));
    }
    pugi::xml_document sheet;
    if (!parse(sheet, sheetXml, "sheet", error)) return false;
    for (pugi::xml_node row : sheet.child("worksheet").child("sheetData").children("row"))
        for (pugi::xml_node c : row.children("c")) {
            ++sums.cells;
            const char *t = c.attribute("t").value();
            if (pugi::xml_node f = c.child("f")) sums.formulaChars += std::strlen(f.child_value());
            const char *v = c.child_value("v");
            if (std::strcmp(t, "s") == 0) {
                const size_t k = std::strtoul(v, nullptr, 10);
                if (k < lengths.size()) sums.textChars += lengths[k];
            } else if (std::strcmp(t, "inlineStr") == 0) {
                sums.textChars += itemLength(c.child("is"));
            } else if (std::strcmp(t, "str") == 0) {
                sums.textChars += std::strlen(v);
            } else if (*v && (*t == 0 || std::strcmp(t, "n") == 0)) {
                sums.numbers += std::strtod(v, nullptr);
            }
        }
    return true;
}

} // namespace tabrix::bench
