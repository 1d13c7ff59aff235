#pragma once

#include <stdexcept>
#include <string>

namespace Runner
{
// Why a map cannot be read, thrown inside the reader. What catches it on the way out says where: first the layer or
// tileset, then the file.
class MapFault : public std::exception
{
public:
    static constexpr size_t NOWHERE = static_cast<size_t>(-1);

    explicit MapFault(std::string text, size_t offset = NOWHERE) : m_text(std::move(text)), m_offset(offset) {}

    const char* what() const noexcept override { return m_text.c_str(); }
    size_t Offset() const { return m_offset; } // of the byte in the file, where that is known
    bool NamesFile() const { return m_namesFile; }

    void AddPlace(const std::string& place)
    {
        if (!m_namesFile)
            m_text = place + ": " + m_text;
    }

    void AddFile(const std::string& file)
    {
        AddPlace(file);
        m_namesFile = true;
    }

private:
    std::string m_text;
    size_t m_offset;
    bool m_namesFile = false; // a file named within another stands alone
};

// Does some work; a fault in it is told with the place, which `place()` puts into words only then.
template <typename Place, typename Work> void WithinPlace(Place place, Work work)
{
    try
    {
        work();
    }
    catch (MapFault& fault)
    {
        fault.AddPlace(place());
        throw;
    }
}
} // namespace Runner
