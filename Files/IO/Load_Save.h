#pragma once

struct _KvFILE; // an open file; opaque here

// Files in the game's save area.
class LoadSave
{
public:
    // Writes the full path of a save-area file into out, ended within size bytes. A name that would leave the area or
    // not fit is refused: out is then the empty string, which no fopen opens.
    static void _GetSaveFileName(char* out, int size, const char* name);
    static _KvFILE* fopen(const char* path, const char* mode); // null when it cannot be opened
    static unsigned fwrite(const void* data, unsigned size, unsigned count, _KvFILE* file); // items written
    static int fclose(_KvFILE* file); // 0 when everything is written
};

// Creates the directories that the path needs.
void EnsureDirectoryIsCreated(const char* path);
