#include "document/step.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <span>

namespace facetor {

namespace {

using Pools = std::array<std::span<std::byte>, 10>;

template <typename T> std::span<std::byte> bytesOf(PageArray<T>& pool)
{
    return std::as_writable_bytes(std::span(pool.data(), pool.size()));
}

std::span<std::byte> bytesOf(std::uint32_t& count)
{
    return std::as_writable_bytes(std::span(&count, 1));
}

/// The place of the attributes among the pools.
constexpr std::size_t attributePool = 3;

Pools poolsOf(Model& model)
{
    return {bytesOf(model.vertices),         bytesOf(model.vertexNormals),
            bytesOf(model.polygons),         bytesOf(model.attributes),
            bytesOf(model.gouraud),          bytesOf(model.meshes),
            bytesOf(model.objects),          bytesOf(model.objectCount),
            bytesOf(model.totalVertexCount), bytesOf(model.totalPolygonCount)};
}

/// Equal bytes between two runs that are not worth a run of their own.
constexpr std::size_t longestGap = 16;

/// The number of bytes from the front that both have in common.
std::size_t commonBytes(std::span<const std::byte> a, std::span<const std::byte> b)
{
    constexpr std::size_t block = 256; // compared by the library, which is fast, before bytes are
    std::size_t at = 0;
    while (at + block <= a.size() && std::memcmp(&a[at], &b[at], block) == 0) at += block;
    while (at < a.size() && a[at] == b[at]) ++at;
    return at;
}

/// The end of the run that begins at `first`: where `longestGap` equal bytes follow.
std::size_t endOfRun(std::span<const std::byte> a, std::span<const std::byte> b, std::size_t first)
{
    std::size_t end = first + 1;
    for (std::size_t at = end; at < a.size() && at - end < longestGap; ++at)
        if (a[at] != b[at]) end = at + 1;
    return end;
}

void findRuns(Step& step, std::uint32_t pool, std::span<const std::byte> before,
              std::span<const std::byte> after)
{
    for (std::size_t at = 0;;) {
        at += commonBytes(before.subspan(at), after.subspan(at));
        if (at == after.size()) return;
        const std::size_t end = endOfRun(before, after, at);
        step.runs.push_back(
            {pool, static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end - at)});
        for (; at < end; ++at) step.changed.push_back(before[at] ^ after[at]);
    }
}

Marks marksOf(std::span<const PolygonAttribute> attributes)
{
    Marks marks;
    for (std::size_t i = 0; i < attributes.size(); ++i)
        marks[i] = (attributes[i].flags & picked) != 0;
    return marks;
}

void setMarks(Model& model, const Marks& marks)
{
    for (std::size_t i = 0; i < model.attributes.size(); ++i) {
        std::uint32_t& flags = model.attributes[i].flags;
        flags = marks[i] ? flags | picked : flags & ~std::uint32_t{picked};
    }
}

void findChangedTextures(Step& step, const TextureList& before, const TextureList& after)
{
    const std::uint32_t used = std::max(before.usedCount(), after.usedCount());
    for (std::uint32_t i = 0; i < used; ++i)
        if (before.isEmpty(i) != after.isEmpty(i) || !sameTexture(before.slot(i), after.slot(i)))
            step.textures.push_back(
                {i, before.slot(i), after.slot(i), before.texels(i), after.texels(i)});
}

void putTexture(TextureList& list, std::uint32_t number, const TextureSlot& slot,
                const Texels& texels)
{
    if (slot.pixels == blankTexture())
        list.clear(number);
    else
        list.set(number, slot.width, slot.height, texels);
}

} // namespace

Message takeSnapshot(Snapshot& snapshot, const Model& model, const TextureList& textures)
{
    const Pools pools = poolsOf(const_cast<Model&>(model)); // only read
    std::size_t size = 0;
    for (const auto& pool : pools) size += pool.size();
    if (snapshot.pools.size() != size && !snapshot.pools.allocate(size))
        return Message::outOfUndoMemory;
    std::byte* to = snapshot.pools.data();
    for (const auto& pool : pools) {
        std::memcpy(to, pool.data(), pool.size());
        to += pool.size();
    }
    try {
        snapshot.names = model.names;
    } catch (const std::bad_alloc&) {
        return Message::outOfUndoMemory;
    }
    snapshot.textures = textures;
    return snapshot.textures.slots().size() == textures.slots().size() ? Message::none
                                                                       : Message::outOfUndoMemory;
}

