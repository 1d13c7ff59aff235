#pragma once
/* What every peer library is asked to do. Plain C, because one of the peers is a C library.
 *
 * A matrix is sixteen floats as Platform/Matrix.h lays them out: rows, vectors on the left. That is the same memory as
 * a column-major matrix with vectors on the right, so every library works on its own convention without a
 * transposition. */

#ifdef __cplusplus
extern "C"
{
#endif

    /* The input of a rebuild: a camera's rectangle in room units and its angle in degrees. */
    struct BenchView
    {
        float x, y, width, height, angle;
    };

    enum
    {
        BENCH_VIEWS = 16,    /* cameras that take turns; together they stay in the first-level cache */
        BENCH_MATRICES = 256 /* matrices of one call of invert_all */
    };

    /* The products of a rebuild, in the order of the camera's record. */
    enum BenchProduct
    {
        BENCH_PROJ,
        BENCH_VIEW,
        BENCH_VIEW_PROJ,
        BENCH_INV_PROJ,
        BENCH_INV_VIEW,
        BENCH_INV_VIEW_PROJ,
        BENCH_PRODUCTS
    };

    struct BenchLibrary
    {
        const char* name;

        /* Rebuilds camera `slot` as the flat build does: look-at, parallel projection, their product and the inverses
         * of all three, all six stored in the library's own types. */
        void (*rebuild)(int slot, const struct BenchView* view);
        void (*products)(int slot, float (*out)[16]); /* what the last rebuild stored, BENCH_PRODUCTS matrices */

        /* out[i] = inverse of in[i]; both 32-byte aligned and apart from each other. */
        void (*invert_all)(const float (*in)[16], float (*out)[16], int count);
    };

    extern const struct BenchLibrary BENCH_GLM;
    extern const struct BenchLibrary BENCH_GLM_SIMD; /* its aligned types */
    extern const struct BenchLibrary BENCH_CGLM;
    extern const struct BenchLibrary BENCH_EIGEN;
    extern const struct BenchLibrary BENCH_SCALAR; /* the textbook, written out */

#ifdef __cplusplus
}
#endif
