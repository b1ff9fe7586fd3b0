#include "biff/support/interop_tools.h"
#include "support/oracle.h"

#include <dirent.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>

namespace bifftest {

namespace {
const char *kPython = "/usr/bin/python3";
}

std::string tmpPath(const std::string &name) { return std::string(TABRIX_TEST_TMP) + "/" + name; }

std::string freshDir(const std::string &name) {
    const std::string dir = name.compare(0, 1, "/") == 0 ? name : tmpPath(name);
    std::system(("rm -rf '" + dir + "' && mkdir -p '" + dir + "'").c_str());
    return dir;
}

std::string readFile(const std::string &path) {
    std::ifstream f(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(f), {});
}

void writeFile(const std::string &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

std::string convertWithLibreOffice(const std::string &path, const std::string &dir,
                                   const std::string &to, const std::string &ext) {
    const std::string cmd =
        "cd '" + dir + "' && soffice --headless --norestore -env:UserInstallation=file://" + dir +
        "/profile --convert-to " + to + " --outdir '" + dir + "' '" + path + "' >/dev/null 2>&1";
    std::string base = path.substr(path.rfind('/') + 1);
    const std::string out = dir + "/" + base.substr(0, base.rfind('.')) + "." + ext;
    return std::system(cmd.c_str()) == 0 && std::ifstream(out).good() ? out : "";
}

std::vector<std::string> runPython(const std::string &scriptName, const char *script,
                                   const std::string &args) {
    static std::set<std::string> saved;
    std::string path = tmpPath(scriptName);
    if (saved.insert(scriptName).second) std::ofstream(path) << script;
    std::string cmd = std::string(kPython) + " " + path + " " + args + " 2>/dev/null";
    FILE *p = popen(cmd.c_str(), "r");
    if (!p) return {"ERROR popen"};
    std::vector<std::string> lines;
    std::string cur;
    int ch;
    while ((ch = std::fgetc(p)) != EOF) {
        if (ch == '\n') {
            lines.push_back(cur);
            cur.clear();
        } else {
            cur += char(ch);
        }
    }
    if (!cur.empty()) lines.push_back(cur);
    pclose(p);
    return lines;
}

std::vector<std::string> xlsFromXlsx(const std::string &xlsx, const std::string &dir,
                                     bool gnumeric) {
    // A copy in `dir`: the corpus is read-only, and the converters write
    // beside their input.
    std::string base = xlsx.substr(xlsx.rfind('/') + 1);
    base = base.substr(0, base.rfind('.'));
    const std::string copy = dir + "/" + base + ".xlsx";
    if (copy != xlsx) writeFile(copy, readFile(xlsx));
    std::vector<std::string> made;
    const std::string lo = convertWithLibreOffice(copy, dir, "xls", "xls");
    if (!lo.empty()) made.push_back(lo);
    const std::string gn = dir + "/" + base + "_gnumeric.xls";
    if (gnumeric &&
        std::system(("ssconvert --export-type=Gnumeric_Excel:excel_biff8 '" + copy + "' '" + gn +
                     "' >/dev/null 2>&1")
                        .c_str()) == 0 &&
        std::ifstream(gn).good())
        made.push_back(gn);
    return made;
}

std::vector<std::string> corpusXlsFiles() {
    std::vector<std::string> files;
    for (const char *sub : {"libxls", "xlrd", "calamine"}) {
        std::string dir = std::string(TABRIX_CORPUS_DIR) + "/public/" + sub;
        DIR *d = opendir(dir.c_str());
        if (!d) continue;
        while (dirent *e = readdir(d)) {
            std::string n = e->d_name;
            if (n.size() > 4 && n.compare(n.size() - 4, 4, ".xls") == 0)
                files.push_back(dir + "/" + n);
        }
        closedir(d);
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> freshProducersFiles(const std::string &scratchName) {
    std::vector<std::string> files;
    std::string dir = freshDir(scratchName);
    std::string csv = dir + "/table.csv";
    std::ofstream(csv) << "name,amount,ok\nSeattle,350.5,TRUE\nSan Diego,600,FALSE\n\"caf\xc3\xa9, "
                          "ltd\",-1e-3,TRUE\n"
                          "\"two\nlines\",12345678.125,\n";
    auto made = [&](const std::string &path, const std::string &cmd) {
        if (std::system((cmd + " >/dev/null 2>&1").c_str()) == 0 && std::ifstream(path).good())
            files.push_back(path);
    };
    std::string lo =
        "soffice --headless --norestore -env:UserInstallation=file://" + dir + "/lo_profile ";
    made(dir + "/table.xls",
         "cd '" + dir + "' && " + lo + "--convert-to 'xls:MS Excel 97' table.csv");
    if (oracle::has("openpyxl")) {
        std::string py = dir + "/make_xlsx.py";
        std::ofstream(py) << "import openpyxl, sys\n"
                             "from openpyxl.styles import Font\n"
                             "wb = openpyxl.Workbook()\n"
                             "ws = wb.active\n"
                             "ws.title = 'Données'\n"
                             "for r in range(1, 200):\n"
                             "    ws.cell(r, 1, r * 1.5)\n"
                             "    ws.cell(r, 2, 'text %d' % r)\n"
                             "    ws.cell(r, 3, r % 3 == 0)\n"
                             "ws['E1'] = 'bold'\n"
                             "ws['E1'].font = Font(bold=True, color='FFFF0000')\n"
                             "ws['E2'] = 0.25\n"
                             "ws['E2'].number_format = '0.0%'\n"
                             "ws['E3'] = '#N/A'\n"
                             "ws['E4'] = '#DIV/0!'\n"
                             "ws2 = wb.create_sheet('Лист')\n"
                             "ws2['A1'] = '中文'\n"
                             "ws2['C7'] = -3.75\n"
                             "wb.create_sheet('Empty')\n"
                             "wb.save(sys.argv[1])\n";
        if (std::system(("/usr/bin/python3 '" + py + "' '" + dir + "/book.xlsx' >/dev/null 2>&1")
                            .c_str()) == 0)
            made(dir + "/book.xls",
                 "cd '" + dir + "' && " + lo + "--convert-to 'xls:MS Excel 97' book.xlsx");
    }
    made(dir + "/gnumeric.xls", "ssconvert --export-type=Gnumeric_Excel:excel_biff8 '" + csv +
                                    "' '" + dir + "/gnumeric.xls'");
    if (oracle::has("xlwt"))
        made(
            dir + "/xlwt.xls",
            "/usr/bin/python3 -c \"import xlwt; b = xlwt.Workbook(); s = b.add_sheet('Data'); "
            "bold = xlwt.easyxf('font: bold on, colour red'); "
            "[s.write(r, c, v) for r, row in enumerate([['name', 'amount', 'ok'], ['Seattle', "
            "350.5, True], "
            "['San Diego', 600, False]]) for c, v in enumerate(row)]; s.write(5, 3, 'bold', bold); "
            "s.write(65535, 255, 'corner'); "
            "t = b.add_sheet(u'\\u0414\\u0440\\u0443\\u0433\\u043e\\u0439'); t.write(0, 0, 1.5); "
            "t.write(1, 1, u'caf\\u00e9'); b.save('" +
                dir + "/xlwt.xls')\"");
    return files;
}

} // namespace bifftest
