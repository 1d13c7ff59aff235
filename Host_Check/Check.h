#pragma once
// What the checks are written with. Private to the library.

#include "Host_Check/Host_Check.h"

#include <cstddef>
#include <initializer_list>

namespace HostCheck
{

// Hooks as bits: what a check cannot do without.
enum Need : unsigned
{
    Need_Nothing = 0,
    Need_Room = 1u << 0,
    Need_Instance = Need_Room | 1u << 1,
    Need_Change = Need_Instance | 1u << 2,
    Need_Script = 1u << 3,
    Need_Text = 1u << 4,
    Need_Collect = 1u << 5,
    Need_File = 1u << 6,
    Need_Buffer = 1u << 7,
    Need_Refusal = 1u << 8,
    Need_Error = 1u << 9,
    Need_Function = 1u << 10,
    Need_Matrix = 1u << 11,
};

// One run of one check: the first expectation that fails is the verdict.
class Trial
{
public:
    explicit Trial(const Hooks& theHooks) : hooks(theHooks) {}

    const Hooks& hooks;

    // Answers holds. What was seen is formatted as by printf, only where it does not hold.
#if defined(__GNUC__)
    __attribute__((format(printf, 3, 4)))
#endif
    bool
    Expect(bool holds, const char* saw, ...);
    void NotTested(const char* why);

    Verdict verdict = Verdict::Holds;
    char saw[320] = "";
};

struct Check
{
    const char* name;
    Level level;
    const char* header;
    const char* sentence; // exactly as in the header, or its beginning and "..."
    unsigned needs;
    void (*body)(Trial& trial);
};

// A table of checks, one a subject. Explicit tables, since a linker drops objects that nobody names.
struct Checks
{
    const Check* first;
    size_t count;
};

template <size_t Count> constexpr Checks Table(const Check (&checks)[Count]) { return {checks, Count}; }

Checks MemoryChecks();
Checks MatrixChecks();
Checks NumberChecks();
Checks WorldChecks();
Checks GraphicsChecks();
Checks ArrayChecks();
Checks TextChecks();
Checks CodeChecks();
Checks ViewChecks();
Checks ScriptChecks();
Checks SlotChecks();
Checks MarkChecks();
Checks CollectorChecks();
Checks BufferChecks();
Checks FileChecks();

// ---- what several subjects use ----
RValue Real(double number);
RValue OfKind(uint32_t kind); // all value bits zero
RValue Integer64(int64_t number);

// Drops what errors were reported so far.
void ForgetErrors(const Trial& trial);

// A running room of 1000 x 600 and its objects, ended with the scope.
class OpenRoom
{
public:
    explicit OpenRoom(Trial& trial);
    ~OpenRoom();
    OpenRoom(const OpenRoom&) = delete;
    OpenRoom& operator=(const OpenRoom&) = delete;

    bool IsOpen() const { return m_isOpen; }
    int Parent() const { return m_objects[0]; }
    int Child() const { return m_objects[1]; }
    int Childless() const { return m_objects[2]; } // without instances

    static constexpr int WIDTH = 1000, HEIGHT = 600;

private:
    const Hooks& m_hooks;
    int m_objects[3] = {-1, -1, -1};
    bool m_isOpen;
};

} // namespace HostCheck
