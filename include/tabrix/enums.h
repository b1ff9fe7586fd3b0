// The enumerations that cross the public interfaces.  Their numbers are part
// of the interface and of the flat entry points, which pass them as int.
#ifndef TABRIX_ENUMS_H
#define TABRIX_ENUMS_H

namespace tabrix {

enum CellType {
    CELLTYPE_EMPTY = 0,
    CELLTYPE_NUMBER = 1,
    CELLTYPE_STRING = 2,
    CELLTYPE_BOOLEAN = 3,
    CELLTYPE_BLANK = 4,
    CELLTYPE_ERROR = 5
};

enum SheetType { SHEETTYPE_SHEET = 0, SHEETTYPE_CHART = 1, SHEETTYPE_UNKNOWN = 2 };

enum SheetState { SHEETSTATE_VISIBLE = 0, SHEETSTATE_HIDDEN = 1, SHEETSTATE_VERYHIDDEN = 2 };

enum ErrorCode {
    ERRORTYPE_NULL = 0x00,
    ERRORTYPE_DIV_0 = 0x07,
    ERRORTYPE_VALUE = 0x0F,
    ERRORTYPE_REF = 0x17,
    ERRORTYPE_NAME = 0x1D,
    ERRORTYPE_NUM = 0x24,
    ERRORTYPE_NA = 0x2A,
    ERRORTYPE_NOERROR = 0xFF
};

enum AlignH {
    ALIGNH_GENERAL = 0,
    ALIGNH_LEFT = 1,
    ALIGNH_CENTER = 2,
    ALIGNH_RIGHT = 3,
    ALIGNH_FILL = 4,
    ALIGNH_JUSTIFY = 5,
    ALIGNH_MERGE = 6, // "centerContinuous"
    ALIGNH_DISTRIBUTED = 7
};

enum AlignV {
    ALIGNV_TOP = 0,
    ALIGNV_CENTER = 1,
    ALIGNV_BOTTOM = 2,
    ALIGNV_JUSTIFY = 3,
    ALIGNV_DISTRIBUTED = 4
};

enum BorderStyle {
    BORDERSTYLE_NONE = 0,
    BORDERSTYLE_THIN = 1,
    BORDERSTYLE_MEDIUM = 2,
    BORDERSTYLE_DASHED = 3,
    BORDERSTYLE_DOTTED = 4,
    BORDERSTYLE_THICK = 5,
    BORDERSTYLE_DOUBLE = 6,
    BORDERSTYLE_HAIR = 7,
    BORDERSTYLE_MEDIUMDASHED = 8,
    BORDERSTYLE_DASHDOT = 9,
    BORDERSTYLE_MEDIUMDASHDOT = 10,
    BORDERSTYLE_DASHDOTDOT = 11,
    BORDERSTYLE_MEDIUMDASHDOTDOT = 12,
    BORDERSTYLE_SLANTDASHDOT = 13
};

enum BorderDiagonal {
    BORDERDIAGONAL_NONE = 0,
    BORDERDIAGONAL_DOWN = 1,
    BORDERDIAGONAL_UP = 2,
    BORDERDIAGONAL_BOTH = 3
};

enum FillPattern {
    FILLPATTERN_NONE = 0,
    FILLPATTERN_SOLID = 1,
    FILLPATTERN_GRAY50 = 2, // "mediumGray"
    FILLPATTERN_GRAY75 = 3, // "darkGray"
    FILLPATTERN_GRAY25 = 4, // "lightGray"
    FILLPATTERN_HORSTRIPE = 5,
    FILLPATTERN_VERSTRIPE = 6,
    FILLPATTERN_REVDIAGSTRIPE = 7,
    FILLPATTERN_DIAGSTRIPE = 8,
    FILLPATTERN_DIAGCROSSHATCH = 9,
    FILLPATTERN_THICKDIAGCROSSHATCH = 10,
    FILLPATTERN_THINHORSTRIPE = 11,
    FILLPATTERN_THINVERSTRIPE = 12,
    FILLPATTERN_THINREVDIAGSTRIPE = 13,
    FILLPATTERN_THINDIAGSTRIPE = 14,
    FILLPATTERN_THINHORCROSSHATCH = 15,
    FILLPATTERN_THINDIAGCROSSHATCH = 16,
    FILLPATTERN_GRAY12P5 = 17, // "gray125"
    FILLPATTERN_GRAY6P25 = 18  // "gray0625"
};

enum Underline {
    UNDERLINE_NONE = 0,
    UNDERLINE_SINGLE = 1,
    UNDERLINE_DOUBLE = 2,
    UNDERLINE_SINGLEACC = 33,
    UNDERLINE_DOUBLEACC = 34
};

enum Script { SCRIPT_NORMAL = 0, SCRIPT_SUPER = 1, SCRIPT_SUB = 2 };

// Built-in number format identifiers as the binary workbook numbers them;
// custom formats of a book take identifiers from 164 on.
enum NumFormat {
    NUMFORMAT_GENERAL = 0,
    NUMFORMAT_NUMBER = 1,
    NUMFORMAT_NUMBER_D2 = 2,
    NUMFORMAT_NUMBER_SEP = 3,
    NUMFORMAT_NUMBER_SEP_D2 = 4,
    NUMFORMAT_PERCENT = 9,
    NUMFORMAT_PERCENT_D2 = 10,
    NUMFORMAT_SCIENTIFIC_D2 = 11,
    NUMFORMAT_FRACTION_ONEDIG = 12,
    NUMFORMAT_FRACTION_TWODIG = 13,
    NUMFORMAT_DATE = 14,
    NUMFORMAT_CUSTOM_D_MON_YY = 15,
    NUMFORMAT_CUSTOM_D_MON = 16,
    NUMFORMAT_CUSTOM_MON_YY = 17,
    NUMFORMAT_CUSTOM_HMM_AM = 18,
    NUMFORMAT_CUSTOM_HMMSS_AM = 19,
    NUMFORMAT_CUSTOM_HMM = 20,
    NUMFORMAT_CUSTOM_HMMSS = 21,
    NUMFORMAT_CUSTOM_MDYYYY_HMM = 22,
    NUMFORMAT_TEXT = 49
};

// Paper codes are stored and written as the caller gives them.
enum Paper { PAPER_DEFAULT = 0, PAPER_LETTER = 1, PAPER_A3 = 8, PAPER_A4 = 9 };

// A colour is an index into the book's palette: 8 to 63 select entries.
// In the RGB colour mode a colour is a packed 0xRRGGBB, so the type holds
// every int value.
enum Color : int {
    COLOR_BLACK = 8,
    COLOR_WHITE = 9,
    COLOR_RED = 10,
    COLOR_GREEN = 11,
    COLOR_BLUE = 12,
    COLOR_DEFAULT_FOREGROUND = 64, // borders and a fill's foreground
    COLOR_DEFAULT_BACKGROUND = 65, // a fill's background
    COLOR_NONE = 32767             // automatic; also colorPack's failure answer
};

} // namespace tabrix

#endif
