#pragma once

#include "Runner/Draw/Picture.h"

namespace Runner
{
// A contact sheet: one picture of twelve frames, evenly spread over a run and made smaller, in four columns and three
// rows, in reading order.
class ContactSheet
{
public:
    explicit ContactSheet(int frames) : m_frames(frames) {} // of the whole run
    bool Wants(int frame) const;
    void Add(const Picture& picture); // all of one size
    bool IsEmpty() const { return m_count == 0; }
    const Picture& Sheet() const { return m_sheet; } // without a size while it is empty

private:
    int m_frames;
    int m_count = 0;
    Picture m_sheet;
};
} // namespace Runner
