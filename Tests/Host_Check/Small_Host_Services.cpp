// Built-ins, errors, buffers, files and the console of the small host.

#include "Tests/Host_Check/Small_Host.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>

#include <unistd.h>

struct _KvFILE
{
    std::FILE* stream;
};

namespace SmallHost
{
namespace
{

struct Services
{
    std::map<std::string, TFunction> builtins;
    std::string error;
    bool hasError = false;
    std::string area; // ends with a slash
};

Services& TheServices()
{
    static Services& services = *new Services;
    return services;
}

// The save area of this process; the test's program removes it.
const std::string& Area()
{
    std::string& area = TheServices().area;
    if (area.empty())
        area = (std::filesystem::temp_directory_path() / ("small_host_" + std::to_string(getpid()))).string() + "/";
    return area;
}

bool Leaves(const std::string& name)
{
    if (Breaks(Breakage::NamesMayLeave))
        return false;
    for (const std::filesystem::path& part : std::filesystem::path(name))
        if (part == "..")
            return true;
    return name.empty() || name[0] == '/';
}

class Console final : public CDebugConsole
{
public:
    void Output(const char*) override {}
};
Console s_console;

} // namespace

void MakeSaveArea() { std::filesystem::create_directories(Area()); }

void RemoveSaveArea()
{
    std::error_code ignored;
    std::filesystem::remove_all(Area(), ignored);
}

bool TakeError(char* out, int size)
{
    Services& services = TheServices();
    const bool had = services.hasError;
    std::snprintf(out, static_cast<size_t>(size), "%s", services.error.c_str());
    services.hasError = false;
    services.error.clear();
    return had;
}

TFunction FindFunction(const char* name)
{
    const auto& builtins = TheServices().builtins;
    const auto found = Breaks(Breakage::BuiltInsAreFoundByPrefix) ? builtins.lower_bound(name) : builtins.find(name);
    if (Breaks(Breakage::TheFirstBuiltInIsEveryOne))
        return builtins.empty() ? nullptr : builtins.begin()->second;
    return found == builtins.end() ? nullptr : found->second;
}

// ---- buffers: items of four bytes and of one ----
int Buffer::WriteTyped(eBuffer_Type type, RValue& value)
{
    uint32_t word = static_cast<uint32_t>(KvGetInt32(&value, 0));
    if (type == eBuffer_F32 && !Breaks(Breakage::FloatsAreWrittenAsIntegers))
    {
        float number = static_cast<float>(value.val);
        if (Breaks(Breakage::InfinitiesAreClamped))
            number = std::clamp(number, -FLT_MAX, FLT_MAX);
        std::memcpy(&word, &number, sizeof word);
    }
    const bool isBig = Breaks(Breakage::TheHighestByteComesFirst);
    for (int byte = 0; byte < 4; ++byte)
        bytes.push_back(static_cast<unsigned char>(word >> (8 * (isBig ? 3 - byte : byte))));
    return Breaks(Breakage::DoneIsOne) ? 1 : 0;
}

int Buffer::ReadTyped(eBuffer_Type type, RValue& value)
{
    const size_t size = type == eBuffer_U8 ? 1 : 4;
    const bool isBig = Breaks(Breakage::TheHighestByteComesFirst);
    uint32_t word = 0;
    const bool isThere = position + size <= bytes.size();
    const size_t start = !isThere && Breaks(Breakage::ReadsPastTheEndRepeat) ? 0 : position;
    for (size_t byte = 0; byte < size && start + size <= bytes.size(); ++byte)
        word |= uint32_t{bytes[start + byte]} << (8 * (isBig ? size - 1 - byte : byte));
    position = isThere ? position + size : bytes.size();
    int32_t integer;
    float number;
    std::memcpy(&integer, &word, sizeof integer);
    std::memcpy(&number, &word, sizeof number);
    value.kind = VALUE_REAL;
    value.val = type == eBuffer_F32 ? static_cast<double>(number) : integer;
    return Breaks(Breakage::DoneIsOne) ? 1 : 0;
}

} // namespace SmallHost

using namespace SmallHost;

CDebugConsole* dbg_csol = &s_console;

void Function_Add(const char* name, TFunction handler, int, bool) { TheServices().builtins[name] = handler; }

void KvError(const char* format, ...)
{
    if (Breaks(Breakage::ErrorsNeverReturn))
        std::_Exit(3);
    char text[256];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    TheServices().error = Breaks(Breakage::ErrorsAreNotFormatted) ? format : text;
    TheServices().hasError = true;
}

