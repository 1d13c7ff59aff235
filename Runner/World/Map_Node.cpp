#include "Runner/World/Map_Node.h"

#include "Runner/Base/Decimal.h"
#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace Runner
{
namespace
{
using Kind = MapAttribute::Kind;

std::string Shown(const MapAttribute& attribute)
{
    if (attribute.kind == Kind::Text)
        return Quoted(attribute.text);
    if (attribute.kind == Kind::Truth)
        return attribute.number != 0.0 ? "true" : "false";
    return DecimalText(attribute.number);
}

[[noreturn]] void Misfit(const MapAttribute& attribute, const std::string& expected)
{
    throw MapFault("\"" + Printable(attribute.name) + "\" must be " + expected + ", and is " + Shown(attribute));
}

bool NumberOf(const MapAttribute& attribute, double& number)
{
    if (attribute.kind == Kind::Text)
        return ReadNumber(attribute.text, number);
    number = attribute.number;
    return attribute.kind != Kind::Truth;
}

double WholeBetween(const MapAttribute& attribute, double least, double most)
{
    double number = 0.0;
    if (!NumberOf(attribute, number) || std::floor(number) != number || number < least || number > most)
        Misfit(attribute, "a whole number from " + std::to_string(static_cast<int64_t>(least)) + " to " +
                              std::to_string(static_cast<int64_t>(most)));
    return number;
}

template <typename Items> auto FirstNamed(Items& items, std::string_view name)
{
    const auto found = std::find_if(items.begin(), items.end(), [&](const auto& item) { return item.name == name; });
    return found == items.end() ? nullptr : &*found;
}

bool HexDigits(std::string_view text, uint32_t& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    return error == std::errc() && end == text.data() + text.size();
}
} // namespace

const MapAttribute* MapNode::Find(std::string_view attribute) const { return FirstNamed(attributes, attribute); }

const MapNode* MapNode::Child(std::string_view child) const { return FirstNamed(children, child); }

std::string MapNode::Text(std::string_view attribute, const char* otherwise) const
{
    const MapAttribute* found = Find(attribute);
    if (found == nullptr)
        return otherwise;
    return found->kind == Kind::Text ? std::string(found->text) : Shown(*found);
}

int MapNode::Whole(std::string_view attribute, int otherwise, int least, int most) const
{
    const MapAttribute* found = Find(attribute);
    return found == nullptr ? otherwise : static_cast<int>(WholeBetween(*found, least, most));
}

MapCell MapNode::Cell(std::string_view attribute) const
{
    const MapAttribute* found = Find(attribute);
    return found == nullptr ? 0 : static_cast<MapCell>(WholeBetween(*found, 0.0, std::numeric_limits<MapCell>::max()));
}

double MapNode::Real(std::string_view attribute, double otherwise) const
{
    const MapAttribute* found = Find(attribute);
    double number = otherwise;
    if (found != nullptr && !NumberOf(*found, number))
        Misfit(*found, "a number");
    return number;
}

double MapNode::Number(std::string_view attribute, double otherwise) const
{
    const double number = Real(attribute, otherwise);
    if (std::fabs(number) > MapLimits::COORDINATE)
        Misfit(*Find(attribute), "a number of at most 1e9");
    return number;
}

bool MapNode::Truth(std::string_view attribute, bool otherwise) const
{
    const MapAttribute* found = Find(attribute);
    if (found == nullptr)
        return otherwise;
    const bool isTrue = found->kind == Kind::Text ? found->text == "1" || found->text == "true" : found->number == 1.0;
    const bool isFalse =
        found->kind == Kind::Text ? found->text == "0" || found->text == "false" : found->number == 0.0;
    if (!isTrue && !isFalse)
        Misfit(*found, "true or false");
    return isTrue;
}

std::optional<MapColour> MapNode::Colour(std::string_view attribute) const
{
    const MapAttribute* found = Find(attribute);
    if (found == nullptr || (found->kind == Kind::Text && found->text.empty()))
        return std::nullopt;
    MapColour colour;
    if (found->kind != Kind::Text || !ReadColour(found->text, colour))
        Misfit(*found, "a colour, as #rrggbb or #aarrggbb");
    return colour;
}

bool ReadNumber(std::string_view text, double& number)
{
    const auto [end, error] = ReadDecimal(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(number);
}

bool ReadColour(std::string_view text, MapColour& colour)
{
    if (!text.empty() && text.front() == '#')
        text.remove_prefix(1);
    uint32_t value = 0;
    if ((text.size() != 6 && text.size() != 8) || !HexDigits(text, value))
        return false;
    const auto byte = [&](int shift) { return static_cast<uint8_t>(value >> shift & 0xFF); };
    colour = {byte(16), byte(8), byte(0), text.size() == 8 ? byte(24) : uint8_t{255}};
    return true;
}

MapDocument::MapDocument(std::vector<uint8_t> bytes, size_t& parts) : m_bytes(std::move(bytes))
{
    const auto isSpace = [](uint8_t byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n'; };
    constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
    const std::string_view text(reinterpret_cast<const char*>(m_bytes.data()), m_bytes.size());
    auto first = m_bytes.begin();
    if (text.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK)
        first += static_cast<std::ptrdiff_t>(BYTE_ORDER_MARK.size());
    first = std::find_if_not(first, m_bytes.end(), isSpace);
    if (first != m_bytes.end() && *first == '<')
        ParseMapXml(m_bytes, m_joined, m_root, parts);
    else if (first != m_bytes.end() && *first == '{')
        ParseMapJson(m_bytes, m_root, parts);
    else
        throw MapFault("this is neither XML nor JSON: save it from the editor as TMX or TMJ, in UTF-8");
}

MapDocument::~MapDocument() = default;

bool IsLeftOut(std::string_view name)
{
    constexpr std::string_view LEFT_OUT[] = {"wangsets", "terraintypes", "terrains",       "editorsettings",
                                             "export",   "grid",         "transformations"};
    return std::find(std::begin(LEFT_OUT), std::end(LEFT_OUT), name) != std::end(LEFT_OUT);
}

void CountMapParts(size_t& parts, size_t n)
{
    if (n > MapLimits::PARTS || parts > MapLimits::PARTS - n)
        throw MapFault("the map and its files have more than " + std::to_string(MapLimits::PARTS) +
                       " objects, properties and attributes: split it into several maps");
    parts += n;
}
} // namespace Runner
