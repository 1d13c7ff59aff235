#pragma once
// A camera as somebody would write it by hand on glm: one step of a frame, for comparison with the module's.

struct BenchFollower
{
    float x, y, width, height, angle, borderX, borderY, speedX, speedY;
    int target;   // instance identifier, -1 for none
    bool isDirty; // the rectangle changed since the matrices were built
};

struct BenchStepper
{
    const char* name;
    void (*set)(int slot, const BenchFollower& camera);
    void (*step)(int slot); // follows, rebuilds when needed, publishes the visible area, sets both matrices
};

extern const BenchStepper BENCH_GLM_STEPPER;
extern const BenchStepper BENCH_GLM_SIMD_STEPPER;
