#include "exchange/matching.h"

#include <algorithm>
#include <numeric>

namespace facetor {

namespace {

constexpr std::uint32_t noOne = 0xFFFFFFFF;

/// Edmonds' search for augmenting paths: a tree of alternating paths grows from an unmatched
/// thing, odd circles in it (blossoms) are treated as one thing.
class Matching {
public:
    Matching(std::uint32_t count, std::span<const Pair> pairs)
        : first_(count + 1), mate_(count, noOne), parent_(count, noOne), base_(count),
          isOuter_(count), isDead_(count), mark_(count)
    {
        for (const Pair& pair : pairs) {
            ++first_[pair.first];
            ++first_[pair.second];
        }
        std::exclusive_scan(first_.begin(), first_.end(), first_.begin(), 0u);
        neighbour_.resize(2 * pairs.size());
        std::vector<std::uint32_t> next(first_.begin(), first_.end() - 1);
        for (const Pair& pair : pairs) { // in their order, the best first
            neighbour_[next[pair.first]++] = pair.second;
            neighbour_[next[pair.second]++] = pair.first;
        }
        std::iota(base_.begin(), base_.end(), 0u);
    }

    void takeBest(std::span<const Pair> pairs)
    {
        for (const Pair& pair : pairs)
            if (mate_[pair.first] == noOne && mate_[pair.second] == noOne) {
                mate_[pair.first] = pair.second;
                mate_[pair.second] = pair.first;
            }
    }

    void augment()
    {
        for (std::uint32_t root = 0; root < mate_.size(); ++root) {
            if (mate_[root] != noOne) continue;
            std::uint32_t end = search(root);
            // A tree without a way out stays so: no later path enters it.
            const bool failed = end == noOne;
            while (end != noOne) {
                const std::uint32_t before = parent_[end], next = mate_[before];
                mate_[end] = before;
                mate_[before] = end;
                end = next;
            }
            for (const std::uint32_t i : reached_) {
                isDead_[i] = failed;
                parent_[i] = noOne;
                base_[i] = i;
                isOuter_[i] = false;
            }
        }
    }

    std::vector<std::uint32_t> result() && { return std::move(mate_); }

private:
    /// The far end of an augmenting path from `root`; its steps back are in parent_ and mate_.
    std::uint32_t search(std::uint32_t root)
    {
        reached_.assign(1, root);
        queue_.assign(1, root);
        isOuter_[root] = true;
        for (std::size_t at = 0; at < queue_.size(); ++at) {
            const std::uint32_t from = queue_[at];
            for (std::uint32_t i = first_[from]; i < first_[from + 1]; ++i) {
                const std::uint32_t to = neighbour_[i];
                if (isDead_[to] || base_[from] == base_[to] || mate_[from] == to) continue;
                if (to == root || (mate_[to] != noOne && parent_[mate_[to]] != noOne)) {
                    contract(from, to);
                } else if (parent_[to] == noOne) {
                    parent_[to] = from;
                    reached_.push_back(to);
                    if (mate_[to] == noOne) return to;
                    reached_.push_back(mate_[to]);
                    isOuter_[mate_[to]] = true;
                    queue_.push_back(mate_[to]);
                }
            }
        }
        return noOne;
    }

    /// Makes the odd circle that `from` and `to` close one thing.
    void contract(std::uint32_t from, std::uint32_t to)
    {
        const std::uint32_t common = commonBase(from, to);
        ++stamp_;
        markPath(from, common, to);
        markPath(to, common, from);
        for (std::size_t k = 0; k < reached_.size(); ++k) {
            const std::uint32_t i = reached_[k];
            if (mark_[base_[i]] != stamp_) continue;
            base_[i] = common;
            if (isOuter_[i]) continue;
            isOuter_[i] = true;
            queue_.push_back(i);
        }
    }

    std::uint32_t commonBase(std::uint32_t a, std::uint32_t b)
    {
        ++stamp_;
        for (;;) {
            a = base_[a];
            mark_[a] = stamp_;
            if (mate_[a] == noOne) break; // the root
            a = parent_[mate_[a]];
        }
        for (;;) {
            b = base_[b];
            if (mark_[b] == stamp_) return b;
            b = parent_[mate_[b]];
        }
    }

    void markPath(std::uint32_t at, std::uint32_t common, std::uint32_t child)
    {
        while (base_[at] != common) {
            mark_[base_[at]] = mark_[base_[mate_[at]]] = stamp_;
            parent_[at] = child;
            child = mate_[at];
            at = parent_[mate_[at]];
        }
    }

    std::vector<std::uint32_t> first_, neighbour_; ///< of thing i from first_[i] to first_[i + 1]
    std::vector<std::uint32_t> mate_;
    std::vector<std::uint32_t> parent_, base_;
    std::vector<bool> isOuter_, isDead_;
    std::vector<std::uint32_t> mark_;
    std::uint32_t stamp_ = 0;
    std::vector<std::uint32_t> reached_, queue_;
};

} // namespace

std::vector<std::uint32_t> matchPairs(std::uint32_t count, std::span<const Pair> pairs)
{
    std::vector<Pair> best(pairs.begin(), pairs.end());
    std::stable_sort(best.begin(), best.end(),
                     [](const Pair& a, const Pair& b) { return a.quality > b.quality; });
    Matching matching(count, best);
    matching.takeBest(best);
    matching.augment();
    return std::move(matching).result();
}

} // namespace facetor
