#include "Runner/Input/Input_Names.h"

#include <algorithm>
#include <iterator>

namespace Runner
{
namespace
{
struct NamedKey
{
    int key;
    const char* name;
};

constexpr NamedKey KEYS[] = {
    {0x04, "a"},          {0x05, "b"},           {0x06, "c"},           {0x07, "d"},          {0x08, "e"},
    {0x09, "f"},          {0x0A, "g"},           {0x0B, "h"},           {0x0C, "i"},          {0x0D, "j"},
    {0x0E, "k"},          {0x0F, "l"},           {0x10, "m"},           {0x11, "n"},          {0x12, "o"},
    {0x13, "p"},          {0x14, "q"},           {0x15, "r"},           {0x16, "s"},          {0x17, "t"},
    {0x18, "u"},          {0x19, "v"},           {0x1A, "w"},           {0x1B, "x"},          {0x1C, "y"},
    {0x1D, "z"},          {0x1E, "1"},           {0x1F, "2"},           {0x20, "3"},          {0x21, "4"},
    {0x22, "5"},          {0x23, "6"},           {0x24, "7"},           {0x25, "8"},          {0x26, "9"},
    {0x27, "0"},          {0x28, "enter"},       {0x29, "escape"},      {0x2A, "backspace"},  {0x2B, "tab"},
    {0x2C, "space"},      {0x2D, "-"},           {0x2E, "="},           {0x2F, "["},          {0x30, "]"},
    {0x31, "\\"},         {0x33, ";"},           {0x34, "'"},           {0x35, "`"},          {0x36, ","},
    {0x37, "."},          {0x38, "/"},           {0x39, "caps_lock"},   {0x3A, "f1"},         {0x3B, "f2"},
    {0x3C, "f3"},         {0x3D, "f4"},          {0x3E, "f5"},          {0x3F, "f6"},         {0x40, "f7"},
    {0x41, "f8"},         {0x42, "f9"},          {0x43, "f10"},         {0x44, "f11"},        {0x45, "f12"},
    {0x46, "print"},      {0x47, "scroll_lock"}, {0x48, "pause"},       {0x49, "insert"},     {0x4A, "home"},
    {0x4B, "page_up"},    {0x4C, "delete"},      {0x4D, "end"},         {0x4E, "page_down"},  {0x4F, "right"},
    {0x50, "left"},       {0x51, "down"},        {0x52, "up"},          {0x53, "num_lock"},   {0x54, "kp_/"},
    {0x55, "kp_*"},       {0x56, "kp_-"},        {0x57, "kp_+"},        {0x58, "kp_enter"},   {0x59, "kp_1"},
    {0x5A, "kp_2"},       {0x5B, "kp_3"},        {0x5C, "kp_4"},        {0x5D, "kp_5"},       {0x5E, "kp_6"},
    {0x5F, "kp_7"},       {0x60, "kp_8"},        {0x61, "kp_9"},        {0x62, "kp_0"},       {0x63, "kp_."},
    {0x64, "<"},          {0x65, "menu"},        {0xE0, "left_ctrl"},   {0xE1, "left_shift"}, {0xE2, "left_alt"},
    {0xE3, "left_super"}, {0xE4, "right_ctrl"},  {0xE5, "right_shift"}, {0xE6, "right_alt"},  {0xE7, "right_super"},
};

constexpr uint32_t FIRST_LETTER = 160; // of those in Latin-1 that stand beyond ASCII
constexpr uint32_t LAST_LETTER = 255;
static_assert(FIRST_LETTER_KEY + static_cast<int>(LAST_LETTER - FIRST_LETTER) == KEY_COUNT - 1);

template <size_t COUNT> int FindName(const char* const (&names)[COUNT], std::string_view name)
{
    const auto found = std::find(std::begin(names), std::end(names), name);
    return found == std::end(names) ? NO_NAME : static_cast<int>(found - std::begin(names));
}

// A Latin-1 character beyond ASCII has two bytes in UTF-8: 110000xx 10xxxxxx.
std::string LetterText(uint32_t letter)
{
    return {static_cast<char>(0xC0 | letter >> 6), static_cast<char>(0x80 | (letter & 0x3F))};
}

int FindLetter(std::string_view name)
{
    for (uint32_t letter = FIRST_LETTER; letter <= LAST_LETTER; ++letter)
        if (LetterText(letter) == name)
            return KeyOfCharacter(letter);
    return NO_NAME;
}
} // namespace

int FindKey(std::string_view name)
{
    const auto found =
        std::find_if(std::begin(KEYS), std::end(KEYS), [name](NamedKey key) { return key.name == name; });
    return found == std::end(KEYS) ? FindLetter(name) : found->key;
}

int FindMouseButton(std::string_view name) { return FindName(MOUSE_BUTTON_NAMES, name); }

int FindPadButton(std::string_view name) { return FindName(PAD_BUTTON_NAMES, name); }

int FindPadAxis(std::string_view name) { return FindName(PAD_AXIS_NAMES, name); }

std::string KeyName(int key)
{
    if (key >= FIRST_LETTER_KEY && key < KEY_COUNT)
        return LetterText(FIRST_LETTER + static_cast<uint32_t>(key - FIRST_LETTER_KEY));
    const auto found = std::find_if(std::begin(KEYS), std::end(KEYS), [key](NamedKey each) { return each.key == key; });
    return found == std::end(KEYS) ? "" : found->name;
}

int KeyOfCharacter(uint32_t character)
{
    if (character >= FIRST_LETTER && character <= LAST_LETTER)
        return FIRST_LETTER_KEY + static_cast<int>(character - FIRST_LETTER);
    const char name[] = {static_cast<char>(character), '\0'};
    return character > ' ' && character < 0x7F ? FindKey(name) : NO_NAME;
}
} // namespace Runner
