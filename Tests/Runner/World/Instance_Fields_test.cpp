// The one list of an instance's fields, and those who go through it: scripts, saves, documents.
#include "Runner/World/Instance.h"
#include "Runner/World/Instance_Fields.h"
#include "Runner/World/View_Fields.h"
#include "Tests/Runner/Save/Save_Support.h"
#include "Tests/Runner/Support/Documents.h"

#include <set>

namespace
{
using Runner::INSTANCE_FIELDS;
using Runner::InstanceField;
using Runner::InstanceFields;
using RunnerTest::Document;

// The part of a text from one mark to the next; empty when it has none.
std::string Between(const std::string& text, const std::string& from, const std::string& to)
{
    const size_t begin = text.find(from);
    const size_t end = begin == std::string::npos ? begin : text.find(to, begin + from.size());
    return end == std::string::npos ? "" : text.substr(begin, end - begin);
}

// A value that no field has unless it is set, as Lua writes it.
std::string UnusualValue(const InstanceField& field)
{
    if (std::holds_alternative<bool InstanceFields::*>(field.member))
        return InstanceFields().*std::get<bool InstanceFields::*>(field.member) ? "false" : "true";
    return std::holds_alternative<float InstanceFields::*>(field.member) ? "0.25" : "7";
}

class InstanceFieldList : public RunnerTest::SaveTest
{
};

TEST(InstanceFields, HaveDifferentNames)
{
    std::set<std::string> names;
    for (const InstanceField& field : INSTANCE_FIELDS)
        EXPECT_TRUE(names.insert(field.name).second) << field.name;
}

TEST(InstanceFields, StandAmongTheFieldsOfSelfInTheScriptDocument)
{
    const std::string table = Between(Document("Script_API.md"), "`self` in events:", "any other name");
    ASSERT_NE(table, "");
    for (const InstanceField& field : INSTANCE_FIELDS)
        EXPECT_NE(table.find("`" + std::string(field.name) + "`"), std::string::npos) << field.name;
}

TEST(InstanceFields, StandInTheDocumentOfTheSaveFileInTheirOrder)
{
    const std::string row = Between(Document("Saves.md"), "| `INST` |", "|\n");
    size_t position = row.find("x, y (F32)");
    ASSERT_NE(position, std::string::npos) << row;
    for (const InstanceField& field : INSTANCE_FIELDS)
    {
        position = row.find(field.name, position);
        ASSERT_NE(position, std::string::npos) << field.name << " is missing or out of order";
    }
}

TEST_F(InstanceFieldList, EachFieldCanBeSetAndReadByAScriptAndSurvivesASave)
{
    std::filesystem::copy_file(std::string(GAMES_DIR) + "/canyon/tiles.png", directory.Path("tiles.png"));
    for (const InstanceField& field : INSTANCE_FIELDS)
    {
        const std::string name = field.name, value = UnusualValue(field);
        ASSERT_EQ(Run("for i = 0, 7 do sprite_add('tiles.png') end\n"
                      "local it = instance_get(instance_create(0, 0, object_add{}))\n"
                      "it." +
                      name + " = " + value + "\nassert(it." + name + " == " + value + ")"),
                  "")
            << name;
        const InstanceFields before = *game->world.Instances().at(0);
        ASSERT_EQ(Save(), "") << name;
        ASSERT_EQ(LoadAfresh(), "") << name;
        const InstanceFields after = *game->world.Instances().at(0);
        std::visit([&](auto member) { EXPECT_EQ(before.*member, after.*member) << name; }, field.member);
        std::visit([&](auto member) { EXPECT_NE(after.*member, InstanceFields().*member) << name; }, field.member);
    }
}
} // namespace
