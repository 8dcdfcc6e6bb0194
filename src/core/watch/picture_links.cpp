#include "watch/picture_links.h"

#include <algorithm>
#include <map>
#include <utility>

namespace facetor {

void linkPicture(PictureLinks& links, const TextureList& list, PictureLink link)
{
    link.content = contentOf(list.slot(link.slot));
    std::erase_if(links, [&](const PictureLink& other) {
        return other.slot == link.slot && other.content == link.content;
    });
    if (links.size() >= mostPictureLinks) links.erase(links.begin());
    links.push_back(std::move(link));
}

PictureLinks liveLinks(const PictureLinks& links, const TextureList& list)
{
    PictureLinks live;
    if (links.empty()) return live;
    std::multimap<std::uint64_t, std::uint32_t> slots; // by content, in ascending order
    for (std::uint32_t slot = 0, end = list.usedCount(); slot < end; ++slot)
        if (!list.isEmpty(slot)) slots.emplace(contentOf(list.slot(slot)), slot);
    const auto take = [&](PictureLink link, bool onlyWhereSeen) {
        const auto [first, last] = slots.equal_range(link.content);
        const auto found = std::find_if(first, last, [&](const auto& entry) {
            return !onlyWhereSeen || entry.second == link.slot;
        });
        if (found == last) return false;
        link.slot = found->second;
        slots.erase(found);
        live.push_back(std::move(link));
        return true;
    };
    // The newest first: what was read last into a slot is what it shows.
    std::vector<bool> taken(links.size());
    for (const bool onlyWhereSeen : {true, false})
        for (std::size_t i = links.size(); i-- > 0;)
            if (!taken[i]) taken[i] = take(links[i], onlyWhereSeen);
    return live;
}

} // namespace facetor
