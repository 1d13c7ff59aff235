// The save-state buffer, the save area, the debug console.

#include "Tests/Support/Recording_Host_State.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>

struct _KvFILE
{
    std::FILE* stream;
};

namespace Recording
{
namespace
{
Disk& TheDisk() { return TheState().disk; }

class Console : public CDebugConsole
{
public:
    void Output(const char* text) override
    {
        TheDisk().console.push_back(text);
        RECORD(Topic_Files, "Output(%s)", text);
    }
};

Console g_console;

// The directory goes with the process, also when a test ends it early through exit.
struct AreaKeeper
{
    ~AreaKeeper()
    {
        std::error_code ignored;
        if (!TheDisk().area.empty())
            std::filesystem::remove_all(TheDisk().area, ignored);
    }
};

std::string MakeArea()
{
    static AreaKeeper keeper;
    std::string pattern = (std::filesystem::temp_directory_path() / "recording-host-XXXXXX").string();
    const char* made = mkdtemp(pattern.data());
    if (made == nullptr)
        Fault("no directory for the save area");
    return made == nullptr ? "" : made;
}

// Paths in the log do not depend on where the area is.
std::string Shown(const std::string& path)
{
    const std::string& area = TheDisk().area;
    return !area.empty() && path.rfind(area, 0) == 0 ? "<save>" + path.substr(area.size()) : path;
}

bool Escapes(const std::string& name)
{
    if (name.empty() || name[0] == '/')
        return true;
    for (const std::filesystem::path& part : std::filesystem::path(name))
        if (part == "..")
            return true;
    return false;
}

const char* TypeName(eBuffer_Type type)
{
    return type == eBuffer_S32 ? "S32" : type == eBuffer_F32 ? "F32" : type == eBuffer_Bool ? "Bool" : "other";
}
} // namespace

std::string SaveArea()
{
    if (TheDisk().area.empty())
        TheDisk().area = MakeArea();
    return TheDisk().area;
}

void ResetDisk()
{
    Disk& disk = TheDisk();
    std::error_code ignored;
    if (!disk.area.empty())
        for (const auto& entry : std::filesystem::directory_iterator(disk.area, ignored))
            std::filesystem::remove_all(entry.path(), ignored);
    disk.refuseOpen = disk.failClose = false;
    disk.onWrite = {};
    disk.console.clear();
    disk.open = 0;
    dbg_csol = &g_console;
}

void RefuseOpen(bool refuse) { TheDisk().refuseOpen = refuse; }
void OnWrite(std::function<bool(unsigned)> hook) { TheDisk().onWrite = std::move(hook); }
void FailClose(bool fail) { TheDisk().failClose = fail; }
int OpenFiles() { return TheDisk().open; }
Lines& ConsoleTexts() { return TheDisk().console; }

// ---- buffer: four bytes an item, lowest first ----
int Buffer::WriteTyped(eBuffer_Type type, RValue& value)
{
    RECORD(Topic_Buffer, "WriteTyped(%s,%s)", TypeName(type), Describe(static_cast<float>(value.asReal())).c_str());
    uint32_t word = 0;
    if (type == eBuffer_S32)
        word = static_cast<uint32_t>(KvGetInt32(&value, 0));
    else if (type == eBuffer_F32)
    {
        const float number = static_cast<float>(value.asReal());
        std::memcpy(&word, &number, sizeof word);
    }
    else
        return 1;
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<uint8_t>(word >> shift));
    return 0;
}

int Buffer::ReadTyped(eBuffer_Type type, RValue& value)
{
    RECORD(Topic_Buffer, "ReadTyped(%s)", TypeName(type));
    ++reads;
    uint32_t word = 0;
    const bool isWhole = bytes.size() >= 4 && position <= bytes.size() - 4;
    for (size_t i = 0; isWhole && i < 4; ++i)
        word |= static_cast<uint32_t>(bytes[position + i]) << (8 * i);
    position = isWhole ? position + 4 : bytes.size();
    int32_t integer = 0;
    float number = 0.0f;
    std::memcpy(&integer, &word, sizeof integer);
    std::memcpy(&number, &word, sizeof number);
    value = Real(type == eBuffer_S32 ? integer : static_cast<double>(number));
    return type == eBuffer_S32 || type == eBuffer_F32 ? 0 : 1;
}
} // namespace Recording

using namespace Recording;

CDebugConsole* dbg_csol = nullptr;

void IBuffer::Write(int value)
{
    m_scratch = Real(value);
    WriteTyped(eBuffer_S32, m_scratch);
}

void IBuffer::Write(float value)
{
    m_scratch = Real(static_cast<double>(value));
    WriteTyped(eBuffer_F32, m_scratch);
}

void IBuffer::Write(bool value)
{
    m_scratch = Real(value ? 1.0 : 0.0);
    WriteTyped(eBuffer_S32, m_scratch);
}

int IBuffer::ReadS32()
{
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetInt32(&m_scratch, 0);
}

float IBuffer::ReadFloat()
{
    ReadTyped(eBuffer_F32, m_scratch);
    return KvGetFloat(&m_scratch, 0);
}

bool IBuffer::ReadBool()
{
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetBool(&m_scratch, 0);
}

// ---- files ----
void LoadSave::_GetSaveFileName(char* out, int size, const char* name)
{
    RECORD(Topic_Files, "_GetSaveFileName(%d,%s)", size, name);
    const std::string path = SaveArea() + "/" + name;
    if (size <= 0)
        return;
    const bool refused = Escapes(name) || path.size() >= static_cast<size_t>(size);
    std::snprintf(out, static_cast<size_t>(size), "%s", refused ? "" : path.c_str());
}

_KvFILE* LoadSave::fopen(const char* path, const char* mode)
{
    RECORD(Topic_Files, "fopen(%s,%s)", Shown(path).c_str(), mode);
    std::FILE* stream = TheDisk().refuseOpen || path[0] == '\0' ? nullptr : std::fopen(path, mode);
    if (stream == nullptr)
        return nullptr;
    ++TheDisk().open;
    return new _KvFILE{stream};
}

unsigned LoadSave::fwrite(const void* data, unsigned size, unsigned count, _KvFILE* file)
{
    RECORD(Topic_Files, "fwrite(%u,%u)", size, count);
    if (TheDisk().onWrite && !TheDisk().onWrite(size * count))
        return 0;
    return static_cast<unsigned>(std::fwrite(data, size, count, file->stream));
}

int LoadSave::fclose(_KvFILE* file)
{
    RECORD(Topic_Files, "fclose()");
    --TheDisk().open;
    const int result = std::fclose(file->stream);
    delete file;
    return TheDisk().failClose ? -1 : result;
}

void EnsureDirectoryIsCreated(const char* path)
{
    RECORD(Topic_Files, "EnsureDirectoryIsCreated(%s)", Shown(path).c_str());
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
}
