#pragma once
// A function's name and the names of its arguments, in the words of errors and documents.

#include <string>
#include <vector>

namespace Runner
{
struct Signature
{
    const char* name;
    int least; // arguments that a call must have; the others are optional
    std::vector<const char*> arguments;

    int Most() const { return static_cast<int>(arguments.size()); }

    std::string Text() const;          // draw_line(x1, y1, x2, y2 [, width]), or room_add{...}
    std::string Argument(int i) const; // draw_line: argument 2 (y1); i counts from 1 and may lie beyond the last
    std::string Wanted(int got) const; // (4 to 5 wanted: x1, y1, x2, y2 [, width]; got 2)
};

// The argument name of a function that takes one table of named fields, such as room_add.
constexpr char FIELDS_ARGUMENT[] = "fields";
} // namespace Runner
