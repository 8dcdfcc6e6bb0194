#include "watch/picture_store.h"

#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace facetor {

namespace {

constexpr std::string_view header = "Facetor pictures 1\n";
constexpr std::string_view listKey = "List ";
constexpr std::string_view slotKey = "Slot ";
constexpr char betweenNames = '|'; // which no name of a file has

bool fitsLine(std::string_view path)
{
    return !path.empty() && path.find_first_of("\r\n") == std::string_view::npos;
}

/// Takes a number and the blank behind it off the front of a text.
template <typename Number> bool cutNumber(std::string_view& text, Number& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (error != std::errc{} || length == text.size() || text[length] != ' ') return false;
    text.remove_prefix(length + 1);
    return true;
}

/// `inList` is whether slots that follow are those of the last list that was taken.
void parseLine(PictureStore& store, std::string_view line, bool& inList)
{
    if (line.starts_with(listKey)) {
        line.remove_prefix(listKey.size());
        inList = fitsLine(line) && store.lists.size() < rememberedLists;
        if (inList) store.lists.push_back({std::string(line), {}});
    } else if (line.starts_with(slotKey) && inList) {
        line.remove_prefix(slotKey.size());
        PictureLink link;
        link.stamp.exists = true;
        PictureLinks& links = store.lists.back().links;
        if (!cutNumber(line, link.slot) || link.slot >= textureSlotCount ||
            !cutNumber(line, link.content) || !cutNumber(line, link.stamp.size) ||
            !cutNumber(line, link.stamp.writtenAt) || links.size() >= textureSlotCount)
            return;
        const std::size_t between = line.find(betweenNames);
        if (between == std::string_view::npos || !fitsLine(line.substr(between + 1))) return;
        link.plugIn = line.substr(0, between);
        link.path = line.substr(between + 1);
        links.push_back(std::move(link));
    }
}

auto findList(auto& lists, const std::string& path)
{
    return std::find_if(lists.begin(), lists.end(),
                        [&](const auto& list) { return equalIgnoringCase(list.path, path); });
}

} // namespace

std::string formatPictures(const PictureStore& store)
{
    std::string text(header);
    for (const PictureStore::List& list : store.lists) {
        if (!fitsLine(list.path)) continue;
        text.append(listKey).append(list.path) += '\n';
        for (const PictureLink& link : list.links)
            if (fitsLine(link.path) && link.plugIn.find_first_of("|\r\n") == std::string::npos)
                text.append(slotKey) +=
                    std::to_string(link.slot) + ' ' + std::to_string(link.content) + ' ' +
                    std::to_string(link.stamp.size) + ' ' + std::to_string(link.stamp.writtenAt) +
                    ' ' + link.plugIn + betweenNames + link.path + '\n';
    }
    return text;
}

PictureStore parsePictures(std::string_view text)
{
    PictureStore store;
    if (!text.starts_with(header)) return store;
    bool inList = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        parseLine(store, text.substr(0, end), inList);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return store;
}

PictureLinks linksOf(const PictureStore& store, const std::string& path)
{
    const auto found = findList(store.lists, path);
    return found == store.lists.end() ? PictureLinks() : found->links;
}

void rememberLinks(PictureStore& store, const std::string& path, PictureLinks links)
{
    if (const auto found = findList(store.lists, path); found != store.lists.end())
        store.lists.erase(found);
    if (links.empty()) return;
    if (store.lists.size() >= rememberedLists) store.lists.erase(store.lists.begin());
    store.lists.push_back({path, std::move(links)});
}

} // namespace facetor
