// Reading and writing the plain shared string table.  The reader accepts a
// closed shape: the XML declaration, <sst> with the main namespace as its
// only declaration and count and uniqueCount as its only attributes, then
// <si><t>text</t></si> items (the t may say xml:space="preserve") whose text
// is valid UTF-8 with at most the five predefined entities, and nothing
// else.  Any other byte sends the table to the bound tree, which reads (or
// refuses) it by the schema.
#include "ooxml/sheet/plain_strings.h"

#include <charconv>

#include "ooxml/lmx/xml_encoding.h"
#include "ooxml/lmx/xml_reader.h"
#include "ooxml/lmx/xml_writer.h"

namespace tabrix {

namespace {

std::string_view mainNamespace(binding::e_edition edition) {
    return edition == binding::STRICT ? "http://purl.oclc.org/ooxml/spreadsheetml/main"
                                      : "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
}

bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }

// A cursor over the bytes that only moves on a match.
struct Cursor {
    std::string_view in;
    size_t at = 0;

    bool take(std::string_view s) {
        if (in.compare(at, s.size(), s) != 0) return false;
        at += s.size();
        return true;
    }
    void spaces() {
        while (at < in.size() && isSpace(in[at])) ++at;
    }
    // A double-quoted value without markup or references.
    bool quoted(std::string_view &v) {
        if (!take("\"")) return false;
        const size_t end = in.find('"', at);
        if (end == std::string_view::npos) return false;
        v = in.substr(at, end - at);
        if (v.find_first_of("<&") != std::string_view::npos) return false;
        at = end + 1;
        return true;
    }
};

template <class N> bool number(std::string_view v, N &n) {
    auto [p, ec] = std::from_chars(v.data(), v.data() + v.size(), n);
    return ec == std::errc() && p == v.data() + v.size() && !v.empty();
}

// The text of an item up to and including "</t></si>".
bool itemText(Cursor &c, std::string &out) {
    const size_t n = lmx::read_plain_text(c.in.substr(c.at), out);
    if (n == std::string_view::npos) return false;
    c.at += n;
    return c.take("</t></si>");
}

} // namespace

bool readPlainStrings(std::string_view bytes, binding::e_edition edition, PlainStrings &out) {
    Cursor c{bytes};
    c.take("\xEF\xBB\xBF");
    lmx::s_xml_decl decl;
    std::string detail;
    if (lmx::parse_xml_decl(c.in.substr(c.at), decl, detail) != lmx::ELMX_OK) return false;
    if (!decl.encoding.empty() && decl.encoding != "UTF-8" && decl.encoding != "utf-8")
        return false;
    c.at += decl.length;
    c.spaces();
    std::string_view v;
    if (!c.take("<sst xmlns=") || !c.quoted(v) || v != mainNamespace(edition)) return false;
    for (;;) {
        c.spaces();
        if (c.take(">")) break;
        if (c.take("count=")) {
            if (out.hasCount || !c.quoted(v) || !number(v, out.count)) return false;
            out.hasCount = true;
        } else if (c.take("uniqueCount=")) {
            if (out.hasUnique || !c.quoted(v) || !number(v, out.unique)) return false;
            out.hasUnique = true;
        } else {
            return false;
        }
    }
    std::string text;
    for (;;) {
        c.spaces();
        if (c.take("</sst>")) break;
        if (!c.take("<si><t")) return false;
        const bool preserve = c.take(" xml:space=\"preserve\"");
        if (c.take("/></si>"))
            text.clear();
        else if (!c.take(">") || !itemText(c, text))
            return false;
        out.texts.push_back(text);
        out.preserve.push_back(preserve);
    }
    c.spaces();
    return c.at == c.in.size();
}

void writePlainStrings(const PlainStrings &table, binding::e_edition edition, std::string &out) {
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<sst xmlns=\"";
    out += mainNamespace(edition);
    out += '"';
    if (table.hasCount) out += " count=\"" + std::to_string(table.count) + '"';
    if (table.hasUnique) out += " uniqueCount=\"" + std::to_string(table.unique) + '"';
    out += '>';
    for (size_t i = 0; i < table.texts.size(); ++i) {
        out += table.preserve[i] ? "<si><t xml:space=\"preserve\"" : "<si><t";
        if (table.texts[i].empty()) {
            out += "/></si>";
            continue;
        }
        out += '>';
        lmx::output_convert_to_xml(out, table.texts[i], false);
        out += "</t></si>";
    }
    out += "</sst>";
}

} // namespace tabrix
