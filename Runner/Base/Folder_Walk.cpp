// The library's own walk (std::filesystem::recursive_directory_iterator) ends the process where memory is refused to
// it, and leaves out without a word what the system does not tell of.

#include "Runner/Base/Folder_Walk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <sys/stat.h>
#include <utility>

namespace Runner
{
namespace
{
class OpenFolder
{
public:
    explicit OpenFolder(const std::string& path) : m_folder(opendir(path.c_str())) {}
    ~OpenFolder()
    {
        if (IsOpen())
            closedir(m_folder);
    }
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    bool IsOpen() const { return m_folder != nullptr; }

    // Null at the end, where errno is 0, and where reading fails.
    const dirent* Next()
    {
        errno = 0;
        return readdir(m_folder);
    }

private:
    DIR* const m_folder;
};

class FolderWalk
{
public:
    FolderWalk(const std::string& top, size_t entries, std::vector<std::string>& files)
        : m_top(top), m_entriesLeft(entries), m_files(files)
    {
    }

    int Run()
    {
        m_folders.emplace_back();
        while (!m_folders.empty() && m_entriesLeft > 0)
        {
            const std::string folder = std::move(m_folders.back());
            m_folders.pop_back();
            LookInto(folder);
        }
        return m_error;
    }

private:
    void NoteError(int error) { m_error = m_error == 0 ? error : m_error; }

    void LookInto(const std::string& folder)
    {
        OpenFolder opened(m_top + "/" + folder);
        if (!opened.IsOpen() && (errno != EACCES || folder.empty()))
            NoteError(errno);
        while (opened.IsOpen() && m_entriesLeft > 0)
        {
            const dirent* const entry = opened.Next();
            if (entry == nullptr)
                return NoteError(errno);
            if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
                LookAt(folder + (folder.empty() ? "" : "/") + entry->d_name);
        }
    }

    void LookAt(const std::string& name)
    {
        struct stat status;
        --m_entriesLeft;
        if (lstat((m_top + "/" + name).c_str(), &status) != 0)
            return NoteError(errno);
        if (S_ISREG(status.st_mode))
            m_files.push_back(name);
        else if (S_ISDIR(status.st_mode))
            m_folders.push_back(name);
    }

    const std::string& m_top;
    size_t m_entriesLeft;
    std::vector<std::string>& m_files;
    std::vector<std::string> m_folders; // not yet looked into, relative to the top one
    int m_error = 0;
};
} // namespace

int ListFilesBelow(const std::string& folder, size_t entries, std::vector<std::string>& files)
{
    const int error = FolderWalk(folder, entries, files).Run();
    std::sort(files.begin(), files.end());
    return error;
}
} // namespace Runner
