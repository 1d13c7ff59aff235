#pragma once
// The save area and the files in it (Files/IO/Load_Save.h), and whole files read and written at once.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Runner
{
// The directory that holds everything a game writes. Remembered, not touched.
void SetSaveArea(const std::string& path);
const std::string& SaveArea();

// The full path of a file in it; empty when the name is refused, which the console has been told then.
std::string SavePath(const std::string& name);

// Makes the save area's directory and tries whether files can be made in it. False, and why in one line.
bool PrepareSaveArea(std::string& why);

// Makes the directories of a file in it, and tries whether the file can be written. False, and why in one line; nothing
// is said on the console.
bool PrepareSaveFile(const std::string& name, std::string& why);

// Whether anything failed with the file last opened for writing through LoadSave: the opening, a write, the closing.
bool LastWriteFailed();

// Puts a whole file in place: after a crash at any moment the path holds the old file or the new one, never a part.
// False, and why in one line: the old file is then as it was, and nothing else is left behind.
// Uses the name PATH.part beside it; one left there by a crash is replaced.
bool WriteFileAtomically(const std::string& path, const void* data, size_t size, std::string& why);

// Whether a file of that name can be put in place, as far as that can be known. Leaves nothing behind. False, and why.
bool TryToWriteFile(const std::string& path, std::string& why);

// Likewise for a file that has been written already, under another name in the same directory. When it fails that one
// is gone.
bool PutFileInPlace(const std::string& from, const std::string& path, std::string& why);

// False, and why in one line, for what is no ordinary file, cannot be read or has more than FILE_SIZE_MAX bytes.
bool ReadWholeFile(const std::string& path, std::vector<uint8_t>& bytes, std::string& why);
constexpr size_t FILE_SIZE_MAX = 0x40000000;

enum class FileOperation
{
    Open,
    Write,
    ShortWrite, // half of the data arrives
    Sync,
    Rename,
    Close, // closes, and says that it failed
    MakeDirectory,
};

// Test aid: the n-th operation of that kind from now (0: the next) fails, and that one alone. Negative: none.
void FailFileOperation(FileOperation kind, int64_t n);
} // namespace Runner
