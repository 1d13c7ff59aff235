// Files of a map as JSON. RapidJSON streams: limits apply while it reads, and no call of it is nested in another,
// however deep the values are.
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"
#include "Runner/World/Map_Node.h"

#include <algorithm>
#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

namespace Runner
{
namespace
{
using Kind = MapAttribute::Kind;

// The name of a list, and of each of its items as an element.
struct ListName
{
    std::string_view list, item;
};
constexpr ListName LISTS[] = {{"tilesets", "tileset"}, {"properties", "property"}, {"tiles", "tile"},
                              {"objects", "object"},   {"chunks", "chunk"},        {"animation", "frame"},
                              {"tilelayer", "layer"}};

std::string_view ItemName(std::string_view list)
{
    const auto found =
        std::find_if(std::begin(LISTS), std::end(LISTS), [&](const ListName& n) { return n.list == list; });
    return found == std::end(LISTS) ? list : found->item;
}

// Layers of each kind stand in one list; the value "type" of each is the name of its element.
std::string_view ItemName(std::string_view list, const MapNode& item)
{
    if (list != "layers")
        return ItemName(list);
    const MapAttribute* type = item.Find("type");
    return type == nullptr ? std::string_view() : ItemName(type->text);
}

// Receives the parser's events. The parser may only be told with false to stop; a fault passes through it.
class JsonTree
{
public:
    JsonTree(MapNode& root, size_t& parts) : m_root(root), m_parts(parts) {}

    bool Null() { return Value(nullptr); }
    bool Bool(bool value) { return Scalar(Kind::Truth, {}, value ? 1.0 : 0.0); }
    bool Int(int value) { return Scalar(Kind::Whole, {}, value); }
    bool Int64(int64_t value) { return Scalar(Kind::Whole, {}, static_cast<double>(value)); }
    bool Uint64(uint64_t value) { return Scalar(Kind::Whole, {}, static_cast<double>(value)); }
    bool Double(double value) { return Scalar(Kind::Fraction, {}, value); }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }
    bool String(const char* text, rapidjson::SizeType size, bool) { return Scalar(Kind::Text, {text, size}, 0.0); }

    bool Uint(unsigned value)
    {
        if (m_skipped > 0 || m_levels.empty() || m_levels.back().kind != Level::Cells)
            return Scalar(Kind::Whole, {}, value);
        std::vector<MapCell>& cells = m_levels.back().node.cells;
        if (cells.size() >= static_cast<size_t>(MapLimits::LAYER_CELLS))
            throw MapFault("a layer has more than " + std::to_string(MapLimits::LAYER_CELLS) + " cells: split the map");
        cells.push_back(value);
        return true;
    }

    bool Key(const char* text, rapidjson::SizeType size, bool)
    {
        m_key = {text, size};
        return true;
    }

    bool StartObject()
    {
        if (SkipsLevel() || Ignores())
            return Skip();
        Push(Level::Object);
        return true;
    }

    bool EndObject(rapidjson::SizeType)
    {
        if (Unskip())
            return true;
        Place(Pop());
        return true;
    }

    bool StartArray()
    {
        if (SkipsLevel() || Ignores() || m_levels.empty() || m_levels.back().kind != Level::Object)
            return Skip();
        Push(m_key == "data" ? Level::Cells : Level::List);
        return true;
    }

    bool EndArray(rapidjson::SizeType)
    {
        if (Unskip())
            return true;
        Level level = Pop();
        if (level.kind != Level::Cells)
            return true;
        m_levels.back().node.cells = std::move(level.node.cells);
        m_levels.back().node.listsCells = true;
        return true;
    }

private:
    struct Level
    {
        enum Kind
        {
            Object,
            List, // its items become children of the object around it
            Cells
        };

        Kind kind;
        std::string_view key; // in the object around it
        MapNode node;
    };

    void Push(Level::Kind kind)
    {
        if (m_levels.size() >= MapLimits::DEPTH)
            throw MapFault("its values stand deeper than " + std::to_string(MapLimits::DEPTH) +
                           " in each other: use fewer groups in groups");
        CountMapParts(m_parts, 1);
        m_levels.push_back({kind, m_key, {}});
    }

    Level Pop()
    {
        Level level = std::move(m_levels.back());
        m_levels.pop_back();
        return level;
    }

    // A finished object goes to the object around it, or around the list that it is in.
    void Place(Level level)
    {
        if (m_levels.empty())
        {
            const MapAttribute* type = level.node.Find("type");
            level.node.name = type == nullptr ? std::string_view() : type->text;
            m_root = std::move(level.node);
            return;
        }
        const Level& around = m_levels.back();
        const bool inList = around.kind == Level::List;
        level.node.name = inList ? ItemName(around.key, level.node) : level.key;
        MapNode& owner = inList ? m_levels[m_levels.size() - 2].node : m_levels.back().node;
        owner.children.push_back(std::move(level.node));
    }

    bool Scalar(Kind kind, std::string_view text, double number)
    {
        const MapAttribute attribute = {m_key, kind, text, number};
        return Value(&attribute);
    }

    // Values in lists of other things than objects mean nothing here.
    bool Value(const MapAttribute* attribute)
    {
        if (m_skipped > 0 || m_levels.empty() || m_levels.back().kind == Level::List)
            return true;
        if (m_levels.back().kind == Level::Cells)
            throw MapFault("\"data\" must be a list of tile numbers: save it again from the editor");
        if (attribute != nullptr)
        {
            CountMapParts(m_parts, 1);
            m_levels.back().node.attributes.push_back(*attribute);
        }
        return true;
    }

    bool SkipsLevel() const { return m_skipped > 0; }
    bool Ignores() const
    {
        return !m_levels.empty() &&
               (m_levels.back().kind == Level::Cells || (m_levels.back().kind == Level::Object && IsLeftOut(m_key)));
    }

    bool Skip()
    {
        ++m_skipped;
        return true;
    }

    bool Unskip()
    {
        if (m_skipped == 0)
            return false;
        --m_skipped;
        return true;
    }

    MapNode& m_root;
    size_t& m_parts;
    std::vector<Level> m_levels;
    std::string_view m_key;
    size_t m_skipped = 0; // levels inside of something that is left out
};
} // namespace

void ParseMapJson(std::vector<uint8_t>& bytes, MapNode& root, size_t& parts)
{
    bytes.push_back(0);
    char* text = reinterpret_cast<char*>(bytes.data());
    constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
    if (std::string_view(text, bytes.size()).substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK)
        text += BYTE_ORDER_MARK.size();
    rapidjson::InsituStringStream stream(text);
    rapidjson::Reader reader;
    JsonTree tree(root, parts);
    constexpr unsigned OPTIONS = rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag |
                                 rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag;
    const rapidjson::ParseResult result = reader.Parse<OPTIONS>(stream, tree);
    if (!result)
        throw MapFault("the JSON is damaged (" + std::string(rapidjson::GetParseError_En(result.Code())) +
                           "): save it again from the editor",
                       result.Offset());
}
} // namespace Runner
