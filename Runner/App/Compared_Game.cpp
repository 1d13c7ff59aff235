#include "Runner/App/Compared_Game.h"

#include "Runner/Api/Api.h"
#include "Runner/App/Run_Start.h"
#include "Runner/Base/Uninterrupted.h"
#include "Runner/Host/Console.h"
#include "Runner/Save/Timeline.h"

#include <algorithm>
#include <csignal>
#include <cstdio>

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Runner
{
namespace
{
// What is asked for: a frame, or one of these.
constexpr int32_t END = -1, CANCEL = -2;
constexpr int ENDING_MILLISECONDS = 300; // for a process that is to end

// The head of an answer; the failure's text and the picture's pixels follow it.
struct Reply
{
    int32_t isDone; // 0: news of the way, nothing follows
    int32_t position, frames, done, ofWay;
    int32_t width, height, failureLength;
    uint64_t sum;
};

bool CanRead(int socket, int milliseconds)
{
    pollfd waiting = {socket, POLLIN, 0};
    return poll(&waiting, 1, milliseconds) > 0;
}

// Calls transfer(bytes, size), which answers as send and recv do, until all bytes went. False: the other side has gone.
template <typename Byte, typename Transfer> bool TransferAll(Byte* bytes, size_t size, Transfer transfer)
{
    while (size > 0)
    {
        const ssize_t done = Uninterrupted([&] { return transfer(bytes, size); });
        if (done <= 0)
            return false;
        bytes += done;
        size -= static_cast<size_t>(done);
    }
    return true;
}

bool Send(int socket, const void* data, size_t size)
{
    return TransferAll(static_cast<const uint8_t*>(data), size,
                       [socket](const uint8_t* bytes, size_t rest) { return send(socket, bytes, rest, MSG_NOSIGNAL); });
}

bool Receive(int socket, void* data, size_t size)
{
    return TransferAll(static_cast<uint8_t*>(data), size,
                       [socket](uint8_t* bytes, size_t rest) { return recv(socket, bytes, rest, 0); });
}

// ---- in the process ----

class Player
{
public:
    Player(const RunOptions& asked, int socket) : m_options(asked), m_socket(socket)
    {
        m_options.anyway = true; // one of them is not the game that was recorded
        if (!m_start.Open(m_options, m_failure))
            return;
        GameOptions game = m_options.game;
        game.journal = nullptr;
        m_timeline = std::make_unique<Timeline>(game, OpenApi, "", m_start.SaveContent(), ApplyByHand);
        m_timeline->Follow(*m_start.Replayed());
        m_canPlay = m_timeline->Start(m_failure) && m_start.FitsGame(m_timeline->Now(), m_failure);
        m_start.ShowNotice(stderr);
    }

    void Serve()
    {
        for (int32_t asked = 0; Receive(m_socket, &asked, sizeof asked) && asked != END;)
            if (asked >= 0 && !(GoTo(asked) && Tell()))
                break;
        if (m_canPlay)
            m_timeline->Now().Finish();
    }

private:
    int Last() const { return m_canPlay ? std::min(m_timeline->Frames(), m_options.frames) : 0; }
    int Position() const { return m_canPlay ? m_timeline->Position() : 0; }

    // False: the other side has gone.
    bool GoTo(int asked)
    {
        const int frame = std::min(asked, Last());
        bool isThere = true;
        const auto news = [this, &isThere](int done, int all)
        {
            Reply answer = Head();
            answer.isDone = 0;
            answer.done = done;
            answer.ofWay = all;
            isThere = isThere && Send(m_socket, &answer, sizeof answer);
            return isThere && !IsCancelled();
        };
        if (!m_canPlay)
            return true;
        const bool isNext = frame == Position() + 1 && m_timeline->Now().Failure().empty();
        if (isNext && !m_timeline->Now().HasEnded())
            m_timeline->PlayRecorded();
        else if (frame != Position())
            m_timeline->GoTo(frame, news);
        m_failure = m_timeline->Now().Failure();
        if (m_failure.empty())
            m_picture = m_timeline->Now().Screen();
        return isThere;
    }

    bool IsCancelled() const
    {
        int32_t asked = 0;
        return CanRead(m_socket, 0) && (!Receive(m_socket, &asked, sizeof asked) || asked == CANCEL);
    }

    Reply Head() const
    {
        Reply answer = {};
        answer.isDone = 1;
        answer.position = Position();
        answer.frames = Last();
        answer.sum = m_canPlay ? m_timeline->Now().FrameSum() : 0;
        return answer;
    }

    bool Tell() const
    {
        Reply answer = Head();
        answer.width = m_picture.width;
        answer.height = m_picture.height;
        answer.failureLength = static_cast<int32_t>(m_failure.size());
        return Send(m_socket, &answer, sizeof answer) && Send(m_socket, m_failure.data(), m_failure.size()) &&
               Send(m_socket, m_picture.rgba.data(), m_picture.rgba.size());
    }

    RunOptions m_options;
    const int m_socket;
    RunStart m_start;
    std::unique_ptr<Timeline> m_timeline;
    bool m_canPlay = false;
    Picture m_picture;
    std::string m_failure;
};
} // namespace

// ---- on this side ----

// What is buffered is written first: the process must not write it once more.
ComparedGame::ComparedGame(const RunOptions& options, bool isQuiet)
{
    int ends[2] = {-1, -1};
    std::fflush(nullptr);
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0 || (m_process = fork()) < 0)
    {
        m_process = 0;
        m_failure = "there is no process for the comparison";
        return;
    }
    if (m_process == 0)
    {
        close(ends[0]);
        SetConsoleQuiet(isQuiet || options.quiet);
        Player(options, ends[1]).Serve();
        std::fflush(nullptr);
        _exit(0);
    }
    close(ends[1]);
    m_socket = ends[0];
}

