// hello: a C++ program built against an installed tabrix with CMake's
// find_package (see CMakeLists.txt beside it).  Writes a book into memory,
// loads it into a second book and prints what it reads.
#include <tabrix.h>
#include <tabrix/IBookT.h>

#include <cstdio>

using tabrix::IBookT;
using tabrix::ISheetT;

int main() {
    auto *book = static_cast<IBookT<char> *>(tbCreateBookCA());
    auto *back = static_cast<IBookT<char> *>(tbCreateBookCA());
    if (!book || !back) return 1;
    book->setLocale("UTF-8");
    ISheetT<char> *sheet = book->addSheet("Hello", nullptr);
    const char *data = nullptr;
    unsigned size = 0;
    bool ok = sheet && sheet->writeStr(0, 0, "answer", nullptr) &&
              sheet->writeNum(0, 1, 42, nullptr) && book->saveRaw(&data, &size) &&
              back->loadRaw(data, size);
    if (ok) {
        // A text the book answers lasts until its next text: print each at once.
        sheet = back->getSheet(0);
        std::printf("%s ", sheet->name());
        std::printf("%s=%g\n", sheet->readStr(0, 0, nullptr), sheet->readNum(0, 1, nullptr));
    } else {
        std::fprintf(stderr, "hello: %s\n", back->errorMessage());
    }
    book->release();
    back->release();
    return ok ? 0 : 1;
}
