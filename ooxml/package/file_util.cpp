#include "ooxml/package/file_util.h"

#include <cstdio>
#include <vector>

#include "book/encoding.h"

namespace tabrix {

std::wstring FileUtil::getExtension(const std::wstring &path) {
    size_t dot = path.rfind(L'.');
    return dot == std::wstring::npos ? std::wstring() : path.substr(dot + 1);
}

void FileUtil::normalize(std::wstring &path) {
    for (wchar_t &c : path)
        if (c == L'\\') c = L'/';
    if (path.empty() || path[0] != L'/') path.insert(path.begin(), L'/');
}

std::wstring FileUtil::normalized(std::wstring path) {
    normalize(path);
    return path;
}

void FileUtil::pathSplit(const std::wstring &path, std::wstring &dir, std::wstring &file) {
    size_t slash = path.rfind(L'/');
    if (slash == std::wstring::npos) return;
    dir = path.substr(0, slash);
    file = path.substr(slash + 1);
}

std::wstring FileUtil::getDir(const std::wstring &path) {
    std::wstring dir, file;
    pathSplit(path, dir, file);
    return dir;
}

bool FileUtil::fileExists(const std::wstring &path) {
    FILE *f = fopen(packageNarrow(path).c_str(), "rb");
    if (f) fclose(f);
    return f != nullptr;
}

std::wstring FileUtil::relsPartOf(const std::wstring &partName) {
    std::wstring dir, file;
    pathSplit(normalized(partName), dir, file);
    return dir + L"/_rels/" + file + L".rels";
}

std::wstring FileUtil::resolveTarget(const std::wstring &sourcePart, const std::wstring &target) {
    std::wstring t = target;
    for (wchar_t &c : t)
        if (c == L'\\') c = L'/';
    std::wstring path = !t.empty() && t[0] == L'/' ? t : getDir(normalized(sourcePart)) + L"/" + t;
    // Fold "." and ".." segments; ".." above the root stays at the root.
    std::vector<std::wstring> segs;
    size_t start = 0;
    while (start <= path.size()) {
        size_t end = path.find(L'/', start);
        if (end == std::wstring::npos) end = path.size();
        std::wstring seg = path.substr(start, end - start);
        if (seg == L"..") {
            if (!segs.empty()) segs.pop_back();
        } else if (!seg.empty() && seg != L".") {
            segs.push_back(seg);
        }
        start = end + 1;
    }
    std::wstring out;
    for (const std::wstring &s : segs) out += L"/" + s;
    return out.empty() ? L"/" : out;
}

std::wstring packageWide(const std::string &utf8) {
    std::wstring out;
    try {
        utf8ToWide(utf8.c_str(), out);
    } catch (const std::exception &) {
        out.clear();
        for (unsigned char c : utf8) out += static_cast<wchar_t>(c);
    }
    return out;
}

std::string packageNarrow(const std::wstring &wide) {
    std::string out;
    try {
        wideToUtf8(wide.c_str(), out);
    } catch (const std::exception &) {
        out.clear();
        for (wchar_t c : wide) out += c < 0x80 ? static_cast<char>(c) : '?';
    }
    return out;
}

} // namespace tabrix
