// The windowed file stream reads the same bytes as the file holds, wherever
// a seek lands relative to the window, and ends where the file ends.
#include "book/file_window.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>

using namespace tabrix;

TEST(FileWindow, ReadsAndSeeksAcrossTheWindow) {
    const std::string path = "/tmp/tabrix_file_window_" + std::to_string(getpid());
    std::string bytes(FileWindowBuf::kWindow * 2 + 1000, '\0');
    for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = char((i * 131 + i / 7) & 0xFF);
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));

    FileWindow f;
    ASSERT_TRUE(f.open(path.c_str()));
    const size_t w = FileWindowBuf::kWindow;
    struct Case {
        size_t at, length;
    };
    // In the first window, across its end, backwards, far ahead, the tail.
    const Case cases[] = {
        {0, 100},   {w - 10, 40},          {5, 512},    {2 * w + 900, 100}, {w, 1},
        {w - 1, 2}, {bytes.size() - 1, 1}, {100, 2 * w}};
    for (const Case &c : cases) {
        SCOPED_TRACE(c.at);
        f.clear();
        f.seekg(std::streamoff(c.at));
        EXPECT_EQ(std::streamoff(f.tellg()), std::streamoff(c.at));
        std::string got(c.length, '\0');
        f.read(&got[0], std::streamsize(c.length));
        ASSERT_EQ(size_t(f.gcount()), c.length);
        EXPECT_EQ(got, bytes.substr(c.at, c.length));
    }
    // Reading past the end stops at the end.
    f.clear();
    f.seekg(-10, std::ios::end);
    char tail[20];
    f.read(tail, 20);
    EXPECT_EQ(f.gcount(), 10);
    f.clear();
    f.seekg(std::streamoff(bytes.size() + 1));
    EXPECT_TRUE(f.fail());

    FileWindow missing;
    EXPECT_FALSE(missing.open((path + ".absent").c_str()));
    FileWindow directory;
    EXPECT_FALSE(directory.open("/tmp"));
    std::remove(path.c_str());
}
