// The shared string table: texts that XML can't carry as they are, blanks
// at the edges, and user texts shaped like escapes survive save and load.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "book/tberror.h"
#include "ooxml/sheet/shared_strings.h"

using namespace tabrix;

TEST(SharedStrings, EscapesRoundTripThroughSaveAndLoad) {
    struct Case {
        std::wstring text;
        std::string stored; // the item as saved
    };
    const std::vector<Case> cases = {
        {L"plain", "<si><t>plain</t></si>"},
        {L" lead", "<si><t xml:space=\"preserve\"> lead</t></si>"},
        {L"tail\n", "<si><t xml:space=\"preserve\">tail\n</t></si>"},
        {L"a\x01"
         L"b",
         "<si><t>a_x0001_b</t></si>"},
        {L"cr\r\nlf", "<si><t>cr_x000D_\nlf</t></si>"},
        {L"_x0041_ and _x12", "<si><t>_x005F_x0041_ and _x12</t></si>"},
        {L"\xD83D\xDE00!", "<si><t>\xF0\x9F\x98\x80!</t></si>"},
        {L"lone \xDC00", "<si><t>lone _xDC00_</t></si>"},
        {L"\xFFFF<&>", "<si><t>_xFFFF_&lt;&amp;></t></si>"},
        {L"", "<si><t/></si>"},
        // Longer than the store's next block yet not a long text, longer
        // than any block, then short ones again.
        {std::wstring(60000, L'm'), "<si><t>" + std::string(60000, 'm') + "</t></si>"},
        {std::wstring(100000, L'w'), "<si><t>" + std::string(100000, 'w') + "</t></si>"},
        {L"after long", "<si><t>after long</t></si>"},
    };
    SharedStrings table(binding::TRANSITIONAL);
    for (size_t i = 0; i < cases.size(); ++i) EXPECT_EQ(table.addString(cases[i].text), i);
    EXPECT_EQ(table.addString(L"plain"), 0u);
    std::string saved;
    table.save(saved);
    EXPECT_NE(saved.find("count=\"14\" uniqueCount=\"13\""), std::string::npos) << saved;
    SharedStrings loaded(binding::TRANSITIONAL, saved.data(), saved.size());
    ASSERT_EQ(loaded.size(), cases.size());
    for (size_t i = 0; i < cases.size(); ++i) {
        EXPECT_NE(saved.find(cases[i].stored), std::string::npos) << cases[i].stored;
        EXPECT_EQ(loaded.stringByIndex(uint32_t(i)), cases[i].text) << i;
        EXPECT_EQ(loaded.addString(cases[i].text), i) << "found again " << i;
    }
    EXPECT_THROW(loaded.stringByIndex(13), tberror);
    EXPECT_THROW(SharedStrings(binding::TRANSITIONAL, "<sst", 4), tberror);
}
