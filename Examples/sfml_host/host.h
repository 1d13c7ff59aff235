#pragma once
// The bridge between the camera module and SFML: what main.cpp sees of host.cpp.

#include <Files/Graphics/Graphics_Support.h>
#include <SFML/Graphics.hpp>

#include <functional>

// What the camera that was applied last shows. Room y grows downwards, as in SFML; clip x and y reach from -1 (left,
// top) to 1 (right, bottom).
struct Shown
{
    bool isFlat = false;      // false: a perspective camera, of which SFML can show nothing
    sf::Transform roomToClip; // the camera's matrices as one
    sf::View view;            // the same as a centre, a size and a rotation; the viewport is the caller's to set
    float difference = 0.0f; // how far view and roomToClip are apart, in clip units. Large for a matrix that mirrors or
                             // shears, which no sf::View can do: draw such a camera through the transform
};
const Shown& LastShown();

RValue NewScript(std::function<void()> body); // as the value that a camera's begin, update or end callback takes
int NextInstanceId();                         // of the instance that is made next; cameras follow it by this number
