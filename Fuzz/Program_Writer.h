#pragma once
// Writes a game in Lua from the decisions of an input: a grammar of what scripts can call, not random bytes. Functions
// and their arguments are those of the Runner's and the module's tables, so that a new function takes part by itself.

#include "Fuzz/Fuzz_Target.h"

#include "Runner/Lua/Signature.h"

#include <string>
#include <vector>

namespace Fuzz
{
class ProgramWriter
{
public:
    explicit ProgramWriter(Choices& choices);

    std::string Write(); // once

private:
    void Object();
    void Room();
    void Views();
    void Event(const char* name, const char* parameter);
    void Body(int statements);
    void Statement();
    void Call();
    void Loop();
    void Coroutine();
    void Store();
    std::string Expression(const char* argument);
    std::string OfKind(const std::string& kind);
    std::string Wild();
    std::string Number();
    std::string Whole();
    std::string Function();
    std::string Matrix();
    std::string Table();
    void Line(const std::string& text) { m_text += text + "\n"; }

    Choices& m_choices;
    const std::vector<Runner::Signature>& m_functions;
    std::string m_text;
    int m_statements = 0; // so far
    int m_depth = 0;      // of functions and loops in each other
};
} // namespace Fuzz
