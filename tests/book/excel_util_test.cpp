// A1 addresses of cells beyond the last row or column fail with the range
// messages.
#include "book/excel_util.h"
#include "book/tberror.h"

#include <gtest/gtest.h>

#include <string>

using tabrix::ExcelUtil;

TEST(ExcelUtil, RowColToAddrLimits) {
    struct Case {
        int row, col;
        const char *message;
    };
    const Case cases[] = {
        {1048576, 0, "row must be in range 0-1048575"},
        {-2, 0, "row must be in range 0-1048575"},
        {0, 16384, "col must be in range 0-16383"},
        {0, -1, "col must be in range 0-16383"},
    };
    for (const Case &c : cases) {
        std::string msg;
        try {
            ExcelUtil::rowColToAddr(c.row, c.col, true, true);
        } catch (const tabrix::tberror &e) {
            msg = e.what();
        }
        EXPECT_EQ(msg, c.message) << c.row << "," << c.col;
    }
}
