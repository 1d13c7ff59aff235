#pragma once
// What a run that ended by a failure has to say on its error stream.

#include <sstream>
#include <string>

namespace RunnerTest
{
// A line of the runner or of the module, indented lines that tell where, and nothing else.
inline bool IsOneReport(const std::string& text)
{
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);
    bool isOurs = line.rfind("runner: ", 0) == 0 || line.rfind("camera: ", 0) == 0;
    while (std::getline(lines, line))
        isOurs = isOurs && line.rfind("    ", 0) == 0;
    return isOurs && !text.empty() && text.back() == '\n';
}

// Views that show a destroyed camera are warned of, which is no report.
inline std::string WithoutWarnings(const std::string& text)
{
    std::istringstream lines(text);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
    {
        const bool isWarning = line.rfind("warning: ", 0) == 0;
        const bool isTheirCount = line.rfind("runner: ", 0) == 0 && line.find(" warning") != std::string::npos;
        if (!isWarning && !isTheirCount)
            kept += line + "\n";
    }
    return kept;
}
} // namespace RunnerTest
