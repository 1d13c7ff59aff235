#pragma once
// The inexact functions of scripts and of the Runner itself. C libraries differ in their last bits; these are made of
// plain operations of doubles and give the same bits on every machine. Sine, cosine and arc cosine are the module's:
// Files/Graphics/Trigonometry.h.
//
// Results of one float are made to be the exact ones, correctly rounded; Tools/Mathematics_Proof.cpp compares them, and
// Docs/Targets.md says for how many inputs it has. A NaN gives a NaN.

namespace Runner
{
float Tangent(float radians); // of an infinity: NaN
float ArcSine(float sine);    // -pi/2 .. pi/2; NaN beyond -1 .. 1

// The angle of the point (x, y), -pi .. pi, signs of zeros and infinities as atan2f has them. Within 0.5 of a unit in
// the last place, as far as 100 bits tell.
float ArcTangent(float y, float x);

float Exponential(float exponent);
float Logarithm(float number);        // natural; -infinity of zero, NaN of a negative number
float DecimalLogarithm(float number); // likewise

float HyperbolicSine(float x);
float HyperbolicCosine(float x);
float HyperbolicTangent(float x);

// base ^ exponent in double, special cases as C's pow has them. Exact where the result is a double; elsewhere within
// 0.5 of a unit in the last place, as far as 90 bits tell.
double Power(double base, double exponent);
} // namespace Runner
