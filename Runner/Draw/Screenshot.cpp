#include "Runner/Draw/Screenshot.h"

#include "Files/Graphics/Image_Writers.h"
#include "Files/IO/Load_Save.h"
#include "Platform/Memory_Manager.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Host/Files.h"

#include <cstdio>
#include <utility>

namespace Runner
{
namespace
{
// The module's writer goes on after a short write: the file layer knows.
bool WritePng(Picture& picture, std::string part, const std::string& partPath, const std::string& path,
              std::string& why)
{
    const int written = WritePNG32(part.data(), picture.rgba.data(), picture.width, picture.height);
    if (written == 1 && !LastWriteFailed())
        return PutFileInPlace(partPath, path, why);
    std::remove(partPath.c_str());
    why = "cannot write " + Printable(path, FILENAME_MAX);
    return false;
}

bool WriteBmp(Picture& picture, const std::string& path, std::string& why)
{
    int size = 0;
    void* block = CreateBMP(picture.rgba.data(), picture.width, picture.height, &size, 4);
    if (block == nullptr)
    {
        why = "there is no memory for " + Printable(path, FILENAME_MAX);
        return false;
    }
    EnsureDirectoryIsCreated(path.c_str());
    const bool written = WriteFileAtomically(path, block, static_cast<size_t>(size), why);
    MemoryManager::Free(block);
    return written;
}
} // namespace

bool WriteScreenshot(Picture picture, const std::string& name, const std::string& format, std::string& why)
{
    const std::string part = name + ".part";
    const std::string path = SavePath(name);
    const std::string partPath = path.empty() ? "" : SavePath(part);
    if (!path.empty() && !partPath.empty())
        return format == "bmp" ? WriteBmp(picture, path, why) : WritePng(picture, part, partPath, path, why);
    why = Printable(name) + " is no name of a file in the save area";
    return false;
}

bool WriteScreenshot(Picture picture, const std::string& name, std::string& why)
{
    const bool isBmp = name.size() >= 4 && name.compare(name.size() - 4, 4, ".bmp") == 0;
    return WriteScreenshot(std::move(picture), name, isBmp ? "bmp" : "png", why);
}
} // namespace Runner
