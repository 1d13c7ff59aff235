// Options are read while each request for memory is refused in turn: std::bad_alloc arrives where the program can tell
// its user, and nothing ends the process. A program of its own, since it replaces operator new.

#include "Runner/App/Camera_Values.h"
#include "Runner/App/Options.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <new>

namespace
{
constexpr int64_t NONE = -1;

int64_t s_left = NONE; // requests until one is refused
bool s_refused = false;
} // namespace

void* operator new(size_t size)
{
    if (s_left >= 0 && s_left-- == 0)
    {
        s_refused = true;
        throw std::bad_alloc();
    }
    if (void* const block = std::malloc(size == 0 ? 1 : size))
        return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }

// A stand-in: what a camera's values are checked against is the module, which this program leaves out.
std::string Runner::ReadCameraValues(const std::string& text, std::vector<HandChange>& values)
{
    values.push_back({});
    return text;
}

namespace
{
using Arguments = std::vector<std::string>;

// One reading with the n-th request refused. False once no request was refused: n is past the last one.
bool ReadRefusing(int64_t n, Arguments arguments)
{
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    FILE* const err = std::tmpfile();
    s_refused = false;
    s_left = n;
    try
    {
        Runner::RunOptions options;
        Runner::ParseOptions(static_cast<int>(arguments.size()), argv.data(), options, err);
        Runner::HelpText();
    }
    catch (const std::bad_alloc&)
    {
        EXPECT_TRUE(s_refused);
    }
    s_left = NONE;
    std::fclose(err);
    return s_refused;
}

int RefuseEach(const Arguments& arguments)
{
    int refused = 0;
    while (ReadRefusing(refused, arguments))
        ++refused;
    return refused;
}

TEST(RefusedOptions, ArriveAsAnExceptionWhicheverRequestIsRefused)
{
    const std::string longName(100, 'n'); // no text of this length fits into a string's own bytes
    EXPECT_GT(RefuseEach({"runner", longName, "--out", longName, "--save-at", "3", longName, "--seed", "7",
                          "--contact-sheet=" + longName, "--size", "640x480"}),
              10);
    EXPECT_GT(RefuseEach({"runner", "--" + longName}), 3);
    EXPECT_GT(RefuseEach({"runner", longName, "--frames", longName}), 5);
}
} // namespace
