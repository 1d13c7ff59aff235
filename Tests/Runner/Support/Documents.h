#pragma once
// Files of the repository as text: its documents, and whatever else a test reads.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace RunnerTest
{
// The file's bytes. One that cannot be read is a failure of the test, and empty.
inline std::string ReadText(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << "cannot read " << path;
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// A page of Docs, such as "Saves.md".
inline std::string Document(const std::string& name) { return ReadText(std::string(SOURCE_DIR) + "/Docs/" + name); }
} // namespace RunnerTest
