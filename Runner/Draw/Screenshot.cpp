#include "Runner/Draw/Screenshot.h"

#include "Files/Graphics/Image_Writers.h"
#include "Files/IO/Load_Save.h"
#include "Runner/Base/Printable.h"
#include "Runner/Base/Whole_File.h"
#include "Runner/Draw/Bmp.h"
#include "Runner/Host/Files.h"

#include <cstdio>

namespace Runner
{
namespace
{
// The module's writer does not notice a short write: LastWriteFailed tells.
bool WritePng(Picture& picture, std::string part, const std::string& partPath, const std::string& path,
              std::string& why)
{
    const int written = WritePNG32(part.data(), picture.rgba.data(), picture.width, picture.height);
    if (written == 1 && !LastWriteFailed())
        return PutFileInPlace(partPath, path, why);
    std::remove(partPath.c_str());
    why = "cannot write " + PrintableName(path);
    return false;
}

bool WriteBmp(const Picture& picture, const std::string& path, std::string& why)
{
    const std::vector<uint8_t> file = EncodeBmp(picture);
    EnsureDirectoryIsCreated(path.c_str());
    return WriteFileAtomically(path, file.data(), file.size(), why);
}

// The extension of the file's name with its point, in small letters; empty when there is none.
std::string ExtensionOf(const std::string& name)
{
    const size_t point = name.rfind('.');
    const size_t slash = name.rfind('/');
    if (point == std::string::npos || (slash != std::string::npos && point < slash))
        return "";
    std::string extension = name.substr(point);
    for (char& letter : extension)
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    return extension;
}
} // namespace

std::string PictureFormat(const std::string& name, const std::string& asked, std::string& why)
{
    const std::string extension = ExtensionOf(name);
    if (extension.empty())
        return asked.empty() ? "png" : asked;
    if (extension != ".png" && extension != ".bmp")
        why = Printable(name) + " is no name for a picture: it must end in .png or .bmp";
    else if (!asked.empty() && extension != "." + asked)
        why = Printable(name) + " cannot be a picture in the format \"" + asked + "\": name it ." + asked;
    return why.empty() ? extension.substr(1) : "";
}

bool WriteScreenshot(Picture picture, const std::string& name, const std::string& asked, std::string& why)
{
    const std::string format = PictureFormat(name, asked, why);
    if (format.empty())
        return false;
    const std::string part = name + PART_FILE_END;
    const std::string path = SavePath(name);
    const std::string partPath = path.empty() ? "" : SavePath(part);
    if (!path.empty() && !partPath.empty())
        return format == "bmp" ? WriteBmp(picture, path, why) : WritePng(picture, part, partPath, path, why);
    why = Printable(name) + " is no name of a file in the save area";
    return false;
}
} // namespace Runner
