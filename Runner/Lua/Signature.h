#pragma once
// A function's name and the names of its arguments, in the words of errors and documents.

#include <string>
#include <vector>

namespace Runner
{
struct Signature
{
    const char* name;
    int least; // arguments that a call must have; those after them may be left out from the end
    std::vector<const char*> arguments;

    int Most() const { return static_cast<int>(arguments.size()); }

    std::string Text() const;          // draw_line(x1, y1, x2, y2 [, width]); for one table of fields: room_add{...}
    std::string Argument(int i) const; // draw_line: argument 2 (y1); i counts from 1 and may lie beyond the last
    std::string Wanted(int got) const; // (4 to 5 wanted: x1, y1, x2, y2 [, width]; got 2)
};

// The one argument of a function that takes a table of named fields.
constexpr char FIELDS_ARGUMENT[] = "fields";
} // namespace Runner
