// `tabrix dump FILE`: the cells of one sheet as csv, tsv or json on stdout.
#include "args.h"
#include "cli.h"
#include "sheet_dump.h"
#include "workbook.h"
#include "writers.h"

#include <iostream>

namespace cli {

int runDump(const Args &args) {
    const std::string path = args.positional()[0];
    // What the command line alone can get wrong is checked before the file.
    TextForm form = parseTextForm(args.value("format", "csv"));
    std::string rangeText = args.value("range");
    if (args.has("range")) parseRange(rangeText);

    FileKind kind = Workbook::sniff(path);
    if (!isWorkbook(kind))
        throw Failure(path + " is " + describeKind(kind) +
                      ", not a workbook; 'tabrix convert' turns it into one");
    Workbook wb(kind);
    wb.load(path);
    int index = wb.findSheet(args.value("sheet"));
    Sheet *sheet = wb.sheet(index);
    bool empty = false;
    CellRange range = resolveDumpRange(wb, sheet, rangeText, empty);

    DumpHeader header;
    header.file = path;
    header.sheet = sheet->name() ? sheet->name() : "";
    header.formulas = args.has("formulas");
    auto writer = makeWriter(form, std::cout);
    dumpRange(wb, sheet, range, empty, header, *writer);
    if (!std::cout) throw Failure("cannot write the output");
    return EXIT_OK;
}

} // namespace cli
