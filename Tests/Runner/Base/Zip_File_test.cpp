#include "Runner/Base/Zip_File.h"

#include "Tests/Runner/Support/Zip_Maker.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
using Runner::FileContents;
using RunnerTest::ZipMaker;

std::vector<uint8_t> Bytes(const std::string& text) { return {text.begin(), text.end()}; }

// What the archive holds, "NAME=CONTENT;" in the order of names, or the line that refuses it, with "! " before it.
std::string Read(const std::string& archive, const Runner::ZipLimits& limits = {})
{
    FileContents files;
    std::string why, text;
    if (!Runner::ReadZip(Bytes(archive), limits, files, why))
        return files.empty() && !why.empty() && why.find('\n') == std::string::npos ? "! " + why : "a bad refusal";
    for (const auto& [name, content] : files)
        text += name + "=" + std::string(content.begin(), content.end()) + ";";
    return text;
}

std::string Read(const ZipMaker& archive) { return Read(archive.Text()); }

bool IsRefused(const std::string& told, const std::string& word)
{
    return told.rfind("! ", 0) == 0 && told.find(word) != std::string::npos;
}

// Made by Info-ZIP's "zip -X -r hop.zip hop": two folders, a deflated file, a stored one.
const char INFO_ZIP[] =
    "504b03040a00000000000000215c00000000000000000000000004000000686f702f504b03041400000008000000215ca462"
    "92e90f000000270000000b000000686f702f686f702e6c7561cbc94fd750cac82f50c0839534b900504b03040a0000000000"
    "0000215c00000000000000000000000009000000686f702f6d6170732f504b03040a00000000000000215c8316dc8c010000"
    "00010000000e000000686f702f6d6170732f612e746d7878504b01021e030a00000000000000215c00000000000000000000"
    "0000040000000000000000001000ed4100000000686f702f504b01021e031400000008000000215ca46292e90f0000002700"
    "00000b0000000000000001000000a48122000000686f702f686f702e6c7561504b01021e030a00000000000000215c000000"
    "000000000000000000090000000000000000001000ed415a000000686f702f6d6170732f504b01021e030a00000000000000"
    "215c8316dc8c01000000010000000e0000000000000001000000a48181000000686f702f6d6170732f612e746d78504b0506"
    "0000000004000400de000000ae0000000000";

std::string FromHex(const std::string& digits)
{
    std::string text;
    for (size_t i = 0; i < digits.size(); i += 2)
        text += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return text;
}

TEST(ZipFile, AnArchiveOfInfoZipIsRead)
{
    EXPECT_EQ(Read(FromHex(INFO_ZIP)), "hop/hop.lua=log(\"hop hop hop hop hop hop hop hop\")\n;hop/maps/a.tmx=x;");
}

TEST(ZipFile, StoredDeflatedAndEmptyFilesAreReadAndFoldersLeftOut)
{
    ZipMaker zip;
    zip.Add("b.txt", "stored").Add({"a.txt", std::string(1000, 'a'), 8}).Add({"sub/", "", 0, 0, 040755}).Add("e", "");
    zip.Add({"z", "", 8});
    EXPECT_EQ(Read(zip), "a.txt=" + std::string(1000, 'a') + ";b.txt=stored;e=;z=;");
    EXPECT_EQ(Read(ZipMaker()), "") << "an archive of nothing";
}

TEST(ZipFile, NamesThatLeadOutOfTheArchiveAreRefused)
{
    for (const char* name : {"../a", "/a", "a/../../b", "..", "a/..", ".", "./a", "a//b", "/", "a\\b", "C:a", "a\nb"})
        EXPECT_TRUE(IsRefused(Read(ZipMaker().Add(name, "x")), "is no name of a file")) << name;
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add(std::string("a\0b", 3), "x")), "is no name of a file"));
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add(std::string(241, 'a'), "x")), "is no name of a file"));
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add("", "x")), "is no name of a file"));
    EXPECT_EQ(Read(ZipMaker().Add("..a/b..c/...", "x")), "..a/b..c/...=x;") << "dots inside of names lead nowhere";
}

TEST(ZipFile, TwoFilesOfOneNameAreRefused)
{
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add("a", "1").Add("a", "2")), "two files have this name"));
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add("a", "1").Add("a/b", "2")), "two files have this name"));
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add("a/b", "1").Add("a", "2")), "two files have this name"));
    EXPECT_EQ(Read(ZipMaker().Add("a.b", "1").Add("a", "2").Add("ab/c", "3")), "a=2;a.b=1;ab/c=3;");
}

TEST(ZipFile, LinksEncryptedFilesAndOtherWaysOfPackingAreRefused)
{
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add({"a", "/etc/passwd", 0, 0, 0120777})), "a: this is a link"));
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add({"a", "", 0, 0, 0020666})), "this is a link or a device"));
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add({"a", "x", 0, 1})), "it is encrypted"));
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add({"a", "x", 12})), "packed in a way that is not read"));
}

TEST(ZipFile, WhatIsTooMuchIsRefusedBeforeItIsUnpacked)
{
    const std::string two = ZipMaker().Add("a", "1234").Add("b", "5678").Text();
    EXPECT_EQ(Read(two, {2, 8}), "a=1234;b=5678;");
    EXPECT_TRUE(IsRefused(Read(two, {1, 8}), "it holds 2 files"));
    EXPECT_TRUE(IsRefused(Read(two, {2, 7}), "unpacked"));
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add({"a", "x", 8, 0, 0100644, 0xFFFFFFFF})), "256 MB unpacked"));
}

// A bomb lies about its size: no more is unpacked than it claims.
TEST(ZipFile, AFileOfAnotherSizeThanItClaimsIsRefused)
{
    for (const uint32_t method : {0u, 8u})
        for (const int64_t claimed : {0, 99, 101})
            EXPECT_TRUE(IsRefused(Read(ZipMaker().Add({"a", std::string(100, 'a'), method, 0, 0, claimed})),
                                  "a: it is damaged"))
                << method << " " << claimed;
    EXPECT_TRUE(IsRefused(Read(ZipMaker().Add({"a", "x", 0, 0, 0, -1, "b"})), "a: it is damaged"));
}

// Only what no reader looks at may change without notice: dates, versions, modes, a comment.
TEST(ZipFile, EveryCutAndEveryChangedByteIsRefusedOrHarmless)
{
    const std::string whole = FromHex(INFO_ZIP), content = Read(whole);
    size_t refused = 0;
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(Read(whole.substr(0, size)).substr(0, 2), "! ") << size;
    for (size_t place = 0; place < whole.size(); ++place)
        for (const int change : {1, 0x80, 0xFF})
        {
            std::string damaged = whole;
            damaged[place] = static_cast<char>(damaged[place] ^ change);
            const std::string told = Read(damaged);
            refused += told.rfind("! ", 0) == 0 ? 1 : 0;
            EXPECT_TRUE(told == content || told.rfind("! ", 0) == 0) << place << ": " << told;
        }
    EXPECT_GT(refused, whole.size());
}
} // namespace
