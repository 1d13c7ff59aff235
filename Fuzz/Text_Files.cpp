// The texts that a person writes besides a game: settings, and an input script. Input: the text; it is read as both.

#include "Fuzz/Fuzz_Target.h"

#include "Runner/Base/Settings.h"
#include "Runner/Input/Input_Script.h"

namespace
{
using namespace Runner;

constexpr int FRAMES = 50;

bool IsOneLine(const std::string& text) { return !text.empty() && text.find_first_of("\r\n") == std::string::npos; }

void ReadAsSettings(const std::string& text)
{
    Settings settings, again;
    std::string why;
    if (!ParseSettings(text, settings, why))
        return Fuzz::Require(IsOneLine(why), "refused settings are not told in one line");
    const std::string written = SettingsText(settings);
    Fuzz::Require(ParseSettings(written, again, why), "written settings are refused");
    Fuzz::Require(SettingsText(again) == written, "settings have changed by being kept");
}

void ReadAsInput(const std::string& text)
{
    InputScript script;
    std::string why;
    if (!script.Read(text, "input.txt", why))
        return Fuzz::Require(IsOneLine(why), "a refused input script is not told in one line");
    InputFrame frame;
    for (int i = 0; i < FRAMES; ++i)
        Fuzz::Require(script.Next(frame), "an input script has ended");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Fuzz::SlowInputWatch watch(data, size);
    const std::string text(reinterpret_cast<const char*>(data), size);
    ReadAsSettings(text);
    ReadAsInput(text);
    return 0;
}
