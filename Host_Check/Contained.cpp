#include "Host_Check/Contained.h"

#include <cstring>

#if defined(__unix__) || defined(__APPLE__)
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>
#define HOST_CHECK_FORKS 1
#endif

namespace HostCheck
{

void RunHere(const Check& check, Trial& trial) { check.body(trial); }

#if defined(HOST_CHECK_FORKS)
namespace
{

// What a child answers through its pipe.
struct Answer
{
    int verdict;
    char saw[sizeof(Trial::saw)];
};

[[noreturn]] void RunAsChild(const Check& check, Trial& trial, unsigned seconds, int pipe)
{
    std::signal(SIGALRM, SIG_DFL); // the host's handlers would not end the process
    alarm(seconds);
    RunHere(check, trial);
    Answer answer = {};
    answer.verdict = static_cast<int>(trial.verdict);
    std::memcpy(answer.saw, trial.saw, sizeof answer.saw);
    const ssize_t written = write(pipe, &answer, sizeof answer);
    std::fflush(nullptr);
    _exit(written == static_cast<ssize_t>(sizeof answer) ? 0 : 1); // no destructors: the parent runs them
}

bool ReadAnswer(int pipe, Answer& answer)
{
    size_t got = 0;
    while (got < sizeof answer)
    {
        const ssize_t part = read(pipe, reinterpret_cast<char*>(&answer) + got, sizeof answer - got);
        if (part < 0 && errno == EINTR)
            continue;
        if (part <= 0)
            break;
        got += static_cast<size_t>(part);
    }
    return got == sizeof answer;
}

void TellEnd(Trial& trial, int status, unsigned seconds)
{
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM)
        trial.Expect(false, "the check was not back after %u seconds", seconds);
    else if (WIFSIGNALED(status))
        trial.Expect(false, "the host was ended by signal %d (%s)", WTERMSIG(status), strsignal(WTERMSIG(status)));
    else
        trial.Expect(false, "the host ended the program, status %d, instead of coming back", WEXITSTATUS(status));
}

} // namespace

void RunContained(const Check& check, Trial& trial, unsigned seconds)
{
    int ends[2];
    if (pipe(ends) != 0)
        return RunHere(check, trial);
    std::fflush(nullptr); // or the child would print it a second time
    const pid_t child = fork();
    if (child == 0)
    {
        close(ends[0]);
        RunAsChild(check, trial, seconds, ends[1]);
    }
    close(ends[1]);
    Answer answer = {};
    const bool hasAnswer = child > 0 && ReadAnswer(ends[0], answer);
    close(ends[0]);
    if (child < 0)
        return RunHere(check, trial);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR)
        continue;
    if (!hasAnswer)
        return TellEnd(trial, status, seconds);
    trial.verdict = static_cast<Verdict>(answer.verdict);
    std::memcpy(trial.saw, answer.saw, sizeof trial.saw);
}
#else
void RunContained(const Check& check, Trial& trial, unsigned) { RunHere(check, trial); }
#endif

} // namespace HostCheck
