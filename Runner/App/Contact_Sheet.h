#pragma once

#include "Runner/Draw/Picture.h"

namespace Runner
{
// A contact sheet: one picture of some frames, evenly spread over a run and made smaller, in reading order.
class ContactSheet
{
public:
    // frames: of the whole run.
    explicit ContactSheet(int frames, int columns = 4, int rows = 3)
        : m_frames(frames), m_columns(columns), m_rows(rows)
    {
    }
    bool Wants(int frame) const;
    void Add(const Picture& picture); // all of one size
    bool IsEmpty() const { return m_count == 0; }
    const Picture& Sheet() const { return m_sheet; } // without a size while it is empty

private:
    int m_frames;
    int m_columns, m_rows;
    int m_count = 0;
    Picture m_sheet;
};
} // namespace Runner
