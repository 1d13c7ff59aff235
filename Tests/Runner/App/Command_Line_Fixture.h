#pragma once
// The runner's main function, called inside the test.

#include "Runner/App/Options.h"

#include "Tests/Runner/Support/Game_Support.h"

#include <algorithm>
#include <vector>

namespace RunnerTest
{
// One line that names the program, and nothing after it.
inline void ExpectOneLine(const std::string& text)
{
    EXPECT_EQ(text.find("runner: "), 0u) << text;
    EXPECT_EQ(text.find('\n'), text.size() - 1) << text;
}

class CommandLine : public ::testing::Test
{
protected:
    // Calls the function as a program would be; what it prints lands in out and err.
    template <typename Function> auto Captured(std::vector<std::string> arguments, Function function)
    {
        arguments.insert(arguments.begin(), "runner");
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        CapturedFile outFile, errFile;
        const auto result = function(static_cast<int>(arguments.size()), argv.data(), outFile.Get(), errFile.Get());
        out = outFile.Text();
        err = errFile.Text();
        return result;
    }

    // Runs the program's main function. Its status.
    int Run(std::vector<std::string> arguments) { return Captured(std::move(arguments), Runner::RunnerMain); }

    // Plays the text with further options, pictures into the directory "out".
    int Play(const std::string& text, std::vector<std::string> more = {})
    {
        more.insert(more.begin(), {directory.Write("main.lua", text), "--out", directory.Path("out")});
        return Run(more);
    }

    std::string Pictures() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory.Path("out")))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        std::string all;
        for (const std::string& name : names)
            all += name + " ";
        return all;
    }

    TestDirectory directory;
    std::string out, err;
};
} // namespace RunnerTest
