// The Open Packaging and SpreadsheetML strings the program knows: part
// names, relationship types, content types and namespace names.  Types and
// namespaces are one of the two published URI roots plus a path.
#pragma once

namespace tabrix {
namespace pkg {

// Part names.
inline constexpr const wchar_t *kContentTypesPart = L"/[Content_Types].xml";
inline constexpr const wchar_t *kPackageRels = L"/_rels/.rels";
inline constexpr const wchar_t *kWorkbookPart = L"/xl/workbook.xml";
inline constexpr const wchar_t *kWorkbookTarget = L"xl/workbook.xml";
inline constexpr const wchar_t *kWorkbookRels = L"/xl/_rels/workbook.xml.rels";
inline constexpr const wchar_t *kStylesPart = L"/xl/styles.xml";
inline constexpr const wchar_t *kSharedStringsPart = L"/xl/sharedStrings.xml";
inline constexpr const wchar_t *kCalcChainPart = L"/xl/calcChain.xml";

// URI roots.
#define TABRIX_TRANSITIONAL L"http://schemas.openxmlformats.org"
#define TABRIX_STRICT L"http://purl.oclc.org/ooxml"

// Relationship types (written in the Transitional form in both formats).
inline constexpr const wchar_t *kRelOfficeDocument =
    TABRIX_TRANSITIONAL L"/officeDocument/2006/relationships/officeDocument";
inline constexpr const wchar_t *kRelWorksheet =
    TABRIX_TRANSITIONAL L"/officeDocument/2006/relationships/worksheet";
inline constexpr const wchar_t *kRelStyles =
    TABRIX_TRANSITIONAL L"/officeDocument/2006/relationships/styles";
inline constexpr const wchar_t *kRelSharedStrings =
    TABRIX_TRANSITIONAL L"/officeDocument/2006/relationships/sharedStrings";
inline constexpr const wchar_t *kRelImage =
    TABRIX_TRANSITIONAL L"/officeDocument/2006/relationships/image";
inline constexpr const wchar_t *kRelDrawing =
    TABRIX_TRANSITIONAL L"/officeDocument/2006/relationships/drawing";
// Looked for on load only.
inline constexpr const wchar_t *kRelStylesStrict =
    TABRIX_STRICT L"/officeDocument/relationships/styles";
inline constexpr const wchar_t *kRelSharedStringsStrict =
    TABRIX_STRICT L"/officeDocument/relationships/sharedStrings";

// Content types.
inline constexpr const wchar_t *kCtWorkbook =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
inline constexpr const wchar_t *kCtWorkbookMacro =
    L"application/vnd.ms-excel.sheet.macroEnabled.main+xml";
inline constexpr const wchar_t *kCtTemplate =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml";
inline constexpr const wchar_t *kCtTemplateMacro =
    L"application/vnd.ms-excel.template.macroEnabled.main+xml";
inline constexpr const wchar_t *kCtWorksheet =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
inline constexpr const wchar_t *kCtChartsheet =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.chartsheet+xml";
inline constexpr const wchar_t *kCtStyles =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml";
inline constexpr const wchar_t *kCtSharedStrings =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml";
inline constexpr const wchar_t *kCtRelationships =
    L"application/vnd.openxmlformats-package.relationships+xml";
inline constexpr const wchar_t *kCtTheme =
    L"application/vnd.openxmlformats-officedocument.theme+xml";
inline constexpr const wchar_t *kCtDrawing =
    L"application/vnd.openxmlformats-officedocument.drawing+xml";
inline constexpr const wchar_t *kCtPrinterSettings =
    L"application/vnd.openxmlformats-officedocument.spreadsheetml.printerSettings";
inline constexpr const wchar_t *kCtExtendedProperties =
    L"application/vnd.openxmlformats-officedocument.extended-properties+xml";
inline constexpr const wchar_t *kCtCoreProperties =
    L"application/vnd.openxmlformats-package.core-properties+xml";
inline constexpr const wchar_t *kCtXml = L"application/xml";

// Namespaces of the two package parts (one form in both formats).
inline constexpr const char *kNsRelationships =
    "http://schemas.openxmlformats.org/package/2006/relationships";
inline constexpr const char *kNsContentTypes =
    "http://schemas.openxmlformats.org/package/2006/content-types";

#undef TABRIX_TRANSITIONAL
#undef TABRIX_STRICT

} // namespace pkg
} // namespace tabrix
