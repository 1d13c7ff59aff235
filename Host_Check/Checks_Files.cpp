// Files/IO: the save area and the console.

#include "Host_Check/Check.h"

#include <cstdio>
#include <cstring>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/IO/Load_Save.h";
constexpr char CONSOLE[] = "Files/IO/Debug_Console.h";
constexpr char REFUSED[] =
    "A name that would leave the area or not fit is refused: out is then the empty string, which no "
    "fopen opens.";
constexpr char NAME[] = "host_check_probe.tmp";
constexpr int PATH_MAX_SIZE = 1024;

struct Path
{
    explicit Path(const char* name)
    {
        std::memset(text, 'x', sizeof text);
        LoadSave::_GetSaveFileName(text, PATH_MAX_SIZE, name);
        text[PATH_MAX_SIZE] = '\0';
    }
    ~Path() { std::remove(text); } // as far as the path is one of the system's
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;

    char text[PATH_MAX_SIZE + 1];
};

bool EndsIn(const char* text, const char* ending)
{
    const size_t length = std::strlen(text), wanted = std::strlen(ending);
    return length >= wanted && std::strcmp(text + length - wanted, ending) == 0;
}

void PathsHaveTheirName(Trial& trial)
{
    const Path path(NAME);
    trial.Expect(EndsIn(path.text, NAME), "the path of %s is \"%.100s\"", NAME, path.text);
    trial.Expect(std::strlen(path.text) < PATH_MAX_SIZE - 1, "the path of %s is not ended", NAME);
}

// out ends where size says; the bytes behind it are somebody else's.
void PathsStayInside(Trial& trial)
{
    char out[64];
    for (int size = 0; size <= 8; ++size)
    {
        std::memset(out, 'x', sizeof out);
        LoadSave::_GetSaveFileName(out, size, "host_check_a_name_of_some_length.tmp");
        for (int i = size; i < 64; ++i)
            trial.Expect(out[i] == 'x', "byte %d was written although size is %d", i, size);
    }
}

void ShortRoomIsRefused(Trial& trial)
{
    char out[64];
    for (int size = 1; size <= 8; ++size)
    {
        std::memset(out, 'x', sizeof out);
        LoadSave::_GetSaveFileName(out, size, "host_check_a_name_of_some_length.tmp");
        trial.Expect(out[0] == '\0', "a path that does not fit into %d bytes begins with '%c'", size, out[0]);
    }
}

void LeavingIsRefused(Trial& trial)
{
    for (const char* name : {"../host_check.tmp", "a/../../host_check.tmp", "/tmp/host_check.tmp", ".."})
    {
        char out[PATH_MAX_SIZE] = "x";
        LoadSave::_GetSaveFileName(out, PATH_MAX_SIZE, name);
        trial.Expect(out[0] == '\0', "the name \"%s\" gives the path \"%.100s\"", name, out);
    }
}

void TheEmptyPathIsNotOpened(Trial& trial)
{
    for (const char* mode : {"wb", "rb"})
    {
        _KvFILE* file = LoadSave::fopen("", mode);
        if (!trial.Expect(file == nullptr, "fopen opens the empty path, mode %s", mode))
            LoadSave::fclose(file);
    }
}

void MissingFilesAreNull(Trial& trial)
{
    const Path path("host_check_missing.tmp");
    _KvFILE* file = LoadSave::fopen(path.text, "rb");
    if (!trial.Expect(file == nullptr, "fopen reads a file that was never written"))
        LoadSave::fclose(file);
}

_KvFILE* OpenForWriting(Trial& trial, const Path& path)
{
    EnsureDirectoryIsCreated(path.text);
    _KvFILE* file = LoadSave::fopen(path.text, "wb");
    trial.Expect(file != nullptr, "fopen cannot write \"%.100s\"", path.text);
    return file;
}

void ItemsAreCounted(Trial& trial)
{
    const Path path(NAME);
    _KvFILE* file = OpenForWriting(trial, path);
    if (file == nullptr)
        return;
    const unsigned written = LoadSave::fwrite("123456789012345", 3, 5, file);
    trial.Expect(written == 5, "fwrite of 5 items of 3 bytes answers %u", written);
    const int error = LoadSave::fclose(file);
    trial.Expect(error == 0, "fclose answers %d", error);
}

void ClosedIsZero(Trial& trial)
{
    const Path path(NAME);
    _KvFILE* file = OpenForWriting(trial, path);
    if (file == nullptr)
        return;
    const int error = LoadSave::fclose(file);
    trial.Expect(error == 0, "fclose of an empty file answers %d", error);
}

