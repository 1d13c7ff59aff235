#pragma once
// A file of a map as a tree in one form, whether it was written as XML or as JSON: what follows reads each thing once.
//
// The form is that of the XML with its lists dissolved: the elements `property` stand among the children of what they
// belong to, likewise `frame` of an animation, and the cells of a layer or chunk are its attribute `data` or its list
// `cells`. What the Runner has no use for (Wang sets, the editor's own settings) is left out.

#include "Runner/World/Map_Model.h"

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Runner
{
struct MapAttribute
{
    enum class Kind
    {
        Text, // every attribute of XML
        Whole,
        Fraction,
        Truth
    };

    std::string_view name;
    Kind kind = Kind::Text;
    std::string_view text;
    double number = 0.0; // of Whole and Fraction; 0 or 1 for Truth
};

struct MapNode
{
    std::string_view name;
    std::vector<MapAttribute> attributes;
    std::vector<MapNode> children;
    std::vector<MapCell> cells; // of a layer or chunk that lists them as numbers
    bool listsCells = false;

    const MapAttribute* Find(std::string_view attribute) const; // the first of that name; null when there is none
    const MapNode* Child(std::string_view child) const;

    // The values of attributes, or a stated value where there is none. A value that does not fit is a fault that names
    // the attribute.
    bool Has(std::string_view attribute) const { return Find(attribute) != nullptr; }
    std::string Text(std::string_view attribute, const char* otherwise = "") const;
    int Whole(std::string_view attribute, int otherwise, int least, int most) const;
    MapCell Cell(std::string_view attribute) const;                    // 0 without one
    double Number(std::string_view attribute, double otherwise) const; // of at most MapLimits::COORDINATE
    double Real(std::string_view attribute, double otherwise) const;   // finite
    bool Truth(std::string_view attribute, bool otherwise) const;
    std::optional<MapColour> Colour(std::string_view attribute) const; // none where it is missing or empty
};

// The number in a text, all of it. False when it is none or not finite.
bool ReadNumber(std::string_view text, double& number);

// "#rrggbb" or "#aarrggbb"; the '#' may be missing.
bool ReadColour(std::string_view text, MapColour& colour);

// A parsed file. The root's texts point into it.
class MapDocument
{
public:
    // Throws MapFault. `parts` counts what all files of a map hold, against MapLimits::PARTS.
    MapDocument(std::vector<uint8_t> bytes, size_t& parts);
    ~MapDocument();
    MapDocument(const MapDocument&) = delete;
    MapDocument& operator=(const MapDocument&) = delete;

    MapNode& Root() { return m_root; }

private:
    std::vector<uint8_t> m_bytes;
    std::deque<std::string> m_joined; // texts that stood in several pieces
    MapNode m_root;
};

// The two parsers, which change the bytes: texts point into them. Throw MapFault.
void ParseMapXml(std::vector<uint8_t>& bytes, std::deque<std::string>& joined, MapNode& root, size_t& parts);
void ParseMapJson(std::vector<uint8_t>& bytes, MapNode& root, size_t& parts);

bool IsLeftOut(std::string_view name);       // an element or value that the Runner has no use for
void CountMapParts(size_t& parts, size_t n); // a fault beyond the limit
} // namespace Runner
