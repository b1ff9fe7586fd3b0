// `tabrix convert IN OUT`: between the workbook formats, and between one
// sheet and comma- or tab-separated text.
#include "args.h"
#include "cli.h"
#include "sheet_drawings.h"
#include "sheet_dump.h"
#include "sheet_fill.h"
#include "workbook.h"
#include "writers.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>

namespace cli {

namespace {

// Text out: the chosen sheet, from A1 to its last used cell.
void workbookToText(Workbook &in, const std::string &sheetArg, FileKind outKind,
                    const std::string &outPath) {
    Sheet *sheet = in.sheet(in.findSheet(sheetArg));
    std::ofstream out(outPath, std::ios::binary | std::ios::trunc);
    if (!out) throw Failure("cannot write " + outPath + ": " + std::strerror(errno));
    bool empty = false;
    CellRange range = resolveDumpRange(in, sheet, "", empty);
    DumpHeader header;
    header.sheet = sheet->name() ? sheet->name() : "";
    auto writer = makeWriter(outKind == FileKind::Tsv ? TextForm::Tsv : TextForm::Csv, out);
    dumpRange(in, sheet, range, empty, header, *writer);
    out.close();
    if (!out) throw Failure("cannot write " + outPath + ": " + std::strerror(errno));
}

// The same format: the book is loaded and saved whole, so everything the
// library keeps survives.  With a sheet named, the others are dropped.
void keepFormat(Workbook &in, const std::string &sheetArg, const std::string &outPath) {
    if (!sheetArg.empty()) {
        int keep = in.findSheet(sheetArg);
        for (int i = in.book()->sheetCount() - 1; i >= 0; --i)
            if (i != keep && !in.book()->delSheet(i))
                throw Failure("cannot drop sheet " + std::to_string(i + 1) + ": " + in.message());
    }
    in.save(outPath);
}

// Across the workbook formats, or when asked, the cells are copied sheet by
// sheet into a new book.
void copyBook(Workbook &in, const std::string &sheetArg, FileKind outKind,
              const std::string &outPath) {
    Workbook out(outKind);
    // Date serials count from the source's epoch.
    out.book()->setDate1904(in.book()->isDate1904());
    int count = in.book()->sheetCount();
    int only = sheetArg.empty() ? -1 : in.findSheet(sheetArg);
    long changed = 0;
    int refusedComments = 0;
    NumFormats formats(out);
    std::map<int, int> pictures;
    for (int i = 0; i < count; ++i) {
        if ((only >= 0 && i != only) || in.book()->sheetType(i) != tabrix::SHEETTYPE_SHEET)
            continue;
        Sheet *from = in.sheet(i);
        Sheet *to = out.book()->addSheet(from->name(), nullptr);
        if (!to)
            throw Failure("cannot add sheet '" + std::string(from->name() ? from->name() : "") +
                          "' to " + outPath + ": " + out.message());
        // Merges first: a merge made over written cells would spread the
        // first cell's format over the block as blank cells.
        copyMergesAndNames(from, i, to, only < 0);
        changed += copySheet(in, from, out, to, formats);
        refusedComments += copyDrawings(in, from, out, to, pictures);
    }
    if (changed > 0)
        std::cerr << "tabrix: note: " << changed
                  << " formula or error cells kept only their value or text\n";
    if (refusedComments > 0)
        std::cerr << "tabrix: note: " << refusedComments << " comments stay behind: " << outPath
                  << " takes no comments here\n";
    out.save(outPath);
}

void textToWorkbook(const std::string &inPath, FileKind inKind, const Args &args, FileKind outKind,
                    const std::string &outPath) {
    std::ifstream in(inPath, std::ios::binary);
    if (!in) throw Failure("cannot open " + inPath + ": " + std::strerror(errno));
    Workbook out(outKind);
    std::string name = args.has("sheet") ? args.value("sheet") : sheetNameFor(inPath);
    Sheet *sheet = out.book()->addSheet(name.c_str(), nullptr);
    if (!sheet)
        throw Failure("cannot add sheet '" + name + "' to " + outPath + ": " + out.message());
    importText(in, inKind == FileKind::Tsv, args.has("text"), inPath, out, sheet);
    out.save(outPath);
}

} // namespace

int runConvert(const Args &args) {
    const std::string inPath = args.positional()[0];
    const std::string outPath = args.positional()[1];
    FileKind outKind = kindFromExtension(outPath);
    if (outKind == FileKind::Unknown)
        throw UsageError("cannot tell the format of " + outPath +
                         " from its name: use .xls, .xlsx, .csv or .tsv");
    FileKind inKind = Workbook::sniff(inPath);
    if (isText(inKind) && isText(outKind))
        throw UsageError("both " + inPath + " and " + outPath +
                         " are text; one side must be a workbook");
    if (args.has("cells") && (isText(inKind) || isText(outKind)))
        throw UsageError("--cells applies between two workbooks");
    if (isText(inKind)) {
        textToWorkbook(inPath, inKind, args, outKind, outPath);
        return EXIT_OK;
    }
    if (args.has("text")) throw UsageError("--text applies when the input is csv or tsv");
    Workbook in(inKind);
    in.load(inPath);
    std::string sheetArg = args.value("sheet");
    // A book of the older binary format cannot be saved as it stands: its
    // cells are copied into a new book.
    const bool older = inKind == FileKind::Compound && in.book()->biffVersion() < 0x0600;
    if (isText(outKind))
        workbookToText(in, sheetArg, outKind, outPath);
    else if (outKind == inKind && !args.has("cells") && !older)
        keepFormat(in, sheetArg, outPath);
    else
        copyBook(in, sheetArg, outKind, outPath);
    return EXIT_OK;
}

} // namespace cli