void WhatIsWrittenIsRead(Trial& trial)
{
    char bytes[600], got[700];
    for (int i = 0; i < 600; ++i)
        bytes[i] = static_cast<char>(i * 7); // zeros, line ends and the end mark of text files among them
    const Path path(NAME);
    _KvFILE* file = OpenForWriting(trial, path);
    if (file == nullptr)
        return;
    LoadSave::fwrite(bytes, 1, 100, file);
    LoadSave::fwrite(bytes + 100, 500, 1, file);
    LoadSave::fclose(file);
    const long size = trial.hooks.readFile(path.text, got, sizeof got);
    if (trial.Expect(size == 600, "600 bytes were written, the file has %ld", size))
        trial.Expect(std::memcmp(bytes, got, 600) == 0, "the bytes of a file differ from what was written");
}

void WritingReplaces(Trial& trial)
{
    char got[16];
    const Path path(NAME);
    for (const char* text : {"longer", "abc"})
    {
        _KvFILE* file = OpenForWriting(trial, path);
        if (file == nullptr)
            return;
        LoadSave::fwrite(text, 1, static_cast<unsigned>(std::strlen(text)), file);
        LoadSave::fclose(file);
    }
    const long size = trial.hooks.readFile(path.text, got, sizeof got);
    trial.Expect(size == 3, "a file of 3 bytes that replaced one of 6 has %ld", size);
}

void DirectoriesAreMade(Trial& trial)
{
    const Path path("host_check_folder/inside/probe.tmp");
    EnsureDirectoryIsCreated(path.text);
    EnsureDirectoryIsCreated(path.text); // they exist now
    _KvFILE* file = LoadSave::fopen(path.text, "wb");
    if (trial.Expect(file != nullptr, "fopen cannot write \"%.100s\" after EnsureDirectoryIsCreated", path.text))
        LoadSave::fclose(file);
}

// ---- the console ----
void WithoutConsoleFilesWork(Trial& trial)
{
    CDebugConsole* const console = dbg_csol;
    dbg_csol = nullptr;
    char out[32] = "x";
    LoadSave::_GetSaveFileName(out, sizeof out, "../outside");
    LoadSave::_GetSaveFileName(out, sizeof out, "a_name_that_is_far_too_long_for_its_room.tmp");
    _KvFILE* file = LoadSave::fopen("", "wb");
    dbg_csol = console;
    if (!trial.Expect(file == nullptr, "fopen opens the empty path"))
        LoadSave::fclose(file);
}

void TheConsoleTakesText(Trial&)
{
    if (dbg_csol == nullptr)
        return;
    dbg_csol->Output("");
    dbg_csol->Output("# host check: 100 % of a line\n"); // no format
}

constexpr Check CHECKS[] = {
    {"file.path", Level::Images, HEADER, "Writes the full path of a save-area file into out, ended within size bytes.",
     Need_Nothing, PathsHaveTheirName},
    {"file.path_inside", Level::Images, HEADER,
     "Writes the full path of a save-area file into out, ended within size bytes.", Need_Nothing, PathsStayInside},
    {"file.path_too_long", Level::Images, HEADER, REFUSED, Need_Nothing, ShortRoomIsRefused},
    {"file.path_leaves", Level::Images, HEADER, REFUSED, Need_Nothing, LeavingIsRefused},
    {"file.empty_path", Level::Images, HEADER, REFUSED, Need_Nothing, TheEmptyPathIsNotOpened},
    {"file.missing", Level::Images, HEADER, "null when it cannot be opened", Need_Nothing, MissingFilesAreNull},
    {"file.items", Level::Images, HEADER, "items written", Need_Nothing, ItemsAreCounted},
    {"file.closed", Level::Images, HEADER, "0 when everything is written", Need_Nothing, ClosedIsZero},
    {"file.content", Level::Images, HEADER, "Files in the game's save area.", Need_File, WhatIsWrittenIsRead},
    {"file.replaced", Level::Images, HEADER, "Files in the game's save area.", Need_File, WritingReplaces},
    {"file.directories", Level::Images, HEADER, "Creates the directories that the path needs.", Need_Nothing,
     DirectoriesAreMade},
    {"console.none", Level::Images, CONSOLE, "null: there is no console", Need_Nothing, WithoutConsoleFilesWork},
    {"console.text", Level::Images, CONSOLE, "text as it stands, no line end added", Need_Nothing, TheConsoleTakesText},
};

} // namespace

Checks FileChecks() { return Table(CHECKS); }

} // namespace HostCheck
