#include "Runner/Save/Input_Coding.h"

#include "Runner/Base/Bits.h"

#include <cmath>

namespace Runner
{
namespace
{
constexpr size_t WORD_BITS = 32;
constexpr size_t KEY_WORDS = KEY_COUNT / WORD_BITS;
constexpr size_t SWITCH_WORDS = 3; // held, pressed, released
constexpr size_t MOUSE_WORDS = 4;  // x, y, both wheels
constexpr size_t PAD_WORDS = 1 + PAD_AXIS_COUNT;
constexpr size_t ROW_WORDS =
    SWITCH_WORDS * (2 * KEY_WORDS + 1 + PAD_COUNT) + MOUSE_WORDS + PAD_COUNT * PAD_WORDS; // of one frame

using Row = std::array<uint32_t, ROW_WORDS>;

// How a word is predicted from the frame before.
enum class Prediction
{
    Same,     // switches that are held: those that were
    Likewise, // keys by name: a key that changes its place's switch mostly has the name of its place
    Pressed,  // held now and not before
    Released, // held before and not now
    Near,     // a number: coded as its difference to the one before
    Zero,     // a number that stands for this frame only
};

struct Column
{
    Prediction prediction = Prediction::Zero;
    size_t held = 0; // for Pressed and Released: the column of what is held; for Likewise: that of the place
};

// ---- a frame as a row, and back: the order of the columns is that of these calls ----

// Both directions walk the same list of a frame's parts. visit has an overload for each kind of part.
template <typename Frame, typename Visit> void VisitParts(Frame& frame, Visit& visit)
{
    visit.Keys(frame.positions);
    visit.Keys(frame.names);
    visit.Buttons(frame.mouse.buttons);
    visit.Pointer(frame.mouse.x);
    visit.Pointer(frame.mouse.y);
    visit.Wheel(frame.mouse.wheelX);
    visit.Wheel(frame.mouse.wheelY);
    for (auto& pad : frame.pads)
    {
        visit.Flag(pad.connected);
        for (auto& axis : pad.axes)
            visit.Axis(axis);
        visit.Buttons(pad.buttons);
    }
}

// The pointer is coded in steps of POINTER_STEP where that loses nothing, else by the bits of its floats.
uint32_t PointerWord(float place, bool inSteps)
{
    return inSteps ? static_cast<uint32_t>(static_cast<int32_t>(place / POINTER_STEP)) : BitsOf<uint32_t>(place);
}

float PointerPlace(uint32_t word, bool inSteps)
{
    return inSteps ? static_cast<float>(static_cast<int32_t>(word)) * POINTER_STEP : BitsOf<float>(word);
}

bool IsInSteps(float place)
{
    return std::fabs(place) <= POINTER_FAR &&
           BitsOf<uint32_t>(PointerPlace(PointerWord(place, true), true)) == BitsOf<uint32_t>(place);
}

class RowMaker
{
public:
    explicit RowMaker(bool inSteps) : m_inSteps(inSteps) {}

    void Keys(const KeySwitches& keys)
    {
        for (const auto* set : {&keys.held, &keys.pressed, &keys.released})
            for (size_t first = 0; first < KEY_COUNT; first += WORD_BITS)
                Put(WordOf(*set, first));
    }

    void Buttons(const Switches<uint32_t>& buttons)
    {
        for (const uint32_t set : {buttons.held, buttons.pressed, buttons.released})
            Put(set);
    }

    void Pointer(float place) { Put(PointerWord(place, m_inSteps)); }
    void Wheel(int32_t notches) { Put(static_cast<uint32_t>(notches)); }
    void Flag(bool flag) { Put(flag ? 1 : 0); }
    void Axis(int16_t way) { Put(static_cast<uint32_t>(int32_t{way})); }

    const Row& Made() const { return m_row; }

private:
    static uint32_t WordOf(const std::bitset<KEY_COUNT>& set, size_t first)
    {
        uint32_t word = 0;
        for (size_t bit = 0; bit < WORD_BITS; ++bit)
            word |= static_cast<uint32_t>(set[first + bit]) << bit;
        return word;
    }

    void Put(uint32_t word) { m_row[m_next++] = word; }

