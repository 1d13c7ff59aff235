#pragma once

// Where the runner prints what a developer should see.
class CDebugConsole
{
public:
    virtual void Output(const char* text) = 0; // text as it stands, no line end added

protected:
    ~CDebugConsole() = default;
};

extern CDebugConsole* dbg_csol; // null: there is no console
