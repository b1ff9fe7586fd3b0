#include "support/xml_parts.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "ooxml/lmx/xml_reader.h"

namespace fs = std::filesystem;

namespace xmlparts {

namespace {
void run(const std::string &cmd) { (void)std::system((cmd + " >/dev/null 2>&1").c_str()); }
} // namespace

std::string slurp(const fs::path &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void makeProducerBooks(const fs::path &dir) {
    fs::create_directories(dir);
    std::ofstream(dir / "data.csv") << "name,value,note\n\"caf\xC3\xA9\",1.5,\"a<b & c>d\"\n"
                                       "\"quote \"\"x\"\"\",-2e10,]]>\ntotal,=B2+B3,\n";
    const std::string g = dir.string();
    run("ssconvert --export-type=Gnumeric_Excel:xlsx2 '" + g + "/data.csv' '" + g +
        "/gnumeric.xlsx'");
    run("cd '" + g + "' && soffice --headless --norestore -env:UserInstallation=file://" + g +
        "/lo_profile --convert-to xlsx --outdir '" + g + "/lo' data.csv");
    run("/usr/bin/python3 -c \"import openpyxl, sys; b = openpyxl.Workbook(); s = b.active; "
        "s.append(['caf\xC3\xA9', 1.5, 'a<b & c>d']); s['A3'] = '=SUM(B1:B2)'; "
        "s.merge_cells('C1:D2'); b.save(sys.argv[1])\" '" +
        g + "/openpyxl.xlsx'");
    run("/usr/bin/python3 -c \"import xlsxwriter, sys, datetime; "
        "b = xlsxwriter.Workbook(sys.argv[1]); s = b.add_worksheet(); "
        "s.write(0, 0, 'x', b.add_format({'bold': 1})); s.write_formula(1, 0, '=1+2'); "
        "s.write_row(2, 0, ['caf\u00e9 \u6f22\u5b57 \U0001F600', 1.5, True, -2e10]); "
        "s.write_datetime(3, 0, datetime.datetime(2024, 2, 29, 6), "
        "b.add_format({'num_format': 'yyyy-mm-dd hh:mm'})); "
        "s.write_formula(3, 1, '=1/0', None, '#DIV/0!'); "
        "s.write_formula(3, 2, '=\\\"a\\\"&\\\"b\\\"', None, 'ab'); "
        "s.write_formula(3, 3, '=A3=A3', None, True); s.write_rich_string(4, 0, 'rich ', "
        "b.add_format({'italic': 1}), ' runs ', 'end'); b.close()\" '" +
        g + "/xlsxwriter.xlsx'");
    // The JavaScript writer, when its package is installed: texts as plain
    // cell strings and, in the second book, in the shared table; a formula
    // with its cached value, a date, an error.
    const fs::path npm = fs::path(TABRIX_NPM_DIR) / "node_modules";
    if (fs::exists(npm / "xlsx" / "package.json")) {
        std::ofstream(dir / "sheetjs.js") << R"(const X = require('xlsx');
const ws = {
    A1: {t: 's', v: 'caf\u00e9 \u6f22\u5b57 \ud83d\ude00'}, B1: {t: 'n', v: 1.5}, C1: {t: 'b', v: true},
    A2: {t: 's', v: 'a<b & c>d "q" ]]>'}, B2: {t: 'n', v: -2e10}, C2: {t: 'b', v: false},
    A3: {t: 'n', v: 3, f: 'B1*2'}, B3: {t: 'n', v: 45351.25, z: 'yyyy-mm-dd hh:mm'},
    C3: {t: 'e', v: 0x07}, D3: {t: 's', v: 'x', f: 'LEFT("xy",1)'}, '!ref': 'A1:D3'};
const wb = X.utils.book_new();
X.utils.book_append_sheet(wb, ws, 'SheetJS \u2713');
X.writeFile(wb, process.argv[2]);
X.writeFile(wb, process.argv[3], {bookSST: true});
)";
        run("NODE_PATH='" + npm.string() + "' node '" + g + "/sheetjs.js' '" + g +
            "/sheetjs.xlsx' '" + g + "/sheetjs_sst.xlsx'");
    }
    fs::remove_all(dir / "lo_profile");
}

bool unpack(const fs::path &out, const std::vector<std::string> &roots,
            const std::vector<std::string> &suffixes) {
    std::string ends;
    for (const std::string &s : suffixes) ends += "'" + s + "', ";
    const std::string script =
        "import sys, zipfile, pathlib\n"
        "out = pathlib.Path(sys.argv[1]); n = 0\n"
        "for f in sorted(f for r in sys.argv[2:] for f in pathlib.Path(r).rglob('*')):\n"
        "    if f.suffix.lower() not in ('.xlsx', '.xlsm'): continue\n"
        "    try: z = zipfile.ZipFile(f)\n"
        "    except Exception: continue\n"
        "    n += 1; d = out / str(n)\n"
        "    for i in z.infolist():\n"
        "        if i.filename.endswith((" +
        ends +
        ")) and i.file_size < 50000000:\n"
        "            try: data = z.read(i)\n"
        "            except Exception: continue\n"
        "            p = d / i.filename.replace('[', '_').replace(']', '_')\n"
        "            p.parent.mkdir(parents=True, exist_ok=True); p.write_bytes(data)\n"
        "    d.mkdir(parents=True, exist_ok=True)\n"
        "    (d / 'origin.txt').write_text(str(f))\n";
    const fs::path file = out.parent_path() / "unpack.py";
    std::ofstream(file) << script;
    std::string cmd = "python3 '" + file.string() + "' '" + out.string() + "'";
    for (const std::string &r : roots) cmd += " '" + r + "'";
    return std::system(cmd.c_str()) == 0;
}

std::string canonicalXml(const std::string &doc) {
    lmx::c_xml_reader r(doc.data(), doc.size());
    std::string out, pending;
    // Per open element: whether it has a child, whether it keeps its blanks.
    std::vector<bool> hadChild, keepSpace;
    auto textCounts = [&] { return pending.find_first_not_of(" \t\r\n") != std::string::npos; };
    for (int e; (e = r.next()) != lmx::EV_END_OF_INPUT;) {
        if (e == lmx::EV_ERROR) return "";
        if (e == lmx::EV_TEXT) {
            pending += r.text();
        } else if (e == lmx::EV_START) {
            if (textCounts()) out += pending;
            pending.clear();
            if (!hadChild.empty()) hadChild.back() = true;
            hadChild.push_back(false);
            keepSpace.push_back(false);
            std::vector<std::string> attrs;
            for (size_t i = 0; i < r.attribute_count(); ++i) {
                std::string_view v;
                r.attribute_value(r.attribute(i), v);
                const auto &a = r.attribute(i);
                if (a.ns == lmx::NS_XML && a.local == "space" && v == "preserve")
                    keepSpace.back() = true;
                attrs.push_back("{" + std::string(r.namespace_uri(a.ns)) + "}" +
                                std::string(a.local) + "=\"" + std::string(v) + "\"");
            }
            std::sort(attrs.begin(), attrs.end());
            out += "<{" + std::string(r.namespace_uri(r.ns())) + "}" + std::string(r.local());
            for (const std::string &a : attrs) out += " " + a;
            out += ">";
        } else if (e == lmx::EV_END) {
            if (hadChild.empty()) return "";
            // Blanks that are an element's whole content count only under xml:space.
            if ((!hadChild.back() && keepSpace.back()) || textCounts()) out += pending;
            pending.clear();
            hadChild.pop_back();
            keepSpace.pop_back();
            out += "</>";
        }
    }
    return out;
}

} // namespace xmlparts
