// Every sentence of an interface header is quoted by a check or listed as not testable, with a reason; and what is
// quoted or listed stands in the header. A new sentence without a check is noticed here.

#include "Host_Check/Host_Check.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;
using Sentences = std::vector<std::string>;

// One blank between words, none at the ends.
std::string Normalised(const std::string& text)
{
    std::string result;
    for (const char c : text)
        if (!std::isspace(static_cast<unsigned char>(c)))
            result += c;
        else if (!result.empty() && result.back() != ' ')
            result += ' ';
    while (!result.empty() && result.back() == ' ')
        result.pop_back();
    return result;
}

// A sentence ends with a full stop before a capital letter, or with its paragraph.
void AddSentences(const std::string& paragraph, Sentences& sentences)
{
    const std::string text = Normalised(paragraph);
    size_t start = 0;
    for (size_t i = 0; i + 2 < text.size(); ++i)
        if (text[i] == '.' && text[i + 1] == ' ' && std::isupper(static_cast<unsigned char>(text[i + 2])) != 0)
        {
            sentences.push_back(text.substr(start, i + 1 - start));
            start = i + 2;
        }
    if (start < text.size())
        sentences.push_back(text.substr(start));
}

// The comments of a header: lines of comment make a paragraph, which an empty one ends; a comment behind code is one by
// itself.
Sentences SentencesOf(const fs::path& header)
{
    Sentences sentences;
    std::string paragraph;
    std::ifstream file(header);
    for (std::string line; std::getline(file, line);)
    {
        const size_t place = line.find("//");
        const bool isComment = place != std::string::npos;
        const std::string text = isComment ? line.substr(place + 2) : "";
        const bool isWholeLine = isComment && Normalised(line.substr(0, place)).empty();
        if (isWholeLine && !Normalised(text).empty())
        {
            paragraph += " " + text;
            continue;
        }
        AddSentences(paragraph, sentences);
        paragraph.clear();
        if (isComment && !isWholeLine)
            AddSentences(text, sentences);
    }
    AddSentences(paragraph, sentences);
    return sentences;
}

// By header as the checks name it: "Platform/Matrix.h".
std::map<std::string, Sentences> InterfaceHeaders()
{
    std::map<std::string, Sentences> headers;
    for (const char* folder : {"Platform", "Files"})
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(fs::path(SOURCE_DIR) / folder))
        {
            const std::string name = fs::relative(entry.path(), SOURCE_DIR).generic_string();
            if (entry.path().extension() == ".h" && name.rfind("Files/Graphics/", 0) != 0)
                headers[name] = SentencesOf(entry.path());
        }
    return headers;
}

struct Quote
{
    std::string header, sentence, who;
};

std::vector<Quote> Quotes()
{
    std::vector<Quote> quotes;
    HostCheck::ListChecks(
        [](const HostCheck::Outcome& outcome, void* context) {
            static_cast<std::vector<Quote>*>(context)->push_back({outcome.header, outcome.sentence, outcome.name});
        },
        &quotes);
    int count = 0;
    const HostCheck::Untested* untested = HostCheck::UntestedSentences(count);
    for (int i = 0; i < count; ++i)
        quotes.push_back({untested[i].header, untested[i].sentence, "Untested.cpp"});
    return quotes;
}

// A quote is the whole sentence, its beginning and "...", or "*" for a header that no host needs.
bool Covers(const std::string& quote, const std::string& sentence)
{
    const bool isBeginning = quote.size() > 3 && quote.compare(quote.size() - 3, 3, "...") == 0;
    return quote == "*" || quote == sentence ||
           (isBeginning && sentence.rfind(quote.substr(0, quote.size() - 3), 0) == 0);
}

TEST(Coverage, EverySentenceHasACheckOrAReason)
{
    const std::vector<Quote> quotes = Quotes();
    size_t sentences = 0;
    for (const auto& [header, list] : InterfaceHeaders())
        for (const std::string& sentence : list)
        {
            bool isCovered = false;
            for (const Quote& quote : quotes)
                isCovered = isCovered || (quote.header == header && Covers(quote.sentence, sentence));
            EXPECT_TRUE(isCovered)
                << header << ": \"" << sentence
                << "\" has no check. Write one, or add it to Host_Check/Untested.cpp with the reason";
            ++sentences;
        }
    EXPECT_GT(sentences, 200u);
}

TEST(Coverage, EveryQuoteStandsInItsHeader)
{
    const std::map<std::string, Sentences> headers = InterfaceHeaders();
    for (const Quote& quote : Quotes())
    {
        const auto header = headers.find(quote.header);
        ASSERT_NE(header, headers.end()) << quote.who << " quotes " << quote.header;
        bool stands = false;
        for (const std::string& sentence : header->second)
            stands = stands || Covers(quote.sentence, sentence);
        EXPECT_TRUE(stands) << quote.who << " quotes of " << quote.header << ": \"" << quote.sentence << "\"";
    }
}

// What has a check is no longer listed as not testable.
TEST(Coverage, NothingIsBothTestedAndNot)
{
    std::set<std::string> tested;
    for (const Quote& quote : Quotes())
        if (quote.who != "Untested.cpp")
            tested.insert(quote.header + ": " + quote.sentence);
        else
            EXPECT_EQ(tested.count(quote.header + ": " + quote.sentence), 0u) << quote.sentence;
}

TEST(Coverage, ChecksHaveNamesOfTheirOwn)
{
    std::set<std::string> names;
    for (const Quote& quote : Quotes())
        EXPECT_TRUE(quote.who == "Untested.cpp" || names.insert(quote.who).second) << quote.who;
}
} // namespace