ComparedGame::~ComparedGame()
{
    if (m_process == 0)
        return;
    Send(m_socket, &END, sizeof END);
    shutdown(m_socket, SHUT_WR);
    std::vector<uint8_t> rest(65536);
    while (CanRead(m_socket, ENDING_MILLISECONDS) && recv(m_socket, rest.data(), rest.size(), 0) > 0)
        continue;
    close(m_socket);
    if (waitpid(m_process, nullptr, WNOHANG) == m_process)
        return;
    kill(m_process, SIGKILL);
    Uninterrupted([this] { return waitpid(m_process, nullptr, 0); });
}

void ComparedGame::Ask(int frame)
{
    const int32_t asked = std::max(frame, 0);
    m_done = 0;
    m_isAsked = m_process != 0 && Send(m_socket, &asked, sizeof asked);
    if (m_process != 0 && !m_isAsked)
        Lose();
}

void ComparedGame::Cancel()
{
    if (m_isAsked)
        Send(m_socket, &CANCEL, sizeof CANCEL);
}

void ComparedGame::Take(int milliseconds)
{
    if (m_isAsked && CanRead(m_socket, milliseconds))
        TakeAnswer();
}

void ComparedGame::TakeAnswer()
{
    Reply answer = {};
    if (!Receive(m_socket, &answer, sizeof answer))
        return Lose();
    m_done = answer.done;
    m_ofWay = answer.ofWay;
    if (answer.isDone == 0)
        return;
    m_position = answer.position;
    m_frames = answer.frames;
    m_sum = answer.sum;
    m_picture.width = answer.width;
    m_picture.height = answer.height;
    m_failure.resize(static_cast<size_t>(answer.failureLength));
    m_picture.rgba.resize(m_picture.Offset(0, answer.height));
    m_isAsked = false;
    if (!Receive(m_socket, m_failure.data(), m_failure.size()) ||
        !Receive(m_socket, m_picture.rgba.data(), m_picture.rgba.size()))
        Lose();
}

void ComparedGame::Lose()
{
    m_isAsked = false;
    m_failure = "its process has ended";
}
} // namespace Runner
