// Pictures and comments of a sheet: see sheet_drawings.h.
#include "sheet_drawings.h"

#include "cli.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace cli {

namespace {

const int kCommentRows = 100, kCommentCols = 26;
// The box of a copied comment: the reader gives only its text.
const int kCommentWidth = 129, kCommentHeight = 75;

// The target's id of source picture `id`, added on first use.
int targetPicture(Workbook &source, Workbook &target, int id, std::map<int, int> &added) {
    auto at = added.find(id);
    if (at != added.end()) return at->second;
    const char *data = nullptr;
    unsigned size = 0;
    source.book()->getPicture(id, &data, &size);
    const int made = data ? target.book()->addPicture2(data, size) : -1;
    if (made < 0)
        throw Failure("cannot copy picture " + std::to_string(id + 1) + ": " +
                      (data ? target.message() : source.message()));
    return added[id] = made;
}

} // namespace

void forEachComment(Sheet *s, const std::function<void(int, int, const char *)> &seen) {
    const int rows = std::max(s->lastRow(), kCommentRows),
              cols = std::max(s->lastCol(), kCommentCols);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c)
            if (const char *text = s->readComment(r, c)) seen(r, c, text);
}

int copyDrawings(Workbook &source, Sheet *from, Workbook &target, Sheet *to,
                 std::map<int, int> &added) {
    for (int p = 0, n = from->pictureSize(); p < n; ++p) {
        int row = 0, col = 0, width = 0, height = 0, dx = 0, dy = 0;
        const int id = from->getPicture(p, &row, &col, nullptr, nullptr, &width, &height, &dx, &dy);
        if (id < 0) continue;
        to->setPicture2(row, col, targetPicture(source, target, id, added), width, height, dx, dy);
    }
    // The texts first: a comment's text lives in the source book's buffer.
    std::vector<std::pair<std::pair<int, int>, std::string>> comments;
    forEachComment(from, [&](int r, int c, const char *text) {
        comments.push_back({{r, c}, text});
    });
    int refused = 0;
    for (const auto &k : comments) {
        to->writeComment(k.first.first, k.first.second, k.second.c_str(), nullptr, kCommentWidth,
                         kCommentHeight);
        const std::string said = target.message();
        refused += said != "ok" && said.compare(0, 8, "warning:") != 0;
    }
    return refused;
}

} // namespace cli