Message findChanges(Step& step, const Snapshot& before, Model& model, const TextureList& textures)
{
    const Pools pools = poolsOf(model);
    // Marks are compared apart: those of the snapshot hide behind those of the model meanwhile.
    std::span<const std::byte> saved(before.pools.data(), before.pools.size());
    for (std::size_t i = 0; i < attributePool; ++i) saved = saved.subspan(pools[i].size());
    step.marksBefore =
        marksOf({reinterpret_cast<const PolygonAttribute*>(saved.data()), model.attributes.size()});
    step.marksAfter = marksOf({model.attributes.data(), model.attributes.size()});
    setMarks(model, step.marksBefore);
    Message message = Message::none;
    try {
        saved = {before.pools.data(), before.pools.size()};
        for (std::uint32_t i = 0; i < pools.size(); ++i) {
            findRuns(step, i, saved.first(pools[i].size()), pools[i]);
            saved = saved.subspan(pools[i].size());
        }
        for (std::uint32_t i = 0; i < objectCapacity; ++i)
            if (before.names[i] != model.names[i])
                step.names.push_back({i, before.names[i], model.names[i]});
        findChangedTextures(step, before.textures, textures);
        step.changed.shrink_to_fit(); // sizeOf() counts what is used
        step.runs.shrink_to_fit();
    } catch (const std::bad_alloc&) {
        message = Message::outOfUndoMemory;
    }
    setMarks(model, step.marksAfter);
    return message;
}

void applyStep(const Step& step, Direction direction, Model& model, TextureList& textures)
{
    const Pools pools = poolsOf(model);
    const std::byte* change = step.changed.data();
    for (const PoolRun& run : step.runs)
        for (std::byte& value : pools[run.pool].subspan(run.offset, run.length)) value ^= *change++;
    const bool back = direction == Direction::back;
    for (const ChangedName& name : step.names)
        model.names[name.object] = back ? name.before : name.after;
    for (const ChangedTexture& texture : step.textures)
        putTexture(textures, texture.slot, back ? texture.before : texture.after,
                   back ? texture.beforeTexels : texture.afterTexels);
    setMarks(model, back ? step.marksBefore : step.marksAfter);
}

bool isInverse(const Step& step, const Step& other)
{
    return step.runs == other.runs && step.changed == other.changed &&
           std::ranges::equal(step.names, other.names,
                              [](const ChangedName& a, const ChangedName& b) {
                                  return a.object == b.object && a.after == b.before;
                              }) &&
           std::ranges::equal(step.textures, other.textures,
                              [](const ChangedTexture& a, const ChangedTexture& b) {
                                  return a.slot == b.slot && sameTexture(a.after, b.before);
                              });
}

bool isSame(const Step& step, const Step& other)
{
    return step.runs == other.runs && step.changed == other.changed &&
           std::ranges::equal(step.names, other.names,
                              [](const ChangedName& a, const ChangedName& b) {
                                  return a.object == b.object && a.after == b.after;
                              }) &&
           std::ranges::equal(step.textures, other.textures,
                              [](const ChangedTexture& a, const ChangedTexture& b) {
                                  return a.slot == b.slot && sameTexture(a.after, b.after);
                              });
}

std::size_t sizeOf(const Step& step)
{
    std::size_t size = sizeof step + step.runs.size() * sizeof(PoolRun) + step.changed.size() +
                       step.names.size() * sizeof(ChangedName) +
                       step.textures.size() * sizeof(ChangedTexture);
    for (const ChangedName& name : step.names) size += name.before.size() + name.after.size();
    for (const ChangedTexture& texture : step.textures)
        size += (texture.beforeTexels.size() + texture.afterTexels.size()) * sizeof(Rgb555);
    return size;
}

} // namespace facetor
