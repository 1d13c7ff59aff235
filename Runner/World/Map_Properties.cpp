// Custom properties of a map, of its layers, objects and tiles.
#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Loading.h"
#include "Runner/World/Map_Path.h"

#include <algorithm>
#include <limits>

namespace Runner
{
namespace
{
constexpr int INT_LEAST = std::numeric_limits<int>::min();
constexpr int INT_MOST = std::numeric_limits<int>::max();

struct TypeName
{
    const char* name;
    MapPropertyType type;
};

constexpr TypeName TYPES[] = {
    {"string", MapPropertyType::String}, {"int", MapPropertyType::Int},      {"float", MapPropertyType::Float},
    {"bool", MapPropertyType::Bool},     {"color", MapPropertyType::Colour}, {"file", MapPropertyType::File},
    {"object", MapPropertyType::Object}, {"class", MapPropertyType::Class},
};

MapPropertyType TypeOf(const MapNode& node)
{
    const std::string name = node.Text("type", "string");
    const auto found =
        std::find_if(std::begin(TYPES), std::end(TYPES), [&](const TypeName& t) { return name == t.name; });
    if (found == std::end(TYPES))
        throw MapFault("its type \"" + Printable(name) + "\" is unknown: give it one of string, int, float, bool, " +
                       "color, file, object, class");
    return found->type;
}

// Sorts by name. Of two with the same name, that is a fault: which of them is meant?
void Sort(MapProperties& properties)
{
    const auto less = [](const MapProperty& a, const MapProperty& b) { return a.name < b.name; };
    const auto same = [](const MapProperty& a, const MapProperty& b) { return a.name == b.name; };
    std::sort(properties.begin(), properties.end(), less);
    const auto twin = std::adjacent_find(properties.begin(), properties.end(), same);
    if (twin != properties.end())
        throw MapFault("two properties have the name \"" + Printable(twin->name) + "\": rename one");
}

// The members of a class in JSON have no types but those of JSON itself.
MapProperty MemberOf(const MapAttribute& attribute)
{
    MapProperty member;
    member.name = attribute.name;
    member.text = attribute.text;
    member.number = attribute.number;
    switch (attribute.kind)
    {
    case MapAttribute::Kind::Text: member.type = MapPropertyType::String; break;
    case MapAttribute::Kind::Whole: member.type = MapPropertyType::Int; break;
    case MapAttribute::Kind::Fraction: member.type = MapPropertyType::Float; break;
    case MapAttribute::Kind::Truth: member.type = MapPropertyType::Bool; break;
    }
    return member;
}

MapProperties MembersOf(const MapNode& value)
{
    MapProperties members;
    for (const MapAttribute& attribute : value.attributes)
        members.push_back(MemberOf(attribute));
    for (const MapNode& child : value.children)
    {
        MapProperty& member = members.emplace_back();
        member.name = child.name;
        member.type = MapPropertyType::Class;
        member.members = MembersOf(child);
    }
    Sort(members);
    return members;
}

void ReadValue(const MapNode& node, const std::string& file, MapProperty& property)
{
    switch (property.type)
    {
    case MapPropertyType::String: property.text = node.Text("value"); break;
    case MapPropertyType::Int: property.number = node.Whole("value", 0, INT_LEAST, INT_MOST); break;
    case MapPropertyType::Object: property.number = node.Whole("value", 0, 0, INT_MOST); break;
    case MapPropertyType::Float: property.number = node.Real("value", 0.0); break;
    case MapPropertyType::Bool: property.number = node.Truth("value", false) ? 1.0 : 0.0; break;
    case MapPropertyType::Colour:
        property.text = node.Text("value");
        property.colour = node.Colour("value").value_or(MapColour());
        break;
    case MapPropertyType::File:
        property.text = node.Text("value");
        if (!property.text.empty())
            property.text = ResolveMapPath(file, property.text);
        break;
    case MapPropertyType::Class:
        const MapNode* value = node.Child("value");
        property.members = value != nullptr ? MembersOf(*value) : ReadMapProperties(node, file);
        break;
    }
}
} // namespace

MapProperties ReadMapProperties(const MapNode& node, const std::string& file)
{
    if (node.Child("properties") != nullptr)
        throw MapFault("its properties have a form that editors before 1.2 wrote: save it again from a newer one");
    MapProperties properties;
    for (const MapNode& child : node.children)
    {
        if (child.name != "property")
            continue;
        MapProperty& property = properties.emplace_back();
        property.name = child.Text("name");
        const auto place = [&] { return "property '" + Printable(property.name) + "'"; };
        WithinPlace(place,
                    [&]
                    {
                        property.type = TypeOf(child);
                        property.className = child.Text("propertytype");
                        ReadValue(child, file, property);
                    });
    }
    Sort(properties);
    return properties;
}
} // namespace Runner
