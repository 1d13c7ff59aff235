#include "Runner/App/Progress.h"

#include <unistd.h>

namespace Runner
{
Progress::Progress(FILE* err, int frames, bool quiet)
    : m_err(err), m_frames(frames), m_isShown(!quiet && isatty(fileno(err)) != 0)
{
}

Progress::~Progress()
{
    if (m_any)
        std::fputs("\r\033[K", m_err);
}

void Progress::Show(int frame)
{
    if (!m_isShown)
        return;
    std::fprintf(m_err, "\rframe %d of %d", frame, m_frames);
    std::fflush(m_err);
    m_any = true;
}
} // namespace Runner
