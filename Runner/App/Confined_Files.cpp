// The file system by Landlock. The calls have no wrapper in Debian's C library, and its header is older than the
// kernels on which the Runner may be: what is newer is defined here.

#include "Runner/App/Process_Limits.h"

#ifdef __linux__

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define RUNNER_HAS_SHADOW_MEMORY
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define RUNNER_HAS_SHADOW_MEMORY
#endif
#endif

namespace Runner
{
namespace
{
bool Refused(const char* part, std::string& why)
{
    why = std::string("--confined: this system does not allow it (") + part + ": " + std::strerror(errno) +
          "), nothing was played";
    return false;
}

bool Limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit limit = {most, most};
    return setrlimit(resource, &limit) == 0;
}
} // namespace

// The address space of a build with AddressSanitizer is data, nearly all of it.
bool LimitResources(size_t memory, std::string& why)
{
#ifdef RUNNER_HAS_SHADOW_MEMORY
    memory = 0;
#endif
    if (!Limit(RLIMIT_CORE, 0))
        return Refused("core dumps", why);
    return memory == 0 || Limit(RLIMIT_DATA, memory) || Refused("memory", why);
}

#ifdef __NR_landlock_create_ruleset
namespace
{
// Rights to what is below a folder, by the version of Landlock from which on the kernel knows them.
constexpr uint64_t EXECUTE = 1u << 0;
constexpr uint64_t WRITE_FILE = 1u << 1;
constexpr uint64_t READ_FILE = 1u << 2;
constexpr uint64_t READ_FOLDER = 1u << 3;
constexpr uint64_t REMOVE_FOLDER = 1u << 4;
constexpr uint64_t REMOVE_FILE = 1u << 5;
constexpr uint64_t MAKE_FOLDER = 1u << 7;
constexpr uint64_t MAKE_FILE = 1u << 8;
constexpr uint64_t TRUNCATE = 1u << 14;
constexpr uint64_t OF_VERSION_1 = (1u << 13) - 1;
constexpr uint64_t MOVE = 1u << 13;           // version 2
constexpr uint64_t DEVICE_COMMAND = 1u << 15; // version 5
constexpr uint64_t BIND_AND_CONNECT = 3;      // version 4
constexpr uint64_t SOCKETS_AND_SIGNALS = 3;   // version 6

constexpr uint64_t OF_FILES = EXECUTE | WRITE_FILE | READ_FILE | TRUNCATE | DEVICE_COMMAND;
constexpr uint64_t READING = READ_FILE | READ_FOLDER;
constexpr uint64_t WRITING =
    READING | WRITE_FILE | REMOVE_FOLDER | REMOVE_FILE | MAKE_FOLDER | MAKE_FILE | TRUNCATE | MOVE;

// As the kernel declares them.
struct Ruleset
{
    uint64_t files;
    uint64_t net;
    uint64_t scoped;
};

struct __attribute__((packed)) Rule
{
    uint64_t allowed;
    int32_t folder;
};

constexpr int PATH_BENEATH = 1;
constexpr unsigned ASK_VERSION = 1;

Ruleset AllThatIsKnown(long version)
{
    Ruleset all = {OF_VERSION_1, 0, 0};
    if (version >= 2)
        all.files |= MOVE;
    if (version >= 3)
        all.files |= TRUNCATE;
    if (version >= 4)
        all.net = BIND_AND_CONNECT;
    if (version >= 5)
        all.files |= DEVICE_COMMAND;
    if (version >= 6)
        all.scoped = SOCKETS_AND_SIGNALS;
    return all;
}

// What is not there needs no rule. A device may be told things that a file may not.
bool Allow(int ruleset, uint64_t known, const std::string& path, uint64_t rights)
{
    const int place = open(path.c_str(), O_PATH | O_CLOEXEC);
    if (place < 0)
        return errno == ENOENT || errno == ENOTDIR;
    struct stat status = {};
    const bool isFolder = fstat(place, &status) == 0 && S_ISDIR(status.st_mode);
    Rule rule = {rights & known & (isFolder ? ~uint64_t{0} : OF_FILES), place};
    const bool isAllowed = syscall(__NR_landlock_add_rule, ruleset, PATH_BENEATH, &rule, 0) == 0;
    close(place);
    return isAllowed;
}

bool AllowAll(int ruleset, uint64_t known, const std::vector<std::string>& paths, uint64_t rights)
{
    for (const std::string& path : paths)
    {
        const bool isDevice = path.rfind("/dev/", 0) == 0;
        if (!Allow(ruleset, known, path, isDevice ? rights | WRITE_FILE | DEVICE_COMMAND : rights))
            return false;
    }
    return true;
}
} // namespace

bool ConfineFiles(const std::vector<std::string>& readable, const std::vector<std::string>& writable, std::string& why)
{
    const long version = syscall(__NR_landlock_create_ruleset, nullptr, 0, ASK_VERSION);
    if (version < 1)
        return Refused("Landlock", why);
    const Ruleset all = AllThatIsKnown(version);
    const size_t size = version >= 6 ? sizeof all : version >= 4 ? 2 * sizeof(uint64_t) : sizeof(uint64_t);
    const int ruleset = static_cast<int>(syscall(__NR_landlock_create_ruleset, &all, size, 0));
    if (ruleset < 0)
        return Refused("Landlock", why);
    const bool isConfined =
        AllowAll(ruleset, all.files, readable, READING) && AllowAll(ruleset, all.files, writable, WRITING) &&
        prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && syscall(__NR_landlock_restrict_self, ruleset, 0) == 0;
    const int reason = errno;
    close(ruleset);
    errno = reason;
    return isConfined || Refused("Landlock", why);
}
#else
bool ConfineFiles(const std::vector<std::string>&, const std::vector<std::string>&, std::string& why)
{
    errno = ENOSYS;
    return Refused("Landlock", why);
}
#endif
} // namespace Runner

#else

namespace Runner
{
bool LimitResources(size_t, std::string& why)
{
    why = "--confined: this system cannot confine a process, nothing was played";
    return false;
}

bool ConfineFiles(const std::vector<std::string>&, const std::vector<std::string>&, std::string&) { return false; }
} // namespace Runner

#endif
