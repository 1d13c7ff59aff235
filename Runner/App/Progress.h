#pragma once

#include <cstdio>

namespace Runner
{
// On a terminal: which frame is being played, in one line that is written over and gone at the end.
class Progress
{
public:
    Progress(FILE* err, int frames, bool quiet); // err: not owned; nothing is shown when it is no terminal
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(int frame);

private:
    FILE* m_err;
    int m_frames;
    bool m_isShown;
    bool m_any = false;
};
} // namespace Runner
