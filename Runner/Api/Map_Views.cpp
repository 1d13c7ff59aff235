#include "Runner/Api/Map_Views.h"

#include "Runner/Api/Room_Fields.h"
#include "Runner/Game/Game.h"
#include "Runner/Lua/Map_Values.h"

#include <optional>

namespace Runner
{
namespace
{
constexpr char PREFIX[] = "view";
constexpr size_t PREFIX_SIZE = sizeof(PREFIX) - 1;

// What the map says about one view: names without the prefix.
struct MapView
{
    MapProperties fields;
    std::string where; // the property, for errors
};
using MapViews = std::array<std::optional<MapView>, ROOM_VIEWS>;

void AddField(MapViews& views, size_t view, MapProperty field)
{
    if (!views[view].has_value())
        views[view].emplace().where = PREFIX + std::to_string(view) + ".";
    views[view]->fields.push_back(std::move(field));
}

// A property of the map that begins with "view" and a digit, and is one of these: "view0.w", or "view0" of a class.
void ReadProperty(const Arguments& call, const MapModel& model, const MapProperty& property, MapViews& views)
{
    const std::string& name = property.name;
    const bool isView = name.compare(0, PREFIX_SIZE, PREFIX) == 0 && name.size() > PREFIX_SIZE &&
                        name[PREFIX_SIZE] >= '0' && name[PREFIX_SIZE] <= '9';
    if (!isView)
        return;
    const auto view = static_cast<size_t>(name[PREFIX_SIZE] - '0');
    const bool isClass = name.size() == PREFIX_SIZE + 1 && property.type == MapPropertyType::Class;
    const bool isField = name.size() > PREFIX_SIZE + 2 && name[PREFIX_SIZE + 1] == '.';
    if (view >= ROOM_VIEWS || !(isClass || isField))
        call.Fail("\"" + model.path + "\": the map's property \"" + name +
                  "\" must be view0 to view7, of a class, or one field of it, as view0.w");
    if (isField)
    {
        MapProperty field = property;
        field.name = name.substr(PREFIX_SIZE + 2);
        return AddField(views, view, std::move(field));
    }
    for (const MapProperty& member : property.members)
        AddField(views, view, member);
}

int ObjectNamed(const Arguments& call, const MapModel& model, const ObjectsByClass& objects, const std::string& where,
                const std::string& name)
{
    const auto found = objects.find(name);
    if (found == objects.end())
        call.Fail("\"" + model.path + "\": " + where +
                  "target must be an object of the game or of the map, there is no \"" + name + "\"");
    return found->second;
}
} // namespace

FollowedObjects ReadMapViews(const Arguments& call, const MapModel& model, const ObjectsByClass& objects,
                             RoomSpec& spec)
{
    MapViews views;
    FollowedObjects followed;
    for (const MapProperty& property : model.properties)
        ReadProperty(call, model, property, views);
    for (size_t number = 0; number < views.size(); ++number)
    {
        if (!views[number].has_value())
            continue;
        const MapView& view = *views[number];
        lua_newtable(call.L);
        for (const MapProperty& field : view.fields)
        {
            const bool isTarget = field.name == "target";
            if (isTarget && field.type == MapPropertyType::Object)
            {
                if (field.number > 0.0)
                    followed.emplace_back(static_cast<int>(number), static_cast<int>(field.number));
                continue;
            }
            if (isTarget && field.type == MapPropertyType::String)
                lua_pushinteger(call.L, ObjectNamed(call, model, objects, view.where, field.text));
            else
                PushProperty(call.L, field);
            lua_setfield(call.L, -2, field.name.c_str());
        }
        spec.views[number] = ReadView(call, lua_gettop(call.L), model.path + ": " + view.where);
        lua_pop(call.L, 1);
    }
    return followed;
}
} // namespace Runner