    const bool m_inSteps;
    Row m_row = {};
    size_t m_next = 0;
};

class FrameMaker
{
public:
    FrameMaker(const Row& row, bool inSteps) : m_row(row), m_inSteps(inSteps) {}

    void Keys(KeySwitches& keys)
    {
        for (auto* set : {&keys.held, &keys.pressed, &keys.released})
            for (size_t first = 0; first < KEY_COUNT; first += WORD_BITS)
                for (uint32_t word = Take(), bit = 0; word != 0; word >>= 1, ++bit)
                    (*set)[first + bit] = (word & 1) != 0;
    }

    void Buttons(Switches<uint32_t>& buttons)
    {
        for (uint32_t* set : {&buttons.held, &buttons.pressed, &buttons.released})
            *set = Take();
    }

    void Pointer(float& place) { place = PointerPlace(Take(), m_inSteps); }
    void Wheel(int32_t& notches) { notches = static_cast<int32_t>(Take()); }
    void Flag(bool& flag) { flag = InRange(0, 1) != 0; }
    void Axis(int16_t& way) { way = static_cast<int16_t>(InRange(INT16_MIN, INT16_MAX)); }

    bool IsGood() const { return m_isGood; }

private:
    uint32_t Take() { return m_row[m_next++]; }

    int32_t InRange(int32_t low, int32_t high)
    {
        const auto number = static_cast<int32_t>(Take());
        m_isGood = m_isGood && number >= low && number <= high;
        return m_isGood ? number : 0;
    }

    const Row& m_row;
    const bool m_inSteps;
    size_t m_next = 0;
    bool m_isGood = true;
};

class ColumnLister
{
public:
    void Keys(const KeySwitches&)
    {
        const size_t first = m_next;
        AddSwitches(KEY_WORDS);
        for (size_t word = 0; word < KEY_WORDS && first > 0; ++word)
            m_columns[first + word] = {Prediction::Likewise, word};
    }

    void Buttons(const Switches<uint32_t>&) { AddSwitches(1); }
    void Pointer(float) { Add(Prediction::Near); }
    void Wheel(int32_t) { Add(Prediction::Zero); }
    void Flag(bool) { Add(Prediction::Same); }
    void Axis(int16_t) { Add(Prediction::Near); }

    const std::array<Column, ROW_WORDS>& Listed() const { return m_columns; }

private:
    void AddSwitches(size_t words)
    {
        const size_t held = m_next;
        for (const Prediction prediction : {Prediction::Same, Prediction::Pressed, Prediction::Released})
            for (size_t word = 0; word < words; ++word)
                Add(prediction, held + word);
    }

    void Add(Prediction prediction, size_t held = 0) { m_columns[m_next++] = {prediction, held}; }

