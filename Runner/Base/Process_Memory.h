#pragma once
// What the C library does with memory that the process has freed. Nothing happens where that library is not glibc.

namespace Runner
{
// Freed memory stays with the process, 64 MiB of it at most. A driver in software takes megabytes for each frame and
// gives them back; returned to the system they would be cleared, page by page, before they are handed out anew: a tenth
// of the time of a frame full of sprites.
void KeepFreedMemory();

// The memory that a game's scripts need at their worst, 2 MiB, is taken at once, written to and freed, and stays with
// the process. A collector lets garbage grow until its next round, and how high it grows is chance: the process would
// become larger now and then for 100,000 frames, by pages that the system has to find in the midst of play.
void TakeFirstMemory();
} // namespace Runner
