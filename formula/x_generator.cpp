#include "formula/x_generator.h"

namespace tabrix {

namespace {

struct TypeKind {
    const char *contentType;
    PartKind kind;
};

const TypeKind kTypes[] = {
    {"application/vnd.openxmlformats-package.relationships+xml", PartKind::Relationships},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml", PartKind::Styles},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml",
     PartKind::Worksheet},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml.chartsheet+xml",
     PartKind::ChartSheet},
    {"application/vnd.openxmlformats-officedocument.drawing+xml", PartKind::Drawing},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml",
     PartKind::SharedStrings},
    {"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml",
     PartKind::Workbook},
    {"application/vnd.ms-excel.sheet.macroEnabled.main+xml", PartKind::Workbook},
};

} // namespace

PartKind partKind(const std::string &contentType) {
    for (const TypeKind &t : kTypes)
        if (contentType == t.contentType) return t.kind;
    return PartKind::Binary;
}

} // namespace tabrix
