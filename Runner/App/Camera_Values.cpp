#include "Runner/App/Camera_Values.h"

#include "Runner/Base/Decimal.h"
#include "Runner/Base/Printable.h"
#include "Runner/Inspect/Camera_Fields.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Runner
{
namespace
{
// "0.border_x=200".
std::string ReadCameraValue(const std::string& text, HandChange& change)
{
    const char* const end = text.data() + text.size();
    const auto [dot, cameraError] = std::from_chars(text.data(), end, change.camera);
    const size_t equals = text.find('=');
    const auto name = static_cast<size_t>(dot - text.data()) + 1;
    if (cameraError != std::errc() || change.camera < 0 || dot == end || *dot != '.' || equals == std::string::npos)
        return Quoted(text) + " is no value: give CAMERA.PROPERTY=NUMBER, such as 0.border_x=200";
    change.field = text.substr(name, equals - name);
    std::string known;
    for (const CameraField& field : CAMERA_FIELDS)
        known += std::string(known.empty() ? "" : ", ") + field.name;
    if (FindCameraField(change.field) == nullptr)
        return Quoted(change.field) + " is no property of a camera; there are " + known;
    const auto [stop, error] = ReadDecimal(text.data() + equals + 1, end, change.value);
    const bool isNumber = error == std::errc() && stop == end && std::isfinite(change.value);
    return isNumber ? "" : Quoted(text.substr(equals + 1)) + " is no number";
}
} // namespace

std::string ReadCameraValues(const std::string& text, std::vector<HandChange>& values)
{
    for (size_t start = 0; start <= text.size();)
    {
        const size_t comma = std::min(text.find(',', start), text.size());
        std::string wrong = ReadCameraValue(text.substr(start, comma - start), values.emplace_back());
        if (!wrong.empty())
            return wrong;
        start = comma + 1;
    }
    return "";
}
} // namespace Runner