    std::array<Column, ROW_WORDS> m_columns = {};
    size_t m_next = 0;
};

const std::array<Column, ROW_WORDS>& Columns()
{
    static const std::array<Column, ROW_WORDS> s_columns = []
    {
        ColumnLister lister;
        const InputFrame frame;
        VisitParts(frame, lister);
        return lister.Listed();
    }();
    return s_columns;
}

// ---- a column: what the predictions leave; equal predictions are counted, the rest are varints ----

bool IsNumber(const Column& column)
{
    return column.prediction == Prediction::Near || column.prediction == Prediction::Zero;
}

uint32_t Predicted(const std::vector<Row>& rows, size_t frame, const Column& column, size_t number)
{
    static const Row s_empty = {};
    const Row& before = frame == 0 ? s_empty : rows[frame - 1];
    switch (column.prediction)
    {
    case Prediction::Same:
    case Prediction::Near: return before[number];
    case Prediction::Likewise: return before[number] ^ before[column.held] ^ rows[frame][column.held];
    case Prediction::Pressed: return rows[frame][column.held] & ~before[column.held];
    case Prediction::Released: return before[column.held] & ~rows[frame][column.held];
    case Prediction::Zero: break;
    }
    return 0;
}

uint64_t RestOf(uint32_t word, uint32_t predicted, const Column& column)
{
    if (!IsNumber(column))
        return word ^ predicted;
    const auto difference = static_cast<int32_t>(word - predicted);
    return ByteWriter::Folded(difference);
}

uint32_t WordOf(uint64_t rest, uint32_t predicted, const Column& column)
{
    if (!IsNumber(column))
        return static_cast<uint32_t>(rest) ^ predicted;
    return predicted + static_cast<uint32_t>(ByteReader::Unfolded(rest));
}

void WriteColumn(ByteWriter& io, const std::vector<uint64_t>& rests)
{
    for (size_t i = 0; i < rests.size();)
    {
        io.Varint(rests[i]);
        const size_t first = i++;
        while (rests[first] == 0 && i < rests.size() && rests[i] == 0)
            ++i;
        if (rests[first] == 0)
            io.Varint(i - first - 1);
    }
}

void ReadColumn(ByteReader& io, std::vector<uint64_t>& rests)
{
    for (size_t i = 0; i < rests.size() && !io.Failed();)
    {
        const uint64_t rest = io.Varint();
        const uint64_t others = rest == 0 ? io.Varint() : 0;
        if (rest > UINT32_MAX || others >= rests.size() - i)
            return io.Fail();
        for (uint64_t count = 0; count <= others; ++count)
            rests[i++] = rest;
    }
}

// ---- text ----

void WriteText(ByteWriter& io, const std::vector<InputFrame>& frames)
{
    for (size_t i = 0; i < frames.size(); ++i)
    {
        if (frames[i].text.empty())
            continue;
        io.Varint(i + 1);
        io(frames[i].text);
    }
    io.Varint(0);
}

void ReadText(ByteReader& io, std::vector<InputFrame>& frames)
{
    for (uint64_t last = 0;;)
    {
        const uint64_t number = io.Varint();
        if (io.Failed() || number == 0)
            return;
        if (number <= last || number > frames.size())
            return io.Fail();
        std::string& text = frames[static_cast<size_t>(number - 1)].text;
        io(text);
        if (text.empty() || text.size() > TEXT_BYTES_LIMIT)
            return io.Fail();
        last = number;
    }
}
} // namespace

void WriteInputs(ByteWriter& io, const std::vector<InputFrame>& frames)
{
    bool inSteps = true;
    for (const InputFrame& frame : frames)
        inSteps = inSteps && IsInSteps(frame.mouse.x) && IsInSteps(frame.mouse.y);
    std::vector<Row> rows;
    for (const InputFrame& frame : frames)
    {
        RowMaker maker(inSteps);
        VisitParts(frame, maker);
        rows.push_back(maker.Made());
    }
    io(inSteps);
    std::vector<uint64_t> rests(frames.size());
    for (size_t number = 0; number < ROW_WORDS; ++number)
    {
        const Column& column = Columns()[number];
        bool any = false;
        for (size_t i = 0; i < rows.size(); ++i)
        {
            rests[i] = RestOf(rows[i][number], Predicted(rows, i, column, number), column);
            any = any || rests[i] != 0;
        }
        if (!any)
            continue;
        io.Varint(number + 1);
        WriteColumn(io, rests);
    }
    io.Varint(0);
    WriteText(io, frames);
}

void ReadInputs(ByteReader& io, size_t count, std::vector<InputFrame>& frames)
{
    bool inSteps = false;
    io(inSteps);
    std::vector<Row> rows(count, Row{});
    std::vector<uint64_t> rests(count);
    uint64_t listed = io.Varint();
    for (size_t number = 0; number < ROW_WORDS; ++number)
    {
        const Column& column = Columns()[number];
        const bool isListed = listed == number + 1;
        std::fill(rests.begin(), rests.end(), 0);
        if (isListed)
            ReadColumn(io, rests);
        for (size_t i = 0; i < count; ++i)
            rows[i][number] = WordOf(rests[i], Predicted(rows, i, column, number), column);
        listed = isListed ? io.Varint() : listed;
    }
    if (listed != 0) // a column that there is not, or out of order
        return io.Fail();
    frames.assign(count, InputFrame());
    for (size_t i = 0; i < count; ++i)
    {
        FrameMaker maker(rows[i], inSteps);
        VisitParts(frames[i], maker);
        if (!maker.IsGood())
            io.Fail();
    }
    ReadText(io, frames);
}
} // namespace Runner
