// Files of a map as XML.
#include "Runner/Base/Printable.h"
#include "Runner/World/Map_Fault.h"
#include "Runner/World/Map_Limits.h"
#include "Runner/World/Map_Node.h"

#include <algorithm>
#include <charconv>
#include <pugixml.hpp>

namespace Runner
{
namespace
{
// The tree of pugixml takes some 64 bytes for an element, as much for a text, and 40 for an attribute. These characters
// bound their numbers before anything is parsed.
void CheckTreeSize(const std::vector<uint8_t>& bytes)
{
    const auto elements = static_cast<size_t>(std::count(bytes.begin(), bytes.end(), '<'));
    const auto attributes = static_cast<size_t>(std::count(bytes.begin(), bytes.end(), '='));
    if (elements * 128 + attributes * 40 > MapLimits::XML_TREE_BYTES)
        throw MapFault("this has too many XML elements: in the map's properties, choose another Tile Layer Format");
}

class XmlTree
{
public:
    XmlTree(std::deque<std::string>& joined, size_t& parts) : m_joined(joined), m_parts(parts) {}

    void Convert(const pugi::xml_node& from, MapNode& to, int depth)
    {
        if (depth > MapLimits::DEPTH)
            throw MapFault("its elements stand deeper than " + std::to_string(MapLimits::DEPTH) +
                           " in each other: use fewer groups in groups");
        CountMapParts(m_parts, 1);
        to.name = from.name();
        AddAttributes(from, to);
        AddChildren(from, to, depth);
        const bool isProperty = to.name == "property";
        AddText(from, isProperty ? "value" : to.name == "chunk" ? "data" : "text", to);
    }

private:
    void AddAttributes(const pugi::xml_node& from, MapNode& to)
    {
        for (const pugi::xml_attribute& attribute : from.attributes())
        {
            CountMapParts(m_parts, 1);
            to.attributes.push_back({attribute.name(), MapAttribute::Kind::Text, attribute.value(), 0.0});
        }
    }

    void AddChildren(const pugi::xml_node& from, MapNode& to, int depth)
    {
        const bool isCellList = to.name == "layer" || to.name == "chunk";
        for (const pugi::xml_node& child : from.children())
        {
            const std::string_view name = child.name();
            if (child.type() != pugi::node_element || IsLeftOut(name))
                continue;
            if (isCellList && name == "tile")
                AddCell(child, to);
            else if (name == "properties" || name == "animation")
                AddChildren(child, to, depth);
            else if (name == "data")
                AddData(child, to, depth);
            else
                Convert(child, to.children.emplace_back(), depth + 1);
        }
    }

    // The element stands for the layer that it is in.
    void AddData(const pugi::xml_node& data, MapNode& to, int depth)
    {
        AddAttributes(data, to);
        to.listsCells = !data.attribute("encoding") && !data.child("chunk");
        AddChildren(data, to, depth);
        if (!to.listsCells)
            AddText(data, "data", to);
    }

    static void AddCell(const pugi::xml_node& tile, MapNode& to)
    {
        MapCell cell = 0;
        if (const pugi::xml_attribute number = tile.attribute("gid"))
        {
            const std::string_view text = number.value();
            const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), cell);
            if (error != std::errc() || end != text.data() + text.size())
                throw MapFault("\"gid\" of a tile must be a tile's number, and is \"" + Printable(text) + "\"");
        }
        to.listsCells = true;
        to.cells.push_back(cell);
    }

    void AddText(const pugi::xml_node& from, const char* name, MapNode& to)
    {
        std::vector<std::string_view> pieces; // comments and CDATA part a text
        for (const pugi::xml_node& child : from.children())
            if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
                pieces.emplace_back(child.value());
        if (pieces.empty() || to.Has(name))
            return;
        if (pieces.size() > 1)
            pieces.front() = m_joined.emplace_back(Joined(pieces));
        to.attributes.push_back({name, MapAttribute::Kind::Text, pieces.front(), 0.0});
    }

    static std::string Joined(const std::vector<std::string_view>& pieces)
    {
        std::string text;
        for (const std::string_view piece : pieces)
            text += piece;
        return text;
    }

    std::deque<std::string>& m_joined;
    size_t& m_parts;
};

// pugixml expands no entities but the five of XML itself: a text that uses others would be read as it stands.
void RefuseEntities(const pugi::xml_document& document)
{
    for (const pugi::xml_node& node : document.children())
        if (node.type() == pugi::node_doctype && std::string_view(node.value()).find('[') != std::string_view::npos)
            throw MapFault("this declares XML entities, which maps have no use for: remove its DOCTYPE");
}
} // namespace

void ParseMapXml(std::vector<uint8_t>& bytes, std::deque<std::string>& joined, MapNode& root, size_t& parts)
{
    CheckTreeSize(bytes);
    pugi::xml_document document;
    const unsigned options = pugi::parse_default | pugi::parse_doctype;
    const pugi::xml_parse_result result =
        document.load_buffer_inplace(bytes.data(), bytes.size(), options, pugi::encoding_utf8);
    if (!result)
        throw MapFault("the XML is damaged (" + std::string(result.description()) + "): save it again from the editor",
                       static_cast<size_t>(std::max<std::ptrdiff_t>(result.offset, 0)));
    RefuseEntities(document);
    XmlTree(joined, parts).Convert(document.document_element(), root, 1);
}
} // namespace Runner
