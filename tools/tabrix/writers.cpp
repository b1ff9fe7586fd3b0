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
        if (!_first)
            _out << (_tabs ? '\t' : ',');
        _first = false;
        if (value.kind != tabrix::CELLTYPE_EMPTY && value.kind != tabrix::CELLTYPE_BLANK)
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
        _out << "{\n  \"file\": " << jsonString(h.file) << ",\n  \"sheet\": "
             << jsonString(h.sheet) << ",\n  \"range\": " << jsonString(h.range)
             << ",\n  \"cells\": [";
    }
    void beginRow(int) override {}
    void cell(int row, int col, const CellValue &v) override {
        if (v.kind == tabrix::CELLTYPE_EMPTY)
            return;
        _out << (_first ? "\n    " : ",\n    ");
        _first = false;
        _out << "{\"ref\": \"" << cellName(row, col) << "\", \"row\": " << row
             << ", \"col\": " << col << ", \"kind\": \"" << kindName(v.kind)
             << "\", \"value\": " << value(v);
        if (v.isDate)
            _out << ", \"date\": " << jsonString(v.text);
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
        case tabrix::CELLTYPE_ERROR:
            return jsonString(v.text);
        case tabrix::CELLTYPE_BOOLEAN:
            return v.flag ? "true" : "false";
        default:
            return "null";
        }
    }

    std::ostream &_out;
    bool _first = true;
};

} // namespace

std::string csvField(const std::string &text, char separator) {
    bool quote = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    for (char c : text)
        if (c == separator || c == '"' || c == '\n' || c == '\r')
            quote = true;
    if (!quote)
        return text;
    std::string out = "\"";
    for (char c : text) {
        if (c == '"')
            out += '"';
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

std::string jsonString(const std::string &text) {
    std::string out = "\"";
    for (char c : text) {
        unsigned char u = static_cast<unsigned char>(c);
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
    if (name == "csv")
        return TextForm::Csv;
    if (name == "tsv")
        return TextForm::Tsv;
    if (name == "json")
        return TextForm::Json;
    throw UsageError("unknown format '" + name + "': use csv, tsv or json");
}

std::unique_ptr<TableWriter> makeWriter(TextForm form, std::ostream &out) {
    if (form == TextForm::Json)
        return std::unique_ptr<TableWriter>(new JsonWriter(out));
    return std::unique_ptr<TableWriter>(new SeparatedWriter(out, form == TextForm::Tsv));
}

} // namespace cli
