// The package layer: part names and the target resolver, content types,
// relationships, and the archive wrappers.
#include <gtest/gtest.h>

#include <cstdlib>
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

TEST(Package, NamesAndTargets) {
    const struct {
        const wchar_t *source, *target, *want;
    } rows[] = {
        {L"/xl/drawings/drawing1.xml", L"../media/image1.png", L"/xl/media/image1.png"},
        {L"/xl/workbook.xml", L"worksheets/sheet1.xml", L"/xl/worksheets/sheet1.xml"},
        {L"/xl/workbook.xml", L"/xl/worksheets/sheet1.xml", L"/xl/worksheets/sheet1.xml"},
        {L"/xl/workbook.xml", L"worksheets\\sheet2.xml", L"/xl/worksheets/sheet2.xml"},
        {L"/", L"xl/workbook.xml", L"/xl/workbook.xml"},
        {L"/xl/workbook.xml", L"./styles.xml", L"/xl/styles.xml"},
        {L"/a.xml", L"../../b.xml", L"/b.xml"},
    };
    for (const auto &r : rows)
        EXPECT_EQ(FileUtil::resolveTarget(r.source, r.target), r.want) << r.target;
    EXPECT_EQ(FileUtil::getExtension(L"a.b/c"), L"b/c");
    EXPECT_EQ(FileUtil::getExtension(L"a."), L"");
    EXPECT_EQ(FileUtil::normalized(L"xl\\workbook.xml"), L"/xl/workbook.xml");
    EXPECT_EQ(FileUtil::relsPartOf(L"/xl/workbook.xml"), L"/xl/_rels/workbook.xml.rels");
    EXPECT_EQ(FileUtil::relsPartOf(L"/"), L"/_rels/.rels");
}

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

TEST(Package, ArchiveWrappers) {
    ZipWriter w;
    w.add(L"/xl\\workbook.xml", "<workbook/>", 11);
    w.add(L"/xl/empty.xml", "", 0);
    w.close();
    char *raw = nullptr;
    size_t n = 0;
    w.getRaw(raw, n);
    ZipReader r(raw, n);
    ASSERT_EQ(r.size(), 1u);
    EXPECT_EQ(r.name(0), L"/xl/workbook.xml");
    char *bytes = nullptr;
    size_t len = 0;
    r.data(0, bytes, len);
    EXPECT_EQ(std::string(bytes, len), "<workbook/>");
    std::free(bytes);
    r.data(5, bytes, len);
    EXPECT_TRUE(bytes == nullptr && len == 0);
    std::free(raw);
    try {
        ZipReader bad("not a zip at all, not even close to one", 40);
        FAIL();
    } catch (const tberror &e) {
        EXPECT_EQ(std::string(e.what()).substr(0, 36), "The central directory was not found ");
    }
}
