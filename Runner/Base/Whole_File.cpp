#include "Runner/Base/Whole_File.h"

#include "Runner/Base/File_Faults.h"
#include "Runner/Base/Packed_Files.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Uninterrupted.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Runner
{
namespace
{
constexpr int NO_FILE = -1;
constexpr mode_t FILE_MODE = 0666; // reduced by the user's umask

bool Failed(std::string& why, const char* action, const std::string& path)
{
    why = std::string("cannot ") + action + " " + PrintableName(path) + ": " + std::strerror(errno);
    return false;
}

// An open file descriptor.
class File
{
public:
    File(const std::string& path, int flags) : m_file(Open(path, flags)) {}
    ~File() { Close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool IsOpen() const { return m_file != NO_FILE; }
    int Number() const { return m_file; }

    bool Close()
    {
        if (m_file == NO_FILE)
            return true;
        const bool fault = Faulty(FileOperation::Close);
        const bool closed = close(m_file) == 0;
        m_file = NO_FILE;
        if (fault)
            errno = ENOSPC;
        return closed && !fault;
    }

private:
    static int Open(const std::string& path, int flags)
    {
        return Faulty(FileOperation::Open) ? NO_FILE : open(path.c_str(), flags | O_CLOEXEC, FILE_MODE);
    }

    int m_file;
};

// The new file under its temporary name. Removed by the destructor unless it was renamed.
class PartFile
{
public:
    explicit PartFile(const std::string& path) : m_path(path) {}
    ~PartFile()
    {
        if (!m_renamed)
            Remove();
    }
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    void Remove() const { unlink(m_path.c_str()); }

    bool RenameTo(const std::string& path)
    {
        m_renamed = !Faulty(FileOperation::Rename) && rename(m_path.c_str(), path.c_str()) == 0;
        return m_renamed;
    }

private:
    std::string m_path;
    bool m_renamed = false;
};

// Writes all bytes: one call may write fewer than it was given.
bool WriteAll(int file, const unsigned char* data, size_t size)
{
    while (size > 0)
    {
        if (Faulty(FileOperation::Write))
            return false;
        const bool cut = Faulty(FileOperation::ShortWrite);
        const ssize_t written = Uninterrupted([&] { return write(file, data, cut ? size / 2 : size); });
        if (cut)
            errno = ENOSPC;
        if (cut || written < 0)
            return false;
        data += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

bool Sync(int file) { return !Faulty(FileOperation::Sync) && fsync(file) == 0; }

// Syncs the directory, so that the new name survives a crash too. Not every file system can, so a failure is ignored:
// the file is whole under the old name or the new one.
void SyncDirectoryOf(const std::string& path)
{
    const size_t slash = path.rfind('/');
    const std::string directory = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int file = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file == NO_FILE)
        return;
    fsync(file);
    close(file);
}

// A rename would put a file in the place of a device or a pipe. Where nothing is, nothing is lost; a file whose kind
// the system does not tell stays as it is.
bool MayBeReplaced(const std::string& path, std::string& why)
{
    struct stat status;
    if (stat(path.c_str(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR || Failed(why, "write", path);
    if (!S_ISREG(status.st_mode))
        why = "cannot write " + PrintableName(path) + ": it is no ordinary file";
    return S_ISREG(status.st_mode);
}

// After the last write: sync, close, rename.
bool Establish(File& file, PartFile& part, const std::string& path, std::string& why)
{
    if (!Sync(file.Number()))
        return Failed(why, "write", path);
    if (!file.Close())
        return Failed(why, "close", path);
    if (!part.RenameTo(path))
        return Failed(why, "put in place", path);
    SyncDirectoryOf(path);
    return true;
}

// The size of an ordinary file with at most that many bytes; else false, and the reason.
bool SizeOf(int file, uintmax_t most, uintmax_t& size, const char*& reason)
{
    struct stat status;
    reason = nullptr;
    if (fstat(file, &status) != 0)
        reason = std::strerror(errno);
    else if (!S_ISREG(status.st_mode) || status.st_size < 0)
        reason = "not a file";
    else if (static_cast<uintmax_t>(status.st_size) > most)
        reason = "too large";
    size = reason == nullptr ? static_cast<uintmax_t>(status.st_size) : 0;
    return reason == nullptr;
}

// Fills `bytes`, whose size is the file's. If the file has become shorter meanwhile, so does `bytes`.
bool ReadAll(int file, std::vector<uint8_t>& bytes)
{
    size_t filled = 0;
    while (filled < bytes.size())
    {
        const ssize_t got = Uninterrupted([&] { return read(file, bytes.data() + filled, bytes.size() - filled); });
        if (got < 0)
            return false;
        if (got == 0)
            break;
        filled += static_cast<size_t>(got);
    }
    bytes.resize(filled);
    return true;
}

// The first `wanted` bytes of an ordinary file that has at most `most`.
bool ReadOrdinary(const std::string& path, uintmax_t most, size_t wanted, std::vector<uint8_t>& bytes, std::string& why)
{
    bytes.clear();
    const File file(path, O_RDONLY | O_NONBLOCK); // a pipe without a writer must not block
    if (!file.IsOpen())
        return Failed(why, "open", path);
    uintmax_t size = 0;
    const char* reason = nullptr;
    if (!SizeOf(file.Number(), most, size, reason))
    {
        why = "cannot read " + PrintableName(path) + ": " + reason;
        return false;
    }
    bytes.resize(static_cast<size_t>(std::min<uintmax_t>(size, wanted)));
    if (ReadAll(file.Number(), bytes))
        return true;
    bytes.clear();
    return Failed(why, "read", path);
}
} // namespace

bool WriteFileAtomically(const std::string& path, const void* data, size_t size, std::string& why)
{
    if (!MayBeReplaced(path, why))
        return false;
    PartFile part(path + PART_FILE_END);
    part.Remove();
    File file(path + PART_FILE_END, O_WRONLY | O_CREAT | O_EXCL);
    if (!file.IsOpen())
        return Failed(why, "make", path);
    if (!WriteAll(file.Number(), static_cast<const unsigned char*>(data), size))
        return Failed(why, "write", path);
    return Establish(file, part, path, why);
}

bool TryToWriteFile(const std::string& path, std::string& why)
{
    const PartFile part(path + PART_FILE_END);
    part.Remove();
    const File file(path + PART_FILE_END, O_WRONLY | O_CREAT | O_EXCL);
    return file.IsOpen() ? MayBeReplaced(path, why) : Failed(why, "make", path);
}

bool PutFileInPlace(const std::string& from, const std::string& path, std::string& why)
{
    PartFile part(from);
    File file(from, O_RDONLY);
    if (!MayBeReplaced(path, why))
        return false;
    if (!file.IsOpen())
        return Failed(why, "open", from);
    return Establish(file, part, path, why);
}

bool ReadWholeFile(const std::string& path, std::vector<uint8_t>& bytes, std::string& why)
{
    if (const std::vector<uint8_t>* const packed = FindPackedFile(path))
    {
        bytes = *packed;
        return true;
    }
    return ReadOrdinary(path, FILE_SIZE_MAX, FILE_SIZE_MAX, bytes, why);
}

bool ReadFileStart(const std::string& path, size_t wanted, std::vector<uint8_t>& bytes, std::string& why)
{
    return ReadOrdinary(path, UINTMAX_MAX, wanted, bytes, why);
}
} // namespace Runner
