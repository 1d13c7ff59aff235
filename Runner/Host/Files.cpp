#include "Runner/Host/Files.h"

#include "Files/IO/Debug_Console.h"
#include "Files/IO/Load_Save.h"
#include "Runner/Base/File_Faults.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

struct _KvFILE
{
    FILE* file;
    bool writing;
};

namespace Runner
{
namespace
{
constexpr mode_t DIRECTORY_MODE = 0777; // reduced by the user's umask

// Made on first use and never destroyed, so usable before main and after it.
std::string& Area()
{
    static std::string& area = *new std::string(".");
    return area;
}

bool s_lastWriteFailed = false;

bool IsLink(const std::string& path)
{
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

bool IsDirectory(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Calls visit with each leading part of the path that ends at a separator or at the end (a, a/b, a/b/c), shortest
// first, until visit answers false.
template <typename Visit> bool EachComponent(const std::string& path, Visit visit)
{
    for (size_t end = 0; end != std::string::npos && end < path.size();)
    {
        end = path.find('/', end + 1);
        if (!visit(path.substr(0, end)))
            return false;
    }
    return true;
}

// Makes one directory, unless it is there. errno says why not: the reason of mkdir, which a look at what is there must
// not replace.
bool MakeDirectory(const std::string& path)
{
    if (IsDirectory(path) || (!Faulty(FileOperation::MakeDirectory) && mkdir(path.c_str(), DIRECTORY_MODE) == 0))
        return true;
    const int reason = errno;
    if (reason == EEXIST && IsDirectory(path)) // made by another program meanwhile
        return true;
    errno = reason == EEXIST ? ENOTDIR : reason;
    return false;
}

// Makes a directory and its parents; errno says why not.
bool MakeDirectories(const std::string& path) { return EachComponent(path, MakeDirectory); }

bool MakeDirectories(const std::string& path, std::string& why)
{
    if (MakeDirectories(path))
        return true;
    why = "cannot make the directory " + PrintableName(path) + ": " + std::strerror(errno);
    return false;
}

// ---- names in the save area ----

std::string FullPath(std::string_view name)
{
    const std::string& area = Area();
    const bool ended = !area.empty() && area.back() == '/';
    return area + (ended ? "" : "/") + std::string(name);
}

bool HasControlCharacter(std::string_view name)
{
    for (const char c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            return true;
    return false;
}

bool HasComponent(std::string_view name, std::string_view component)
{
    for (size_t start = 0; start <= name.size();)
    {
        const size_t end = std::min(name.find('/', start), name.size());
        if (name.substr(start, end - start) == component)
            return true;
        start = end + 1;
    }
    return false;
}

bool EndsAsDirectory(std::string_view name)
{
    const size_t slash = name.rfind('/');
    const std::string_view last = slash == std::string_view::npos ? name : name.substr(slash + 1);
    return last.empty() || last == ".";
}

// Symbolic links inside the area are refused, because they may lead out of it. The area itself may be a link: its user
// chose it.
bool PassesLink(std::string_view name)
{
    return !EachComponent(std::string(name), [](const std::string& part) { return !IsLink(FullPath(part)); });
}

// Why the name is refused, or null.
const char* RefusalOf(std::string_view name)
{
    if (name.empty())
        return "the name is empty";
    if (HasControlCharacter(name))
        return "the name has a control character in it";
    if (name.front() == '/')
        return "the name is an absolute path";
    if (HasComponent(name, ".."))
        return "the name leads out of the save area through \"..\"";
    if (EndsAsDirectory(name))
        return "the name is that of a directory";
    return PassesLink(name) ? "the name passes through a link" : nullptr;
}

void Tell(std::string_view name, const char* what, const char* why)
{
    if (dbg_csol != nullptr)
        dbg_csol->Output(("save area: \"" + Printable(name) + "\" " + what + ": " + why + "\n").c_str());
}

bool IsInArea(std::string_view path)
{
    const std::string prefix = FullPath("");
    return path.substr(0, prefix.size()) == prefix;
}
} // namespace

void SetSaveArea(const std::string& path) { Area() = path.empty() ? "." : path; }

const std::string& SaveArea() { return Area(); }

std::string SavePath(const std::string& name)
{
    std::string path(FILENAME_MAX, '\0');
    LoadSave::_GetSaveFileName(path.data(), FILENAME_MAX, name.find('\0') == std::string::npos ? name.c_str() : "");
    path.resize(std::strlen(path.c_str()));
    return path;
}

bool LastWriteFailed() { return s_lastWriteFailed; }

bool PrepareSaveArea(std::string& why)
{
    if (!MakeDirectories(Area(), why))
        return false;
    if (access(Area().c_str(), W_OK | X_OK) == 0)
        return true;
    why = "cannot write into the directory " + PrintableName(Area()) + ": " + std::strerror(errno);
    return false;
}

bool PrepareSaveFile(const std::string& name, std::string& why)
{
    if (const char* refusal = RefusalOf(name))
    {
        why = "\"" + Printable(name) + "\": " + refusal;
        return false;
    }
    const std::string path = FullPath(name);
    return MakeDirectories(path.substr(0, path.rfind('/')), why) && TryToWriteFile(path, why);
}
} // namespace Runner

void LoadSave::_GetSaveFileName(char* out, int size, const char* name)
{
    if (out == nullptr || size <= 0)
        return;
    out[0] = '\0';
    const std::string_view asked = name != nullptr ? name : "";
    const std::string path = Runner::FullPath(asked);
    const char* refusal = Runner::RefusalOf(asked);
    if (refusal == nullptr && path.size() >= static_cast<size_t>(size))
        refusal = "the name is too long";
    if (refusal != nullptr)
        return Runner::Tell(asked, "refused", refusal);
    std::memcpy(out, path.c_str(), path.size() + 1);
}

void EnsureDirectoryIsCreated(const char* path)
{
    const std::string_view file = path != nullptr ? path : "";
    const size_t slash = file.rfind('/');
    if (slash == std::string_view::npos || slash == 0)
        return;
    const std::string directory(file.substr(0, slash));
    if (Runner::IsInArea(file))
    {
        const std::string_view inside = file.substr(Runner::FullPath("").size());
        if (Runner::HasComponent(inside, "..") || Runner::PassesLink(inside))
            return Runner::Tell(inside, "refused", "its directory is not in the save area");
    }
    if (!Runner::MakeDirectories(directory))
        Runner::Tell(directory, "cannot be made", std::strerror(errno));
}

_KvFILE* LoadSave::fopen(const char* path, const char* mode)
{
    if (path == nullptr || mode == nullptr || path[0] == '\0')
        return nullptr;
    const bool writing = std::strpbrk(mode, "wa+") != nullptr;
    FILE* file = Runner::Faulty(Runner::FileOperation::Open) ? nullptr : std::fopen(path, mode);
    _KvFILE* handle = file != nullptr ? new (std::nothrow) _KvFILE{file, writing} : nullptr;
    if (handle == nullptr && file != nullptr)
        std::fclose(file);
    if (writing)
        Runner::s_lastWriteFailed = handle == nullptr;
    return handle;
}

unsigned LoadSave::fwrite(const void* data, unsigned size, unsigned count, _KvFILE* file)
{
    if (size == 0 || count == 0)
        return 0;
    unsigned allowed = count;
    if (Runner::Faulty(Runner::FileOperation::Write) || count > SIZE_MAX / size)
        allowed = 0;
    else if (Runner::Faulty(Runner::FileOperation::ShortWrite))
        allowed = count / 2;
    const unsigned written =
        file != nullptr && allowed != 0 ? static_cast<unsigned>(std::fwrite(data, size, allowed, file->file)) : 0;
    if (written != count)
        Runner::s_lastWriteFailed = true;
    return written;
}

int LoadSave::fclose(_KvFILE* file)
{
    if (file == nullptr)
        return EOF;
    const bool fault = Runner::Faulty(Runner::FileOperation::Close);
    const bool closed = std::fclose(file->file) == 0 && !fault;
    if (file->writing && !closed)
        Runner::s_lastWriteFailed = true;
    delete file;
    return closed ? 0 : EOF;
}
