#pragma once
// Texts of JSON, written from left to right: what the page is told.

#include <cmath>
#include <cstdio>
#include <string>
#include <string_view>

namespace Runner
{
class JsonText
{
public:
    void Open(char bracket) { Begin() += bracket; } // { or [
    void Close(char bracket)                        // } or ]
    {
        m_text += bracket;
        m_isFirst = false;
    }

    void Name(std::string_view name)
    {
        Quote(name);
        m_text += ':';
        m_isFirst = true;
    }

    void Number(double number) // null unless it is finite: there is no other word
    {
        char text[32] = "null";
        if (std::isfinite(number))
            std::snprintf(text, sizeof text, "%.9g", number);
        Begin() += text;
        m_isFirst = false;
    }

    void Text(std::string_view text) { Quote(text); }

    void Field(std::string_view name, std::string_view text)
    {
        Name(name);
        Text(text);
    }

    void Field(std::string_view name, double number)
    {
        Name(name);
        Number(number);
    }

    // A list of objects by that name. fill writes the fields of one, given an item.
    template <typename Items, typename Fill> void Objects(std::string_view name, const Items& items, const Fill& fill)
    {
        Name(name);
        Open('[');
        for (const auto& item : items)
        {
            Open('{');
            fill(item);
            Close('}');
        }
        Close(']');
    }

    const std::string& Whole() const { return m_text; }

private:
    std::string& Begin()
    {
        if (!m_isFirst)
            m_text += ',';
        m_isFirst = true;
        return m_text;
    }

    // Bytes that are no UTF-8 stay as they are: the page's decoder puts a sign in their place.
    void Quote(std::string_view text)
    {
        Begin() += '"';
        for (const char c : text)
        {
            char escaped[8] = "";
            if (c == '"' || c == '\\')
                std::snprintf(escaped, sizeof escaped, "\\%c", c);
            else if (static_cast<unsigned char>(c) < 0x20)
                std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
            else
            {
                m_text += c;
                continue;
            }
            m_text += escaped;
        }
        m_text += '"';
        m_isFirst = false;
    }

    std::string m_text;
    bool m_isFirst = true; // no comma before what comes next
};
} // namespace Runner
