#pragma once
// Callbacks that a saved game cannot keep: neither a function, which is saved as no script, nor a number. The module
// would report each, and save script 0 in its place.

#include "Files/LLVM/RValue.h"

#include <string>
#include <vector>

class CCamera;

namespace Runner
{
struct CameraCallback;

// While this object lives, the cameras have no script in place of such callbacks; afterwards each has its value again.
// No camera may be made, destroyed or given a callback meanwhile.
class WithheldCallbacks
{
public:
    WithheldCallbacks();
    ~WithheldCallbacks();
    WithheldCallbacks(const WithheldCallbacks&) = delete;
    WithheldCallbacks& operator=(const WithheldCallbacks&) = delete;

    std::string Line() const; // names the first and counts the others; empty when there is none

private:
    struct Withheld
    {
        CCamera& camera;
        const CameraCallback& callback;
        RValue value; // moved here: nobody's references change
    };

    void WithholdFrom(CCamera& camera);

    std::vector<Withheld> m_withheld;
};
} // namespace Runner
