#pragma once

#include "Runner/World/Map_Files.h"

namespace Runner
{
// The files below a folder. Symbolic links are followed as long as they lead to a file below it.
class MapFolder : public MapFiles
{
public:
    explicit MapFolder(std::string folder) : m_folder(std::move(folder)) {}

    bool Read(const std::string& path, size_t limit, std::vector<uint8_t>& bytes, std::string& why) override;

private:
    std::string m_folder;
};
} // namespace Runner