// ---- the wrappers ----
namespace
{

void Pass(IBuffer& buffer, RValue& scratch, eBuffer_Type type, double number)
{
    scratch.kind = VALUE_REAL;
    scratch.val = number;
    if (Breaks(Breakage::WritersPassIntegers) && type == eBuffer_S32)
    {
        scratch.kind = VALUE_INT32;
        scratch.v32 = static_cast<int32_t>(number);
    }
    RValue own = scratch;
    buffer.WriteTyped(type, Breaks(Breakage::EachWriterHasAScratchValue) && type == eBuffer_F32 ? own : scratch);
}

} // namespace

void IBuffer::Write(int value) { Pass(*this, m_scratch, eBuffer_S32, value); }
void IBuffer::Write(float value) { Pass(*this, m_scratch, eBuffer_F32, static_cast<double>(value)); }
void IBuffer::Write(bool value) { Pass(*this, m_scratch, eBuffer_S32, value ? 1 : 0); }

int IBuffer::ReadS32()
{
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetInt32(&m_scratch, 0);
}

float IBuffer::ReadFloat()
{
    ReadTyped(eBuffer_F32, m_scratch);
    const float number = static_cast<float>(m_scratch.val);
    return Breaks(Breakage::ReadersCutFractions) ? std::trunc(number) : number;
}

bool IBuffer::ReadBool()
{
    ReadTyped(eBuffer_S32, m_scratch);
    return KvGetBool(&m_scratch, 0);
}

// The kind, then the two halves of the value.
void RValue::Serialise(IBuffer* buffer) const
{
    buffer->Write(Breaks(Breakage::SerialisedValuesAreReals) ? int{VALUE_REAL} : static_cast<int>(kind));
    buffer->Write(static_cast<int>(v64 & 0xFFFFFFFF));
    buffer->Write(static_cast<int>(v64 >> 32));
}

void RValue::DeSerialise(IBuffer* buffer)
{
    kind = static_cast<uint32_t>(buffer->ReadS32());
    const uint32_t low = static_cast<uint32_t>(buffer->ReadS32());
    v64 = static_cast<int64_t>(uint64_t{static_cast<uint32_t>(buffer->ReadS32())} << 32 | low);
}

// ---- files ----
void LoadSave::_GetSaveFileName(char* out, int size, const char* name)
{
    const std::string path = Area() + (Breaks(Breakage::PathsLoseTheirName) ? "x" : name);
    if (Breaks(Breakage::PathsOverrun))
        out[size] = '\0';
    if (size <= 0)
        return;
    const bool isTooLong = path.size() >= static_cast<size_t>(size) && !Breaks(Breakage::LongPathsAreCut);
    const bool isRefused = Leaves(name) || isTooLong;
    std::snprintf(out, static_cast<size_t>(size), "%s", isRefused ? "" : path.c_str());
    if (isRefused && (dbg_csol != nullptr || Breaks(Breakage::TheConsoleIsExpected)))
        dbg_csol->Output("refused\n");
}

_KvFILE* LoadSave::fopen(const char* path, const char* mode)
{
    if (path[0] == '\0' && Breaks(Breakage::TheEmptyPathIsOpened))
        path = "/dev/null";
    const bool appends = mode[0] == 'w' && Breaks(Breakage::WritingAppends);
    std::FILE* stream = std::fopen(path, appends ? "ab" : mode);
    if (stream == nullptr && Breaks(Breakage::MissingFilesAreOpened) && mode[0] == 'r')
        stream = std::fopen("/dev/null", mode);
    return stream == nullptr ? nullptr : new _KvFILE{stream};
}

unsigned LoadSave::fwrite(const void* data, unsigned size, unsigned count, _KvFILE* file)
{
    const char* bytes = static_cast<const char*>(data);
    for (unsigned i = 0; i < size * count; ++i)
    {
        if (bytes[i] == '\n' && Breaks(Breakage::LineEndsAreTranslated))
            std::fputc('\r', file->stream);
        std::fputc(bytes[i], file->stream);
    }
    return Breaks(Breakage::BytesAreCounted) ? size * count : count;
}

int LoadSave::fclose(_KvFILE* file)
{
    const int result = std::fclose(file->stream);
    delete file;
    return Breaks(Breakage::ClosedIsOne) ? 1 : result;
}

void EnsureDirectoryIsCreated(const char* path)
{
    std::error_code ignored;
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    if (!Breaks(Breakage::DirectoriesAreNotMade) || folder.string() + "/" == Area())
        std::filesystem::create_directories(folder, ignored);
}
