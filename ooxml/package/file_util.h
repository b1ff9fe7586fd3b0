// Part names and paths inside a package: a part name is a wide string with
// a leading "/" and forward slashes ("/xl/workbook.xml").
#pragma once

#include <string>

namespace tabrix {

struct FileUtil {
    // The text after the last "."; empty with no dot or a dot at the end.
    static std::wstring getExtension(const std::wstring &path);
    // Every "\" becomes "/", and a leading "/" is added when missing.
    static void normalize(std::wstring &path);
    static std::wstring normalized(std::wstring path);
    // Splits at the last "/"; a path without one leaves both alone.
    static void pathSplit(const std::wstring &path, std::wstring &dir, std::wstring &file);
    static std::wstring getDir(const std::wstring &path);
    // Whether the file opens for reading (narrow, UTF-8 path).
    static bool fileExists(const std::wstring &path);
    // The relationships part of a part: dir + "/_rels/" + file + ".rels";
    // the package itself ("/" or "") has "/_rels/.rels".
    static std::wstring relsPartOf(const std::wstring &partName);
    // The one resolver of relationship targets: "\" reads as "/", an
    // absolute target stands as it is, a relative one is taken against the
    // folder of its source part; "." and ".." segments are folded.
    static std::wstring resolveTarget(const std::wstring &sourcePart, const std::wstring &target);
};

// Narrow/wide for names and attribute values: UTF-8, with bytes that don't
// decode taken as their own code points.
std::wstring packageWide(const std::string &utf8);
std::string packageNarrow(const std::wstring &wide);

} // namespace tabrix
