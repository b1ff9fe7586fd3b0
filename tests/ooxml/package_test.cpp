// The package layer: content types and relationships, and their messages.
#include <gtest/gtest.h>

#include <string>

#include "book/tberror.h"
#include "ooxml/lmx/lmx_error.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/relationships.h"
#include "ooxml/package/zip_package.h"

using namespace tabrix;

namespace {

std::string saved(XFile &f) {
    std::string s;
    f.save(s);
    return s;
}

std::string failure(const std::string &xml, bool rels) {
    try {
        if (rels)
            Relationships r(xml.data(), xml.size());
        else
            ContentTypes c(xml.data(), xml.size());
        return "";
    } catch (const tberror &e) {
        return e.what();
    }
}

const std::string kRelsNs = "http://schemas.openxmlformats.org/package/2006/relationships";

} // namespace

TEST(Package, ContentTypesAndRelationships) {
    const std::string types =
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Override PartName=\"/xl/workbook.xml\" ContentType=\"wb\"/><Default Extension=\"XML\" "
        "ContentType=\"x\"/></Types>";
    ContentTypes ct(types.data(), types.size());
    EXPECT_EQ(ct.contentType(L"/xl/WORKBOOK.XML"), L"wb");
    EXPECT_EQ(ct.contentType(L"xl\\other.xml"), L"x");
    EXPECT_EQ(ct.contentType(L"/a.png"), L"");
    ct.delOverride(L"/xl/WORKBOOK.XML");
    EXPECT_EQ(ct.contentType(L"/xl/workbook.xml"), L"wb");
    ct.addDefault(L"png", L"image/png");
    ct.addDefault(L"xml", L"application/xml");
    EXPECT_EQ(saved(ct),
              "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
              "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
              "<Override PartName=\"/xl/workbook.xml\" ContentType=\"wb\"/>"
              "<Default Extension=\"XML\" ContentType=\"application/xml\"/>"
              "<Default Extension=\"png\" ContentType=\"image/png\"/></Types>");
    ct.delOverride(L"/xl/workbook.xml");
    EXPECT_EQ(ct.contentType(L"/xl/workbook.xml"), L"application/xml");

    const std::string rels = "<Relationships xmlns=\"" + kRelsNs +
                             "\"><Relationship Id=\"rId2\" Type=\"t\" Target=\"a\"/>"
                             "<Relationship Id=\"rId7\" Type=\"t\" Target=\"b\"/><Relationship "
                             "Id=\"x\" Type=\"u\" Target=\"c\"/>"
                             "</Relationships>";
    Relationships r(rels.data(), rels.size());
    EXPECT_EQ(r.addRelation(L"t", L"d"), L"rId8");
    EXPECT_EQ(r.firstTargetByType(L"t"), L"a");
    EXPECT_EQ(r.nextTarget(), L"b");
    EXPECT_EQ(r.nextTarget(), L"d");
    EXPECT_EQ(r.nextTarget(), L"");
    EXPECT_EQ(r.target(L"x"), L"c");
    r.delRelation(L"rId2");
    r.delRelationByTarget(L"b");
    r.delRelation(L"rId8");
    EXPECT_EQ(r.makeId(), L"rId1");
    EXPECT_EQ(
        saved(r),
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<Relationships xmlns=\"" +
            kRelsNs + "\"><Relationship Target=\"c\" Type=\"u\" Id=\"x\"/></Relationships>");

    EXPECT_EQ(failure("", true), "data is empty");
    EXPECT_EQ(failure("<Relationships xmlns=\"" + kRelsNs +
                          "\"><Relationship Id=\"a\" Type=\"t\"/></Relationships>",
                      true),
              lmx::get_error_description(lmx::ELMX_REQUIRED_ATTRIBUTES_MISSING));
    EXPECT_EQ(failure("<Types/>", false), lmx::get_error_description(lmx::ELMX_ELEMENT_NOT_FOUND));
    EXPECT_EQ(failure("<Types", false), lmx::get_error_description(lmx::ELMX_UNEXPECTED_EOM));
}
