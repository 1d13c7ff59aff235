#include "Runner/Game/Trace.h"

#include "Files/Graphics_API/Graphics_API.h"
#include "Runner/Base/Printable.h"

#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <utility>

namespace Runner
{
namespace
{
// Nine digits tell any two floats apart.
void Append(std::string& line, float number)
{
    char text[32] = "nan";
    if (number == number)
        std::snprintf(text, sizeof(text), "%.9g", static_cast<double>(number));
    line.append(" ").append(text);
}

void Add(Hash& hash, const kvMatrix& matrix)
{
    for (const float element : matrix.m)
        hash.Float(element);
}

// The numbers of a line.
std::array<float, 10> NumbersOf(const CCamera& camera)
{
    return {camera.m_viewX, camera.m_viewY, camera.m_viewWidth, camera.m_viewHeight, camera.m_viewAngle,
            g_ViewAreaX,    g_ViewAreaY,    g_ViewAreaW,        g_ViewAreaH,         g_ViewAreaA};
}

std::string HashText(const CCamera& camera)
{
    Hash hash;
    Add(hash, camera.m_viewMat);
    Add(hash, camera.m_projMat);
    char text[20];
    std::snprintf(text, sizeof(text), "%016" PRIx64, hash.Value());
    return text;
}
} // namespace

std::string TraceLine(int frame, int view, const CCamera& camera)
{
    std::string line = std::to_string(frame) + " " + std::to_string(view) + " " + std::to_string(camera.GetID());
    for (const float number : NumbersOf(camera))
        Append(line, number);
    return line + " " + HashText(camera);
}

Trace::~Trace()
{
    if (m_file != nullptr)
        std::fclose(m_file);
}

bool Trace::Open(const std::string& path, std::string& why)
{
    m_file = std::fopen(path.c_str(), "wb");
    m_path = path;
    m_failed = false;
    if (m_file == nullptr)
        why = "cannot write the trace \"" + PrintableName(path) + "\": " + std::strerror(errno);
    return m_file != nullptr;
}

void Trace::Write(int frame, int view, const CCamera& camera)
{
    m_sum.U32(static_cast<uint32_t>(view));
    m_sum.U32(static_cast<uint32_t>(camera.GetID()));
    for (const float number : NumbersOf(camera))
        m_sum.Float(number);
    Add(m_sum, camera.m_viewMat);
    Add(m_sum, camera.m_projMat);
    if (m_file == nullptr)
        return;
    const std::string line = TraceLine(frame, view, camera) + "\n";
    if (std::fwrite(line.data(), 1, line.size(), m_file) != line.size())
        m_failed = true;
}

uint64_t Trace::TakeSum() { return std::exchange(m_sum, Hash()).Value(); }

bool Trace::Close(std::string& why)
{
    if (m_file == nullptr)
        return true;
    if (std::fclose(m_file) != 0)
        m_failed = true;
    m_file = nullptr;
    if (m_failed)
        why = "the trace \"" + PrintableName(m_path) + "\" could not be written in full";
    return !m_failed;
}
} // namespace Runner
