#include "Runner/Screenshot.h"

#include "Files/Graphics/Image_Writers.h"
#include "Files/IO/Load_Save.h"
#include "Runner/Host_Files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace Runner
{
namespace
{
constexpr int PATH_SIZE = 4096;

std::string SavePath(const std::string& name)
{
    std::string path(PATH_SIZE, '\0');
    LoadSave::_GetSaveFileName(path.data(), PATH_SIZE, name.c_str());
    return path.c_str();
}

bool PutInPlace(const std::string& from, const std::string& to, std::string& why)
{
    if (std::rename(from.c_str(), to.c_str()) == 0)
        return true;
    why = "cannot write \"" + to + "\": " + std::strerror(errno);
    std::remove(from.c_str());
    return false;
}
} // namespace

bool WriteScreenshot(Picture picture, const std::string& name, std::string& why)
{
    std::string part = name + ".part";
    const std::string partPath = SavePath(part);
    const std::string path = SavePath(name);
    if (path.empty() || partPath.empty())
    {
        why = "\"" + name + "\" is no name of a file in the save area";
        return false;
    }
    const int written = WritePNG32(part.data(), picture.rgba.data(), picture.width, picture.height);
    if (written == 1 && !LastWriteFailed())
        return PutInPlace(partPath, path, why);
    std::remove(partPath.c_str());
    why = "cannot write \"" + path + "\"";
    return false;
}
} // namespace Runner
