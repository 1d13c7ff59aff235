#include "Runner/Base/Settings.h"

#include "Runner/Base/Decimal.h"
#include "Runner/Base/Printable.h"

#include <charconv>

namespace Runner
{
namespace
{
constexpr std::string_view HEAD = "settings 1\n";
constexpr char HEX[] = "0123456789abcdef";

// ---- writing: "name" = value ----

std::string QuotedText(const std::string& text)
{
    std::string quoted = "\"";
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= ' ' && c != '"' && c != '\\')
            quoted += c;
        else
            quoted += {'\\', HEX[byte >> 4], HEX[byte & 15]};
    }
    return quoted + "\"";
}

std::string ValueText(const Setting& value)
{
    if (const bool* const truth = std::get_if<bool>(&value))
        return *truth ? "true" : "false";
    if (const int64_t* const whole = std::get_if<int64_t>(&value))
        return std::to_string(*whole);
    if (const double* const real = std::get_if<double>(&value))
        return "real " + DecimalText(*real);
    return QuotedText(std::get<HeldText>(value));
}

// ---- reading ----

class LineReader
{
public:
    explicit LineReader(std::string_view line) : m_line(line) {}

    bool Take(std::string_view word)
    {
        if (m_line.substr(0, word.size()) != word)
            return false;
        m_line.remove_prefix(word.size());
        return true;
    }

    bool TakeText(std::string& text)
    {
        if (!Take("\""))
            return false;
        while (!m_line.empty() && m_line[0] != '"')
            if (!TakeCharacter(text))
                return false;
        return Take("\"");
    }

    bool TakeWhole(int64_t& number)
    {
        return TakeRead(std::from_chars(m_line.data(), m_line.data() + m_line.size(), number));
    }

    bool TakeReal(double& number)
    {
        return TakeRead(ReadDecimal(m_line.data(), m_line.data() + m_line.size(), number));
    }

    bool IsAtEnd() const { return m_line.empty(); }

private:
    bool TakeRead(const std::from_chars_result& read)
    {
        if (read.ec != std::errc())
            return false;
        m_line.remove_prefix(static_cast<size_t>(read.ptr - m_line.data()));
        return true;
    }

    bool TakeCharacter(std::string& text)
    {
        unsigned byte = 0;
        const bool isEscaped = m_line[0] == '\\';
        if (isEscaped && (m_line.size() < 3 ||
                          std::from_chars(m_line.data() + 1, m_line.data() + 3, byte, 16).ptr != m_line.data() + 3))
            return false;
        text += isEscaped ? static_cast<char>(byte) : m_line[0];
        m_line.remove_prefix(isEscaped ? 3 : 1);
        return true;
    }

    std::string_view m_line;
};

bool ReadValue(LineReader& line, Setting& value)
{
    std::string text;
    int64_t whole = 0;
    double real = 0.0;
    if (line.Take("true"))
        value = true;
    else if (line.Take("false"))
        value = false;
    else if (line.Take("real "))
    {
        if (!line.TakeReal(real))
            return false;
        value = real;
    }
    else if (line.TakeWhole(whole))
        value = whole;
    else if (line.TakeText(text) && text.size() <= SETTING_TEXT_LIMIT)
        value = text;
    else
        return false;
    return line.IsAtEnd();
}

bool ReadLine(std::string_view text, Settings& settings)
{
    LineReader line(text);
    std::string name;
    Setting value;
    return line.TakeText(name) && !name.empty() && name.size() <= SETTING_NAME_LIMIT && line.Take(" = ") &&
           ReadValue(line, value) && settings.size() < SETTINGS_LIMIT && settings.emplace(name, value).second;
}
} // namespace

std::string SettingsText(const Settings& settings)
{
    std::string text(HEAD);
    for (const auto& [name, value] : settings)
        text += QuotedText(name) + " = " + ValueText(value) + "\n";
    return text;
}

bool ParseSettings(std::string_view text, Settings& settings, std::string& why)
{
    settings.clear();
    if (text.substr(0, HEAD.size()) != HEAD)
    {
        why = "line 1 is not \"settings 1\"";
        return false;
    }
    text.remove_prefix(HEAD.size());
    for (int number = 2; !text.empty(); ++number)
    {
        const size_t end = text.find('\n');
        if (end == std::string_view::npos || !ReadLine(text.substr(0, end), settings))
        {
            settings.clear();
            why = "line " + std::to_string(number) + " is no setting: \"" + Printable(text.substr(0, end)) + "\"";
            return false;
        }
        text.remove_prefix(end + 1);
    }
    return true;
}
} // namespace Runner
