#include "base/message.h"
#include "image/png_codec.h"
#include "output/model_source.h"
#include "samples.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace facetor {

namespace {

namespace fs = std::filesystem;

const fs::path manualFolder = "docs/manual";

std::string textOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The first group of every match.
std::vector<std::string> allMatches(const std::string& text, const std::string& expression)
{
    const std::regex regex(expression);
    std::vector<std::string> found;
    for (std::sregex_iterator i(text.begin(), text.end(), regex), end; i != end; ++i)
        found.push_back((*i)[1]);
    return found;
}

std::string replaced(const std::string& text, const std::string& expression, const char* by)
{
    return std::regex_replace(text, std::regex(expression), by);
}

std::string escaped(const std::string& text)
{
    return replaced(replaced(replaced(text, "&", "&amp;"), "<", "&lt;"), ">", "&gt;");
}

std::size_t occurrences(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// The files of a folder with an extension, by their names.
std::map<std::string, std::string> filesIn(const fs::path& folder, const char* extension)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().extension() == extension)
            files[entry.path().filename().string()] = textOf(entry.path());
    EXPECT_FALSE(files.empty()) << folder;
    return files;
}

struct Manual : testing::Test {
    std::map<std::string, std::string> pages = filesIn(manualFolder, ".html");
};

} // namespace

TEST_F(Manual, EveryLinkLeadsSomewhereAndEveryPageIsReached)
{
    std::set<std::string> reached{"Facetor.html"};
    std::vector<std::string> open{"Facetor.html"};
    while (!open.empty()) {
        const std::string name = open.back();
        open.pop_back();
        for (const std::string& link : allMatches(pages.at(name), R"(\bhref="([^"]*)\")")) {
            SCOPED_TRACE(name + ": " + link);
            const std::size_t mark = link.find('#');
            const std::string file = link.substr(0, mark).empty() ? name : link.substr(0, mark);
            ASSERT_TRUE(fs::is_regular_file(manualFolder / file));
            if (mark != std::string::npos) {
                EXPECT_NE(pages[file].find("id=\"" + link.substr(mark + 1) + '"'),
                          std::string::npos);
            }
            if (file.ends_with(".html") && reached.insert(file).second) open.push_back(file);
        }
    }
    EXPECT_EQ(reached.size(), pages.size());
}

TEST_F(Manual, EveryPictureIsUsedDescribedAndOfTheSizeThatItsPageGives)
{
    std::set<std::string> unused;
    for (const auto& [name, bytes] : filesIn(manualFolder / "pictures", ".png"))
        unused.insert("pictures/" + name);
    const std::regex form(R"~(src="(pictures/[^"]+)" width="(\d+)" height="(\d+)" alt="([^"]+)")~");
    for (const auto& [page, html] : pages)
        for (const std::string& image : allMatches(html, "<img ([^>]*)>")) {
            SCOPED_TRACE(page + ": " + image);
            std::smatch parts;
            ASSERT_TRUE(std::regex_match(image, parts, form));
            const std::string bytes = textOf(manualFolder / parts[1].str());
            const auto file = std::as_bytes(std::span(bytes));
            const std::optional<ImageInfo> info = pngCodec.info(file);
            ASSERT_TRUE(info);
            EXPECT_EQ(std::to_string(info->width) + " x " + std::to_string(info->height),
                      parts[2].str() + " x " + parts[3].str());
            std::vector<std::byte> pixels(std::size_t{4} * info->width * info->height);
            EXPECT_TRUE(pngCodec.decode(file, pixels));
            unused.erase(parts[1]);
        }
    EXPECT_EQ(unused, std::set<std::string>{});
}

TEST_F(Manual, ExplainsEveryMessage)
{
    std::set<std::string> explained;
    for (const std::string& term : allMatches(pages["messages.html"], "<dt[^>]*>(.*?)</dt>"))
        explained.insert(replaced(term, "<br>", "\n"));
    for (const char* text : {
#define FACETOR_MESSAGE(number, name, english, japanese) english,
#define FACETOR_WORD(number, name, english, japanese)
#include "base/messages.inc"
#undef FACETOR_MESSAGE
#undef FACETOR_WORD
         })
        EXPECT_TRUE(explained.contains(escaped(text))) << text;
}

TEST_F(Manual, NamesEveryMenuCommandAndEveryKey)
{
    const std::map<std::string, std::string> names{
        {"VK_BACK", "Back"}, {"VK_DELETE", "Del"}, {"VK_INSERT", "Ins"}, {"VK_RETURN", "Enter"}};
    std::map<std::string, std::size_t> commands; // with the number of menus that have them
    std::size_t keys = 0;
    for (const auto& [file, resources] : filesIn("src/editor/resources", ".rc")) {
        for (const std::string& item :
             allMatches(resources, R"~((?:MENUITEM|POPUP) (?:LOCAL\()?"([^"\\]*))~"))
            ++commands[">" + escaped(replaced(item, "&", "")) + "<"];
        for (const std::string& line : allMatches(resources, "\n    ([^\n]*, VIRTKEY[^\n]*)")) {
            const std::string key = replaced(line.substr(0, line.find(',')), "\"", "");
            std::string text = names.contains(key) ? names.at(key) : key;
            for (const auto& [flag, prefix] :
                 {std::pair{"SHIFT", "Shift+"}, {"ALT", "Alt+"}, {"CONTROL", "Ctrl+"}})
                if (std::regex_search(line, std::regex(std::string("\\b") + flag)))
                    text = prefix + text;
            EXPECT_NE(pages["keyboard.html"].find("<kbd>" + text + "</kbd>"), std::string::npos)
                << text;
            ++keys;
        }
    }
    EXPECT_GT(commands.size(), 70u);
    for (const auto& [element, count] : commands)
        EXPECT_GE(occurrences(pages["commands.html"], element), count) << element;
    EXPECT_EQ(keys, 22u);
}

TEST_F(Manual, ItsExampleOfCSourceIsWhatTheExportWrites)
{
    const std::string& page = pages["c-source.html"];
    const std::size_t start = page.find("id=\"model\"");
    const std::string model = page.substr(start, page.find("id=\"textures\"") - start);
    std::string shown;
    for (const std::string& piece : allMatches(model, R"(<pre[^>]*>\n([^<]*)</pre>)"))
        shown += piece;
    Model sign;
    ASSERT_EQ(createModelStore(sign), Message::none);
    ASSERT_EQ(samples::makeSign(sign, 0), Message::none);
    const auto withoutEmptyLines = [](const std::string& text) {
        return replaced(replaced(text, "\r", ""), "\n+", "\n");
    };
    EXPECT_EQ(withoutEmptyLines(shown),
              withoutEmptyLines(escaped(std::string(formatModelSource(sign, "sign.mdl").view()))));
}

TEST(Documents, LinkToFilesThatExist)
{
    for (const char* folder : {".", "docs", "docs/formats", "samples", "samples/generator"})
        for (const auto& [name, text] : filesIn(folder, ".md"))
            for (const std::string& link : allMatches(text, R"(\]\(([^)#:]+)(?:#[^)]*)?\))"))
                EXPECT_TRUE(fs::exists(fs::path(folder) / link))
                    << folder << "/" << name << ": " << link;
}

} // namespace facetor
