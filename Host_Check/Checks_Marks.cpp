// Files/Object/Object_Base.h: marking, asked outside of a collection with marks of our own.

#include "Host_Check/Check.h"
#include "Host_Check/Probe.h"

#include <new>
#include <vector>

namespace HostCheck
{
namespace
{

constexpr char HEADER[] = "Files/Object/Object_Base.h";
constexpr char MARKS[] = "Marks this object in the mark bits, one bit a slot, and what it refers to.";
constexpr char WORDS[] = "The marks are count words of 32 slots each, the lowest slot in the lowest bit.";
constexpr char REFUSES[] = "False: already marked, or outside.";

class Unplaced : public KvObjectBase
{
public:
    Unplaced() : KvObjectBase(0, OBJECT_VARIABLE_MASK) {}
};

// Mark bits for every slot of the table.
struct Marks
{
    Marks() : words(static_cast<size_t>(g_slotObjects.m_nCapacity) / 32 + 1, 0) {}

    int Count() const { return static_cast<int>(words.size()); }
    int InUse() const
    {
        int bits = 0;
        for (uint32_t word : words)
            for (; word != 0; word &= word - 1)
                ++bits;
        return bits;
    }
    bool Has(int slot) const { return (words[static_cast<size_t>(slot) / 32] >> (slot % 32) & 1u) != 0; }

    std::vector<uint32_t> words;
};

// A probe in a slot above 31, so that a host which mixes up words and bits shows it.
class HighProbe
{
public:
    HighProbe()
    {
        do
            m_probes[m_count] = Probe::Make(m_fate);
        while (m_probes[m_count] != nullptr && m_probes[m_count]->m_slot < 33 && ++m_count < MOST);
        m_count = m_count < MOST ? m_count : MOST - 1;
    }
    ~HighProbe()
    {
        for (int i = 0; i <= m_count; ++i)
            if (m_probes[i] != nullptr)
                m_probes[i]->Discard();
    }
    HighProbe(const HighProbe&) = delete;
    HighProbe& operator=(const HighProbe&) = delete;

    Probe* Get() const { return m_probes[m_count]; }

private:
    static constexpr int MOST = 40;
    Probe::Fate m_fate;
    Probe* m_probes[MOST] = {};
    int m_count = 0;
};

void ObjectsSetTheirBit(Trial& trial)
{
    const HighProbe high;
    Probe* probe = high.Get();
    if (probe == nullptr)
        return;
    Marks marks;
    trial.Expect(probe->KvObjectBase::Mark4GC(marks.words.data(), marks.Count()),
                 "Mark4GC of an unmarked object in slot %d answers false", probe->m_slot);
    trial.Expect(marks.Has(probe->m_slot), "Mark4GC has not set bit %d of word %d for slot %d", probe->m_slot % 32,
                 probe->m_slot / 32, probe->m_slot);
    trial.Expect(marks.InUse() == 1, "Mark4GC of an object without variables has set %d bits", marks.InUse());
}

void TheLowestSlotIsTheLowestBit(Trial& trial)
{
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe == nullptr)
        return;
    Marks marks;
    probe->KvObjectBase::Mark4GC(marks.words.data(), marks.Count());
    const uint32_t word = marks.words[static_cast<size_t>(probe->m_slot) / 32];
    trial.Expect(word == uint32_t{1} << (probe->m_slot % 32), "the word with slot %d is 0x%08x", probe->m_slot,
                 static_cast<unsigned>(word));
    probe->Discard();
}

void MarkedIsFalse(Trial& trial)
{
    const HighProbe high;
    Probe* probe = high.Get();
    if (probe == nullptr)
        return;
    Marks marks;
    probe->KvObjectBase::Mark4GC(marks.words.data(), marks.Count());
    trial.Expect(!probe->KvObjectBase::Mark4GC(marks.words.data(), marks.Count()),
                 "Mark4GC of a marked object answers true");
}

// Objects made after a collection has begun are in slots that its marks do not have.
void OutsideIsFalse(Trial& trial)
{
    const HighProbe high;
    Probe* probe = high.Get();
    if (!trial.Expect(probe != nullptr && probe->m_slot >= 32, "no object got a slot above 31"))
        return;
    Marks marks; // of all slots, of which the host is told the first word, then none
    for (const int count : {1, 0})
        trial.Expect(!probe->KvObjectBase::Mark4GC(marks.words.data(), count),
                     "Mark4GC in %d words answers true for slot %d", count, probe->m_slot);
    trial.Expect(marks.InUse() == 0, "Mark4GC in one word has set a bit for slot %d", probe->m_slot);
}

void UnplacedIsFalse(Trial& trial)
{
    Unplaced* object = new (std::nothrow) Unplaced;
    if (object == nullptr)
        return;
    Marks marks;
    trial.Expect(!object->Mark4GC(marks.words.data(), marks.Count()),
                 "Mark4GC of an object without a slot answers true");
    trial.Expect(marks.InUse() == 0, "Mark4GC of an object without a slot has set %d bits", marks.InUse());
    delete object;
}

void ProxiesSpeakForTheirCamera(Trial& trial)
{
    Probe::Fate fate;
    Probe* probe = Probe::Make(fate);
    if (probe == nullptr)
        return;
    Marks marks;
    RValue values[] = {ObjectValue(nullptr), ArrayValue(nullptr), Real(3), OfKind(VALUE_UNDEFINED)};
    for (RValue& value : values)
        AddGCRefRValue(&value);
    probe->Mark4GC(marks.words.data(), marks.Count());
    trial.Expect(fate.marked == 1, "the marking of an object began %d times", fate.marked);
    probe->Discard();
}

constexpr Check CHECKS[] = {
    {"mark.sets_bit", Level::Callbacks, HEADER, MARKS, Need_Nothing, ObjectsSetTheirBit},
    {"mark.lowest_bit", Level::Callbacks, HEADER, WORDS, Need_Nothing, TheLowestSlotIsTheLowestBit},
    {"mark.twice", Level::Callbacks, HEADER, REFUSES, Need_Nothing, MarkedIsFalse},
    {"mark.outside", Level::Callbacks, HEADER, REFUSES, Need_Nothing, OutsideIsFalse},
    {"mark.unplaced", Level::Callbacks, HEADER, "An object without a slot is outside.", Need_Nothing, UnplacedIsFalse},
    {"mark.empty_values", Level::Callbacks, HEADER, "while marking: what the value refers to is alive", Need_Nothing,
     ProxiesSpeakForTheirCamera},
};

} // namespace

Checks MarkChecks() { return Table(CHECKS); }

} // namespace HostCheck
