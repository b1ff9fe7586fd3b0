#include "formula/func_map.h"

#include "book/tberror.h"

#include <vector>

namespace tabrix {

namespace {

struct Row {
    const wchar_t *name;
    uint16_t code;
    uint32_t refMask;
    uint8_t fixedArgs;
};

// Name, function number, reference mask, fixed argument count; in rising
// order of function number.
const Row kTable[] = {
    {L"COUNT", 0, 0x3FFFFFFF, 0},
    {L"IF", 1, 0, 0},
    {L"ISNA", 2, 0, 1},
    {L"ISERROR", 3, 0, 1},
    {L"SUM", 4, 0x3FFFFFFF, 0},
    {L"AVERAGE", 5, 0x3FFFFFFF, 0},
    {L"MIN", 6, 0x3FFFFFFF, 0},
    {L"MAX", 7, 0x3FFFFFFF, 0},
    {L"ROW", 8, 0x1, 0},
    {L"COLUMN", 9, 0x1, 0},
    {L"NA", 10, 0, 0},
    {L"NPV", 11, 0x3FFFFFFE, 0},
    {L"STDEV", 12, 0x3FFFFFFF, 0},
    {L"DOLLAR", 13, 0, 0},
    {L"FIXED", 14, 0, 0},
    {L"SIN", 15, 0, 1},
    {L"COS", 16, 0, 1},
    {L"TAN", 17, 0, 1},
    {L"ATAN", 18, 0, 1},
    {L"PI", 19, 0, 0},
    {L"SQRT", 20, 0, 1},
    {L"EXP", 21, 0, 1},
    {L"LN", 22, 0, 1},
    {L"LOG10", 23, 0, 1},
    {L"ABS", 24, 0, 1},
    {L"INT", 25, 0, 1},
    {L"SIGN", 26, 0, 1},
    {L"ROUND", 27, 0, 2},
    {L"LOOKUP", 28, 0x6, 0},
    {L"INDEX", 29, 0x1, 0},
    {L"REPT", 30, 0, 2},
    {L"MID", 31, 0, 3},
    {L"LEN", 32, 0, 1},
    {L"VALUE", 33, 0, 1},
    {L"TRUE", 34, 0, 0},
    {L"FALSE", 35, 0, 0},
    {L"AND", 36, 0, 0},
    {L"OR", 37, 0x3FFFFFFF, 0},
    {L"NOT", 38, 0, 1},
    {L"MOD", 39, 0, 2},
    {L"DCOUNT", 40, 0x7, 0},
    {L"DSUM", 41, 0x7, 0},
    {L"DAVERAGE", 42, 0x7, 0},
    {L"DMIN", 43, 0x7, 0},
    {L"DMAX", 44, 0x7, 0},
    {L"DSTDEV", 45, 0x7, 0},
    {L"VAR", 46, 0x3FFFFFFF, 0},
    {L"DVAR", 47, 0x7, 0},
    {L"TEXT", 48, 0, 2},
    {L"LINEST", 49, 0xF, 0},
    {L"TREND", 50, 0xF, 0},
    {L"LOGEST", 51, 0xF, 0},
    {L"GROWTH", 52, 0xF, 0},
    {L"GOTO", 53, 0x1, 1},
    {L"HALT", 54, 0, 0},
    {L"RETURN", 55, 0x1, 0},
    {L"PV", 56, 0, 0},
    {L"FV", 57, 0, 0},
    {L"NPER", 58, 0, 0},
    {L"PMT", 59, 0, 0},
    {L"RATE", 60, 0, 0},
    {L"MIRR", 61, 0x1, 3},
    {L"IRR", 62, 0x1, 0},
    {L"RAND", 63, 0, 0},
    {L"MATCH", 64, 0x6, 0},
    {L"DATE", 65, 0, 3},
    {L"TIME", 66, 0, 3},
    {L"DAY", 67, 0, 1},
    {L"MONTH", 68, 0, 1},
    {L"YEAR", 69, 0, 1},
    {L"WEEKDAY", 70, 0, 0},
    {L"HOUR", 71, 0, 1},
    {L"MINUTE", 72, 0, 1},
    {L"SECOND", 73, 0, 1},
    {L"NOW", 74, 0, 0},
    {L"AREAS", 75, 0x1, 1},
    {L"ROWS", 76, 0x1, 1},
    {L"COLUMNS", 77, 0x1, 1},
    {L"OFFSET", 78, 0x1, 0},
    {L"ABSREF", 79, 0x2, 2},
    {L"RELREF", 80, 0x3, 2},
    {L"ARGUMENT", 81, 0x7, 0},
    {L"SEARCH", 82, 0, 0},
    {L"TRANSPOSE", 83, 0, 1},
    {L"ERROR", 84, 0, 0},
    {L"STEP", 85, 0, 0},
    {L"TYPE", 86, 0, 1},
    {L"ECHO", 87, 0, 0},
    {L"SET.NAME", 88, 0, 0},
    {L"CALLER", 89, 0, 0},
    {L"DEREF", 90, 0x1, 1},
    {L"WINDOWS", 91, 0, 0},
    {L"SERIES", 92, 0x17, 0},
    {L"DOCUMENTS", 93, 0, 0},
    {L"ACTIVE.CELL", 94, 0, 0},
    {L"SELECTION", 95, 0, 0},
    {L"RESULT", 96, 0, 0},
    {L"ATAN2", 97, 0, 2},
    {L"ASIN", 98, 0, 1},
    {L"ACOS", 99, 0, 1},
    {L"CHOOSE", 100, 0x3FFFFFFE, 0},
    {L"HLOOKUP", 101, 0x6, 0},
    {L"VLOOKUP", 102, 0x6, 0},
    {L"LINKS", 103, 0, 0},
    {L"INPUT", 104, 0, 0},
    {L"ISREF", 105, 0x1, 1},
    {L"GET.FORMULA", 106, 0x1, 1},
    {L"GET.NAME", 107, 0, 0},
    {L"SET.VALUE", 108, 0x1, 2},
    {L"LOG", 109, 0, 0},
    {L"EXEC", 110, 0, 0},
    {L"CHAR", 111, 0, 1},
    {L"LOWER", 112, 0, 1},
    {L"UPPER", 113, 0, 1},
    {L"PROPER", 114, 0, 1},
    {L"LEFT", 115, 0, 0},
    {L"RIGHT", 116, 0, 0},
    {L"EXACT", 117, 0, 2},
    {L"TRIM", 118, 0, 1},
    {L"REPLACE", 119, 0, 4},
    {L"SUBSTITUTE", 120, 0, 0},
    {L"CODE", 121, 0, 1},
    {L"NAMES", 122, 0, 0},
    {L"DIRECTORY", 123, 0, 0},
    {L"FIND", 124, 0, 0},
    {L"CELL", 125, 0x2, 0},
    {L"ISERR", 126, 0, 1},
    {L"ISTEXT", 127, 0, 1},
    {L"ISNUMBER", 128, 0, 1},
    {L"ISBLANK", 129, 0, 1},
    {L"T", 130, 0x1, 1},
    {L"N", 131, 0x1, 1},
    {L"FOPEN", 132, 0, 0},
    {L"FCLOSE", 133, 0, 1},
    {L"FSIZE", 134, 0, 1},
    {L"FREADLN", 135, 0, 1},
    {L"FREAD", 136, 0, 2},
    {L"FWRITELN", 137, 0, 2},
    {L"FWRITE", 138, 0, 2},
    {L"FPOS", 139, 0, 0},
    {L"DATEVALUE", 140, 0, 1},
    {L"TIMEVALUE", 141, 0, 1},
    {L"SLN", 142, 0, 3},
    {L"SYD", 143, 0, 4},
    {L"DDB", 144, 0, 0},
    {L"GET.DEF", 145, 0, 0},
    {L"REFTEXT", 146, 0x1, 0},
    {L"TEXTREF", 147, 0, 0},
    {L"INDIRECT", 148, 0, 0},
    {L"REGISTER", 149, 0, 0},
    {L"CALL", 150, 0x3FFFFFFE, 0},
    {L"ADD.BAR", 151, 0, 0},
    {L"ADD.MENU", 152, 0x6, 0},
    {L"ADD.COMMAND", 153, 0xE, 0},
    {L"ENABLE.COMMAND", 154, 0, 0},
    {L"CHECK.COMMAND", 155, 0, 0},
    {L"RENAME.COMMAND", 156, 0, 0},
    {L"SHOW.BAR", 157, 0, 0},
    {L"DELETE.MENU", 158, 0, 0},
    {L"DELETE.COMMAND", 159, 0, 0},
    {L"GET.CHART.ITEM", 160, 0, 0},
    {L"DIALOG.BOX", 161, 0x1, 1},
    {L"CLEAN", 162, 0, 1},
    {L"MDETERM", 163, 0, 1},
    {L"MINVERSE", 164, 0, 1},
    {L"MMULT", 165, 0, 1},
    {L"FILES", 166, 0, 0},
    {L"IPMT", 167, 0, 0},
    {L"PPMT", 168, 0, 0},
    {L"COUNTA", 169, 0x3FFFFFFF, 0},
    {L"CANCEL.KEY", 170, 0x2, 0},
    {L"FOR", 171, 0, 0},
    {L"WHILE", 172, 0, 1},
    {L"BREAK", 173, 0, 0},
    {L"NEXT", 174, 0, 0},
    {L"INITIATE", 175, 0, 2},
    {L"REQUEST", 176, 0, 2},
    {L"POKE", 177, 0x6, 3},
    {L"EXECUTE", 178, 0, 2},
    {L"TERMINATE", 179, 0, 1},
    {L"RESTART", 180, 0, 0},
    {L"HELP", 181, 0, 0},
    {L"GET.BAR", 182, 0, 0},
    {L"PRODUCT", 183, 0x3FFFFFFF, 0},
    {L"FACT", 184, 0, 1},
    {L"GET.CELL", 185, 0x2, 0},
    {L"GET.WORKSPACE", 186, 0, 1},
    {L"GET.WINDOW", 187, 0, 0},
    {L"GET.DOCUMENT", 188, 0, 0},
    {L"DPRODUCT", 189, 0x7, 3},
    {L"ISNONTEXT", 190, 0, 1},
    {L"GET.NOTE", 191, 0x1, 0},
    {L"NOTE", 192, 0xE, 0},
    {L"STDEVP", 193, 0x3FFFFFFF, 0},
    {L"VARP", 194, 0x3FFFFFFF, 0},
    {L"DSTDEVP", 195, 0x7, 3},
    {L"DVARP", 196, 0x7, 3},
    {L"TRUNC", 197, 0, 0},
    {L"ISLOGICAL", 198, 0, 1},
    {L"DCOUNTA", 199, 0x7, 3},
    {L"DELETE.BAR", 200, 0, 1},
    {L"UNREGISTER", 201, 0, 1},
    {L"USDOLLAR", 204, 0, 0},
    {L"FINDB", 205, 0, 0},
    {L"SEARCHB", 206, 0, 0},
    {L"REPLACEB", 207, 0, 4},
    {L"LEFTB", 208, 0, 0},
    {L"RIGHTB", 209, 0, 0},
    {L"MIDB", 210, 0, 3},
    {L"LENB", 211, 0, 1},
    {L"ROUNDUP", 212, 0, 2},
    {L"ROUNDDOWN", 213, 0, 2},
    {L"ASC", 214, 0, 1},
    {L"DBCS", 215, 0, 1},
    {L"RANK", 216, 0x2, 0},
    {L"ADDRESS", 219, 0, 0},
    {L"DAYS360", 220, 0, 0},
    {L"TODAY", 221, 0, 0},
    {L"VDB", 222, 0, 0},
    {L"ELSE", 223, 0, 0},
    {L"ELSE.IF", 224, 0, 1},
    {L"END.IF", 225, 0, 0},
    {L"FOR.CELL", 226, 0x6, 0},
    {L"MEDIAN", 227, 0x3FFFFFFF, 0},
    {L"SUMPRODUCT", 228, 0, 0},
    {L"SINH", 229, 0, 1},
    {L"COSH", 230, 0, 1},
    {L"TANH", 231, 0, 1},
    {L"ASINH", 232, 0, 1},
    {L"ACOSH", 233, 0, 1},
    {L"ATANH", 234, 0, 1},
    {L"DGET", 235, 0x7, 3},
    {L"CREATE.OBJECT", 236, 0x7FE, 0},
    {L"VOLATILE", 237, 0, 0},
    {L"LAST.ERROR", 238, 0, 0},
    {L"CUSTOM.UNDO", 239, 0, 0},
    {L"CUSTOM.REPEAT", 240, 0, 0},
    {L"FORMULA.CONVERT", 241, 0x1E, 0},
    {L"GET.LINK.INFO", 242, 0, 0},
    {L"TEXT.BOX", 243, 0, 0},
    {L"INFO", 244, 0, 1},
    {L"GROUP", 245, 0, 0},
    {L"GET.OBJECT", 246, 0, 0},
    {L"DB", 247, 0, 0},
    {L"PAUSE", 248, 0, 0},
    {L"RESUME", 251, 0, 0},
    {L"FREQUENCY", 252, 0x3, 2},
    {L"ADD.TOOLBAR", 253, 0, 0},
    {L"DELETE.TOOLBAR", 254, 0, 1},
    {L"RESET.TOOLBAR", 256, 0, 1},
    {L"EVALUATE", 257, 0, 1},
    {L"GET.TOOLBAR", 258, 0, 0},
    {L"GET.TOOL", 259, 0, 0},
    {L"SPELLING.CHECK", 260, 0, 0},
    {L"ERROR.TYPE", 261, 0, 1},
    {L"APP.TITLE", 262, 0, 0},
    {L"WINDOW.TITLE", 263, 0, 0},
    {L"SAVE.TOOLBAR", 264, 0, 0},
    {L"ENABLE.TOOL", 265, 0, 3},
    {L"PRESS.TOOL", 266, 0, 3},
    {L"REGISTER.ID", 267, 0, 0},
    {L"GET.WORKBOOK", 268, 0, 0},
    {L"AVEDEV", 269, 0x3FFFFFFF, 0},
    {L"BETADIST", 270, 0, 0},
    {L"GAMMALN", 271, 0, 1},
    {L"BETAINV", 272, 0, 0},
    {L"BINOMDIST", 273, 0, 4},
    {L"CHIDIST", 274, 0, 2},
    {L"CHIINV", 275, 0, 2},
    {L"COMBIN", 276, 0, 2},
    {L"CONFIDENCE", 277, 0, 3},
    {L"CRITBINOM", 278, 0, 3},
    {L"EVEN", 279, 0, 1},
    {L"EXPONDIST", 280, 0, 3},
    {L"FDIST", 281, 0, 3},
    {L"FINV", 282, 0, 3},
    {L"FISHER", 283, 0, 1},
    {L"FISHERINV", 284, 0, 1},
    {L"FLOOR", 285, 0, 2},
    {L"GAMMADIST", 286, 0, 4},
    {L"GAMMAINV", 287, 0, 3},
    {L"CEILING", 288, 0, 2},
    {L"HYPGEOMDIST", 289, 0, 4},
    {L"LOGNORMDIST", 290, 0, 3},
    {L"LOGINV", 291, 0, 3},
    {L"NEGBINOMDIST", 292, 0, 3},
    {L"NORMDIST", 293, 0, 4},
    {L"NORMSDIST", 294, 0, 1},
    {L"NORMINV", 295, 0, 3},
    {L"NORMSINV", 296, 0, 1},
    {L"STANDARDIZE", 297, 0, 3},
    {L"ODD", 298, 0, 1},
    {L"PERMUT", 299, 0, 2},
    {L"POISSON", 300, 0, 3},
    {L"TDIST", 301, 0, 3},
    {L"WEIBULL", 302, 0, 4},
    {L"SUMXMY2", 303, 0, 2},
    {L"SUMX2MY2", 304, 0, 2},
    {L"SUMX2PY2", 305, 0, 2},
    {L"CHITEST", 306, 0, 2},
    {L"CORREL", 307, 0, 2},
    {L"COVAR", 308, 0, 2},
    {L"FORECAST", 309, 0, 3},
    {L"FTEST", 310, 0, 2},
    {L"INTERCEPT", 311, 0, 2},
    {L"PEARSON", 312, 0, 2},
    {L"RSQ", 313, 0, 2},
    {L"STEYX", 314, 0, 2},
    {L"SLOPE", 315, 0, 2},
    {L"TTEST", 316, 0, 4},
    {L"PROB", 317, 0, 0},
    {L"DEVSQ", 318, 0x3FFFFFFF, 0},
    {L"GEOMEAN", 319, 0x3FFFFFFF, 0},
    {L"HARMEAN", 320, 0x3FFFFFFF, 0},
    {L"SUMSQ", 321, 0x3FFFFFFF, 0},
    {L"KURT", 322, 0x3FFFFFFF, 0},
    {L"SKEW", 323, 0x3FFFFFFF, 0},
    {L"ZTEST", 324, 0x1, 0},
    {L"LARGE", 325, 0x1, 2},
    {L"SMALL", 326, 0x1, 2},
    {L"QUARTILE", 327, 0x1, 2},
    {L"PERCENTILE", 328, 0x1, 2},
    {L"PERCENTRANK", 329, 0x1, 0},
    {L"MODE", 330, 0, 0},
    {L"TRIMMEAN", 331, 0x1, 2},
    {L"TINV", 332, 0, 2},
    {L"MOVIE.COMMAND", 334, 0, 0},
    {L"GET.MOVIE", 335, 0, 0},
    {L"CONCATENATE", 336, 0, 0},
    {L"POWER", 337, 0, 2},
    {L"PIVOT.ADD.DATA", 338, 0, 0},
    {L"GET.PIVOT.TABLE", 339, 0, 0},
    {L"GET.PIVOT.FIELD", 340, 0, 0},
    {L"GET.PIVOT.ITEM", 341, 0, 0},
    {L"RADIANS", 342, 0, 1},
    {L"DEGREES", 343, 0, 1},
    {L"SUBTOTAL", 344, 0x3FFFFFFE, 0},
    {L"SUMIF", 345, 0x5, 0},
    {L"COUNTIF", 346, 0x1, 2},
    {L"COUNTBLANK", 347, 0x1, 1},
    {L"SCENARIO.GET", 348, 0, 0},
    {L"OPTIONS.LISTS.GET", 349, 0, 1},
    {L"ISPMT", 350, 0, 4},
    {L"DATEDIF", 351, 0, 3},
    {L"DATESTRING", 352, 0, 1},
    {L"NUMBERSTRING", 353, 0, 2},
    {L"ROMAN", 354, 0, 0},
    {L"OPEN.DIALOG", 355, 0, 0},
    {L"SAVE.DIALOG", 356, 0, 0},
    {L"VIEW.GET", 357, 0, 0},
    {L"GETPIVOTDATA", 358, 0x3, 0},
    {L"HYPERLINK", 359, 0, 0},
    {L"PHONETIC", 360, 0x1, 1},
    {L"AVERAGEA", 361, 0x3FFFFFFF, 0},
    {L"MAXA", 362, 0x3FFFFFFF, 0},
    {L"MINA", 363, 0x3FFFFFFF, 0},
    {L"STDEVPA", 364, 0x3FFFFFFF, 0},
    {L"VARPA", 365, 0x3FFFFFFF, 0},
    {L"STDEVA", 366, 0x3FFFFFFF, 0},
    {L"VARA", 367, 0x3FFFFFFF, 0},
    {L"BAHTTEXT", 368, 0, 1},
    {L"THAIDAYOFWEEK", 369, 0, 1},
    {L"THAIDIGIT", 370, 0, 1},
    {L"THAIMONTHOFYEAR", 371, 0, 1},
    {L"THAINUMSOUND", 372, 0, 1},
    {L"THAINUMSTRING", 373, 0, 1},
    {L"THAISTRINGLENGTH", 374, 0, 1},
    {L"ISTHAIDIGIT", 375, 0, 1},
    {L"ROUNDBAHTDOWN", 376, 0, 1},
    {L"ROUNDBAHTUP", 377, 0, 1},
    {L"THAIYEAR", 378, 0, 1},
};

static_assert(sizeof kTable / sizeof kTable[0] == FuncMap::kRows, "function table size");

} // namespace

FuncMap::FuncMap() {
    for (const Row &r : kTable) {
        FI fi;
        fi.funcCode = r.code;
        fi.refMask = r.refMask;
        fi.fixedArgs = r.fixedArgs;
        auto it = _byName.emplace(r.name, fi).first;
        size_t h = hash(it->first);
        while (_hash[h]) h = (h + 1) % kHashSize;
        _hash[h] = &*it;
        _names[r.code] = r.name;
        _rows[r.code] = fi;
    }
}

const FuncMap &FuncMap::instance() {
    static const FuncMap map;
    return map;
}

const wchar_t *FuncMap::name(unsigned code, int *fixedArgs) const {
    if (fixedArgs) *fixedArgs = 0;
    if (code >= 512 || !_names[code]) return L"?";
    if (fixedArgs) *fixedArgs = _rows[code].fixedArgs;
    return _names[code];
}

size_t FuncMap::hash(std::wstring_view name) {
    uint32_t h = 2166136261u;
    for (wchar_t c : name) h = (h ^ uint32_t(c)) * 16777619u;
    return h % kHashSize;
}

const FuncMap::FI *FuncMap::find(std::wstring_view name) const {
    // Every name starts with a capital letter.
    if (name.empty() || name[0] < L'A' || name[0] > L'Z') return nullptr;
    for (size_t h = hash(name); _hash[h]; h = (h + 1) % kHashSize)
        if (_hash[h]->first == name) return &_hash[h]->second;
    return nullptr;
}

uint16_t FuncMap::code(std::wstring_view name) const {
    const FI *fi = find(name);
    return fi ? fi->funcCode : kNotFound;
}

uint64_t FuncMap::codeRef(std::wstring_view name) const {
    const FI *fi = find(name);
    if (!fi) return kNotFound;
    return uint64_t(fi->funcCode) | uint64_t(fi->refMask) << 32;
}

int getFuncParamCount(std::wstring_view text) {
    bool inString = false, inSheet = false, opened = false;
    size_t depth = 0;
    int count = 0;
    for (wchar_t ch : text) {
        if (ch == L' ') continue;
        if (ch == L'"' && !inSheet)
            inString = !inString;
        else if (ch == L'\'' && !inString)
            inSheet = !inSheet;
        if (inString || inSheet) continue;
        if (ch == L'(') {
            if (opened)
                ++depth;
            else
                opened = true;
            continue;
        }
        if (!opened) throw tberror("error: function name without open parenthesis");
        if (ch == L')') {
            if (depth == 0) return count;
            --depth;
        } else if (ch == L';' || ch == L',') {
            if (depth == 0) ++count;
        } else if (count == 0) {
            count = 1;
        }
    }
    throw tberror("error: function parentheses not found");
}

} // namespace tabrix
