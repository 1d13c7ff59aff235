#pragma once
// What every view showed, as text: two runs of a game are compared with diff.

#include "Files/Graphics/Camera.h"
#include "Runner/Base/Hash.h"

#include <cstdio>
#include <string>

namespace Runner
{
// One line for a view that is about to be drawn, without a line end:
//   frame view camera  x y width height angle  area x y width height angle  hash of the view and projection matrices
// view is -1 for the default camera. The area is the published one. Numbers are exact, NaN is always "nan".
std::string TraceLine(int frame, int view, const CCamera& camera);

class Trace
{
public:
    Trace() = default;
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    bool Open(const std::string& path, std::string& why); // empties the file
    bool IsOpen() const { return m_file != nullptr; }
    void Write(int frame, int view, const CCamera& camera); // while closed, only into the sum
    uint64_t TakeSum();           // a hash of the content of the lines since it was last taken, closed or not
    bool Close(std::string& why); // false when anything was not written

private:
    FILE* m_file = nullptr;
    Hash m_sum;
    std::string m_path;
    bool m_failed = false;
};
} // namespace Runner
