#pragma once

#include "Runner/App/Options.h"
#include "Runner/Draw/Picture.h"

#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

namespace Runner
{
// One side of a comparison in a window: a game that follows a recording, in a process of its own, because a process
// plays one game at a time. It draws without a window, and its pictures come over a socket.
class ComparedGame
{
public:
    // options: with --replay; kept. isQuiet: what the game logs is not shown. To be made before the window is opened: a
    // driver's state does not survive a fork.
    ComparedGame(const RunOptions& options, bool isQuiet);
    ~ComparedGame();
    ComparedGame(const ComparedGame&) = delete;
    ComparedGame& operator=(const ComparedGame&) = delete;

    // Asks for a frame: it has played so many. Out of range: as far as it goes. One answer is due at a time.
    void Ask(int frame);
    void Cancel(); // what was asked for: it ends on the way
    bool IsAsked() const { return m_isAsked; }
    void Take(int milliseconds); // waits at most so long for the answer, or for news of the way

    // ---- as the last answer has it ----
    int Position() const { return m_position; }
    int Frames() const { return m_frames; } // to be played
    int Done() const { return m_done; }     // frames of the way, while an answer is due
    int OfWay() const { return m_ofWay; }
    uint64_t Sum() const { return m_sum; }                   // of the frame
    const Picture& Shown() const { return m_picture; }       // of the last frame that did not fail
    const std::string& Failure() const { return m_failure; } // one line, empty for none

private:
    void TakeAnswer();
    void Lose();

    pid_t m_process = 0; // 0 for none
    int m_socket = -1;
    bool m_isAsked = false;
    int m_position = 0, m_frames = 0, m_done = 0, m_ofWay = 0;
    uint64_t m_sum = 0;
    Picture m_picture;
    std::string m_failure;
};
} // namespace Runner
