#pragma once
// What tests of the matrix built-ins share: a camera to ask, and matrices as lists of numbers.

#include "Tests/Module/Builtin_Fixture.h"

namespace Recording
{
// 1, 2, ... 16 with signs: no two elements are alike.
inline std::vector<double> Numbers()
{
    std::vector<double> numbers;
    for (int i = 1; i <= 16; ++i)
        numbers.push_back(i % 3 == 0 ? -i : i + 0.25);
    return numbers;
}

inline kvMatrix MatrixOf(const std::vector<double>& numbers)
{
    kvMatrix matrix;
    for (size_t i = 0; i < 16; ++i)
        matrix.m[i] = static_cast<float>(numbers[i]);
    return matrix;
}

class MatrixBuiltinTest : public BuiltinTest
{
protected:
    void SetUp() override
    {
        BuiltinTest::SetUp();
        g_CM.CreateCamera();
        camera = g_CM.CreateCamera(); // identifier 1
    }

    // The elements of an array result; the array is released.
    static std::vector<double> Elements(RValue result)
    {
        Owned array(result);
        EXPECT_EQ(array.kind, VALUE_ARRAY);
        std::vector<double> elements;
        for (int i = 0; i < array.pRefArray->m_length; ++i)
            elements.push_back(array.pRefArray->m_array[i].val);
        return elements;
    }

    static std::vector<double> Widened(const kvMatrix& matrix) { return {matrix.m, matrix.m + 16}; }

    CCamera* camera = nullptr;
};
} // namespace Recording
