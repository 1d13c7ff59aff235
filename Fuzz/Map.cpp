// Maps of an editor, with their tilesets, templates and pictures, all in memory.
//
// Input: the files as one text, each behind a line "@@ PATH"; the first one is the map. A picture that is not among
// them is a PNG file of 64 x 64.

#include "Fuzz/Fuzz_Target.h"

#include "Runner/World/Map_Reader.h"

#include <map>

namespace
{
using namespace Runner;

constexpr char PICTURE[] = "\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\0\x40\0\0\0\x40\x08\x06";

class InputFiles : public MapFiles
{
public:
    explicit InputFiles(const std::string& text)
    {
        for (size_t start = text.rfind("@@ ", 0) == 0 ? 0 : std::string::npos; start != std::string::npos;)
        {
            const size_t next = text.find("\n@@ ", start);
            Add(text.substr(start + 3, next == std::string::npos ? next : next + 1 - start - 3));
            start = next == std::string::npos ? next : next + 1;
        }
    }

    const std::string& First() const { return m_first; }

    bool Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why) override
    {
        CheckPath(path);
        const auto found = m_files.find(path);
        const bool isPicture = found == m_files.end() && path.size() > 4 && path.substr(path.size() - 4) == ".png";
        const std::string content = isPicture                ? std::string(PICTURE, sizeof PICTURE - 1)
                                    : found == m_files.end() ? ""
                                                             : found->second;
        if ((found == m_files.end() && !isPicture) || content.size() > limit)
        {
            why = "there is no such file";
            return false;
        }
        bytes.assign(content.begin(), content.end());
        return true;
    }

private:
    void Add(const std::string& file)
    {
        const size_t end = file.find('\n');
        const std::string path = file.substr(0, end);
        if (m_files.empty())
            m_first = path;
        m_files[path] = end == std::string::npos ? "" : file.substr(end + 1);
    }

    // The reader promises: relative, no part is empty, "." or "..".
    void CheckPath(const std::string& path)
    {
        if (path == m_first)
            return; // the caller's own
        for (size_t start = 0; start != std::string::npos;)
        {
            const size_t end = path.find('/', start);
            const std::string part = path.substr(start, end == std::string::npos ? end : end - start);
            Fuzz::Require(!part.empty() && part != "." && part != "..", "a path leads out of the folder");
            start = end == std::string::npos ? end : end + 1;
        }
    }

    std::string m_first;
    std::map<std::string, std::string> m_files;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const Fuzz::SlowInputWatch watch(data, size);
    InputFiles files(std::string(reinterpret_cast<const char*>(data), size));
    MapModel map;
    std::string error;
    const bool isRead = ReadMap(files.First(), files, map, error);
    Fuzz::Require(isRead == error.empty(), "a refused map has no reason, or a good one has");
    Fuzz::Require(error.find_first_of("\r\n") == std::string::npos, "a refused map is not told in one line");
    Fuzz::Require(isRead || (map.layers.empty() && map.tilesets.empty()), "a refused map is not empty");
    return 0;
}
