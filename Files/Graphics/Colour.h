#pragma once
// Packed colours.
//
// Runner colour  red in bits 0-7, green 8-15, blue 16-23; bits 24-31 carry nothing.
// Device colour  alpha in bits 24-31 over three colour bytes. Only GR_RGBA_To_D3DColor puts them in the device's order
//                (blue lowest); the others keep the bytes of their input.

// Alpha 0..1 as a byte 0..255: clamped, truncated (not rounded); NaN gives 0.
unsigned ConvertAlpha(float _alpha);

// A device colour of four channels, of which the low 8 bits count.
unsigned GR_RGBA_To_D3DColor(int _red, int _green, int _blue, unsigned _alpha);

// The colour bytes of the argument under the low 8 bits of alpha. One operation, two names.
unsigned GR_Color_To_D3DColor(unsigned _col, unsigned _alpha);
unsigned GR_D3DColor_Change_Alpha(unsigned _col, unsigned _alpha);

// The argument, its alpha included.
unsigned GR_D3DColor_To_Color(unsigned _col);

// The linear blend of two colours: _col1 at 0, _col2 at 1, each channel rounded to nearest. Beyond 0..1 a channel wraps
// at 256. The top byte is 0.
unsigned GR_Color_Merge(unsigned _col1, unsigned _col2, float _lerp);
