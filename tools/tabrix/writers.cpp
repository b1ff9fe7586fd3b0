#include "writers.h"

#include "cell_range.h"
#include "cli.h"

#include <cmath>
#include <cstdio>

namespace cli {

namespace {

// csv and tsv: one line per row, fields in column order.
class SeparatedWriter : public TableWriter {
public:
    SeparatedWriter(std::ostream &out, bool tabs) : _out(out), _tabs(tabs) {}
    void begin(const DumpHeader &) override {}
    void beginRow(int) override { _first = true; }
    void cell(int, int, const CellValue &value) override {
        if (!_first) _out << (_tabs ? '\t' : ',');
        _first = false;
        // A formula without a cached value is blank yet has its text to show.
        if ((value.kind != tabrix::CELLTYPE_EMPTY && value.kind != tabrix::CELLTYPE_BLANK) ||
            !value.text.empty())
            _out << (_tabs ? tsvField(value.text) : csvField(value.text));
    }
    void endRow() override { _out << '\n'; }
    void end() override { _out.flush(); }

private:
    std::ostream &_out;
    bool _tabs;
    bool _first = true;
};

class JsonWriter : public TableWriter {
public:
    explicit JsonWriter(std::ostream &out) : _out(out) {}
    void begin(const DumpHeader &h) override {
        _out << "{\n  \"file\": " << jsonString(h.file) << ",\n  \"sheet\": " << jsonString(h.sheet)
             << ",\n  \"range\": " << jsonString(h.range) << ",\n  \"cells\": [";
    }
    void beginRow(int) override {}
    void cell(int row, int col, const CellValue &v) override {
        if (v.kind == tabrix::CELLTYPE_EMPTY) return;
        _out << (_first ? "\n    " : ",\n    ");
        _first = false;
        _out << "{\"ref\": \"" << cellName(row, col) << "\", \"row\": " << row
             << ", \"col\": " << col << ", \"kind\": \"" << kindName(v.kind)
             << "\", \"value\": " << value(v);
        if (v.isDate) _out << ", \"date\": " << jsonString(v.text);
        _out << ", \"format\": " << v.format << ", \"numFormat\": " << v.numFormat;
        if (!v.numFormatText.empty())
            _out << ", \"numFormatText\": " << jsonString(v.numFormatText);
        if (v.hasFormula)
            _out << ", \"formula\": "
                 << (v.formula.empty() ? std::string("null") : jsonString(v.formula));
        _out << "}";
    }
    void endRow() override {}
    void end() override {
        _out << (_first ? "]\n}\n" : "\n  ]\n}\n");
        _out.flush();
    }

private:
    static std::string value(const CellValue &v) {
        switch (v.kind) {
        case tabrix::CELLTYPE_NUMBER:
            // json has no literal for the values beyond the finite.
            return std::isfinite(v.number) ? numberText(v.number) : jsonString(v.text);
        case tabrix::CELLTYPE_STRING:
        case tabrix::CELLTYPE_ERROR: return jsonString(v.text);
        case tabrix::CELLTYPE_BOOLEAN: return v.flag ? "true" : "false";
        default: return "null";
        }
    }

    std::ostream &_out;
    bool _first = true;
};

} // namespace

std::string csvField(const std::string &text, char separator) {
    bool quote = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    for (char c : text)
        if (c == separator || c == '"' || c == '\n' || c == '\r') quote = true;
    if (!quote) return text;
    std::string out = "\"";
    for (char c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    return out + "\"";
}

std::string tsvField(const std::string &text) {
    std::string out;
    for (char c : text) {
        switch (c) {
        case '\t': out += "\\t"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\\': out += "\\\\"; break;
        default: out += c;
        }
    }
    return out;
}

// The length of the valid UTF-8 sequence at `at`, 0 when there is none.
static size_t utf8Length(const std::string &s, size_t at) {
    unsigned char lead = static_cast<unsigned char>(s[at]);
    size_t n = lead < 0x80         ? 1
               : (lead >> 5) == 6  ? 2
               : (lead >> 4) == 14 ? 3
               : (lead >> 3) == 30 ? 4
                                   : 0;
    if (n == 0 || at + n > s.size()) return 0;
    unsigned long code = n == 1 ? lead : lead & (0x7F >> n);
    for (size_t i = 1; i < n; ++i) {
        unsigned char c = static_cast<unsigned char>(s[at + i]);
        if ((c & 0xC0) != 0x80) return 0;
        code = (code << 6) | (c & 0x3F);
    }
    static const unsigned long kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < kLeast[n] || code > 0x10FFFF || surrogate ? 0 : n;
}

std::string jsonString(const std::string &text) {
    std::string out = "\"";
    for (size_t at = 0; at < text.size(); ++at) {
        char c = text[at];
        unsigned char u = static_cast<unsigned char>(c);
        if (u >= 0x80) {
            // Multi-byte characters pass as they are; a broken sequence
            // becomes U+FFFD so that the output stays json.
            size_t n = utf8Length(text, at);
            if (n == 0) {
                out += "\xEF\xBF\xBD";
            } else {
                out.append(text, at, n);
                at += n - 1;
            }
            continue;
        }
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (u < 0x20 || u == 0x7F) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", u);
                out += buf;
            } else {
                out += c;
            }
        }
    }
    return out + "\"";
}

TextForm parseTextForm(const std::string &name) {
    if (name == "csv") return TextForm::Csv;
    if (name == "tsv") return TextForm::Tsv;
    if (name == "json") return TextForm::Json;
    throw UsageError("unknown format '" + name + "': use csv, tsv or json");
}

std::unique_ptr<TableWriter> makeWriter(TextForm form, std::ostream &out) {
    if (form == TextForm::Json) return std::unique_ptr<TableWriter>(new JsonWriter(out));
    return std::unique_ptr<TableWriter>(new SeparatedWriter(out, form == TextForm::Tsv));
}

} // namespace cli
