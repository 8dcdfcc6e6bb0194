#include "keep/versions.h"

#include "base/checksum.h"
#include "base/file.h"
#include "base/file_lock.h"
#include "base/file_stamp.h"
#include "base/folder.h"
#include "base/text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <new>
#include <span>
#include <string_view>
#include <utility>

namespace facetor {

namespace {

constexpr std::string_view indexName = "index.txt";
constexpr std::string_view lockName = "lock";
constexpr std::string_view indexHeader = "Facetor versions 1\n";
constexpr int lockPatience =
    2000; ///< milliseconds; another copy of the program keeps one meanwhile
constexpr std::array<std::string_view, 2> extensions{".mx3", ".mxt"}; // in the order of KeptKind
constexpr std::size_t hashDigits = 16, checksumDigits = 8;

std::string toHex(std::uint64_t value, std::size_t digits)
{
    std::string text(digits, '0');
    for (std::size_t i = digits; i-- > 0; value >>= 4) text[i] = "0123456789abcdef"[value & 15];
    return text;
}

template <typename Number> bool parseNumber(std::string_view text, Number& value, int base)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    return error == std::errc{} && end == text.data() + text.size();
}

std::string contentName(const Version& version)
{
    return toHex(version.hash, hashDigits) +
           std::string(extensions[static_cast<std::size_t>(version.kind)]);
}

std::string contentPath(const VersionStore& store, const Version& version)
{
    return pathIn(store.folder, contentName(version));
}

/// The path in one line: '%' and what is below the blank as "%XX".
std::string escaped(std::string_view path)
{
    std::string text;
    for (const char c : path) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '%' || code < ' ')
            text += '%' + toHex(code, 2);
        else
            text += c;
    }
    return text;
}

std::string unescaped(std::string_view text)
{
    std::string path;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned code = 0;
        if (text[i] == '%' && i + 2 < text.size() && parseNumber(text.substr(i + 1, 2), code, 16)) {
            path += static_cast<char>(code);
            i += 2;
        } else {
            path += text[i];
        }
    }
    return path;
}

std::string formatLine(const Version& version)
{
    const std::string text = std::to_string(version.number) + ' ' +
                             std::to_string(version.savedAt) + ' ' + std::to_string(version.size) +
                             ' ' + contentName(version) + ' ' + escaped(version.document);
    return toHex(crc32(std::as_bytes(std::span(text))), checksumDigits) + ' ' + text + '\n';
}

std::string_view cutField(std::string_view& line)
{
    const std::size_t end = line.find(' ');
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    return field;
}

/// What the name of a content says; false for another file.
bool parseContentName(std::string_view name, Version& version)
{
    for (std::size_t kind = 0; kind < extensions.size(); ++kind)
        if (name.size() == hashDigits + extensions[kind].size() &&
            name.ends_with(extensions[kind]) &&
            parseNumber(name.substr(0, hashDigits), version.hash, 16)) {
            version.kind = static_cast<KeptKind>(kind);
            return true;
        }
    return false;
}

std::optional<Version> parseLine(std::string_view line)
{
    std::uint32_t checksum = 0;
    if (!parseNumber(cutField(line), checksum, 16) ||
        checksum != crc32(std::as_bytes(std::span(line))))
        return std::nullopt;
    Version version;
    if (!parseNumber(cutField(line), version.number, 10) ||
        !parseNumber(cutField(line), version.savedAt, 10) ||
        !parseNumber(cutField(line), version.size, 10) ||
        !parseContentName(cutField(line), version))
        return std::nullopt;
    version.document = unescaped(line);
    return version;
}

bool isSameContent(const Version& a, const Version& b)
{
    return a.hash == b.hash && a.size == b.size && a.kind == b.kind;
}

bool isSameDocument(const Version& a, const Version& b)
{
    return a.kind == b.kind && equalIgnoringCase(a.document, b.document);
}

/// Gives what the index has lost a place again, behind all that it knows, the newest first.
void adoptLostContents(const VersionStore& store, std::vector<Version>& all)
{
    const auto known = static_cast<std::ptrdiff_t>(all.size());
    for (const std::string& name : namesIn(store.folder)) {
        Version version;
        if (!parseContentName(name, version)) continue;
        const std::string path = pathIn(store.folder, name);
        const auto bytes = readFile(path, store.limit);
        if (!bytes || contentHash(*bytes) != version.hash) continue;
        version.size = bytes->size();
        version.savedAt = writtenAt(path);
        if (std::ranges::none_of(all, [&](const Version& v) { return isSameContent(v, version); }))
            all.push_back(version);
    }
    std::stable_sort(all.begin() + known, all.end(),
                     [](const Version& a, const Version& b) { return a.savedAt > b.savedAt; });
}

/// Lets the oldest go until both bounds are kept. The first is the newest, which stays. Those
/// without a name may be of one document each: only the bound in bytes is theirs.
void prune(const VersionStore& store, std::vector<Version>& all)
{
    std::vector<Version> kept;
    std::uint64_t size = 0;
    for (const Version& version : all) {
        const auto ofDocument = std::ranges::count_if(
            kept, [&](const Version& v) { return isSameDocument(v, version); });
        if (!version.document.empty() && static_cast<std::size_t>(ofDocument) >= store.perDocument)
            continue;
        const bool shared =
            std::ranges::any_of(kept, [&](const Version& v) { return isSameContent(v, version); });
        if (!shared && version.size > store.limit - size) break;
        if (!shared) size += version.size;
        kept.push_back(version);
    }
    all = std::move(kept);
}

void removeUnused(const VersionStore& store, const std::vector<Version>& all)
{
    for (const std::string& name : namesIn(store.folder))
        if (Version version;
            parseContentName(name, version) && std::ranges::none_of(all, [&](const Version& v) {
                return v.hash == version.hash && v.kind == version.kind;
            }))
            (void)removeFile(pathIn(store.folder, name));
}

/// What the folder holds by its index, and what that does not name any more.
Versions versionsOf(const VersionStore& store, const std::optional<Bytes>& index)
{
    Versions versions = parseVersionIndex(
        index ? std::string_view(reinterpret_cast<const char*>(index->data()), index->size())
              : std::string_view());
    std::ranges::stable_sort(versions.all, std::ranges::greater{}, &Version::number);
    if (versions.damaged) adoptLostContents(store, versions.all);
    if (!index && versions.all.empty()) versions.damaged = false; // nothing was kept so far
    return versions;
}

/// Whether the folder holds that content, whole.
bool hasContent(const VersionStore& store, const Version& version, const Bytes& bytes)
{
    const auto held = readFile(contentPath(store, version), version.size);
    return held && *held == bytes;
}

Message keepBytes(const VersionStore& store, Version version, const Bytes& bytes,
                  std::string& reason)
{
    reason = makeFolder(store.folder);
    if (!reason.empty()) return Message::versionNotKept;
    FileLock lock;
    if (!lock.takeWithin(pathIn(store.folder, lockName), lockPatience)) {
        reason = systemReason(errno);
        return Message::versionNotKept;
    }
    const std::string indexPath = pathIn(store.folder, indexName);
    const auto oldIndex = readFile(indexPath, largestFile, &reason);
    // One that another program holds is not an empty one: what it names would be nobody's.
    if (!oldIndex && stampOf(indexPath).exists) return Message::versionNotKept;
    std::vector<Version> all = versionsOf(store, oldIndex).all;
    std::erase_if(all, [&](const Version& v) {
        return isSameDocument(v, version) && isSameContent(v, version);
    });
    for (const Version& other : all) version.number = std::max(version.number, other.number + 1);
    all.insert(all.begin(), version);
    prune(store, all);
    if (!hasContent(store, version, bytes) &&
        writeFile(contentPath(store, version), bytes, &reason) != Message::none)
        return Message::versionNotKept;
    const std::string index = formatVersionIndex(all);
    if (writeFile(indexPath, std::as_bytes(std::span(index)), &reason) != Message::none)
        return Message::versionNotKept;
    removeUnused(store, all);
    return Message::none;
}

} // namespace

std::string formatVersionIndex(const std::vector<Version>& all)
{
    std::string text(indexHeader);
    for (const Version& version : all) text += formatLine(version);
    return text;
}

Versions parseVersionIndex(std::string_view text)
{
    Versions versions;
    versions.damaged = !text.starts_with(indexHeader);
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line == indexHeader.substr(0, indexHeader.size() - 1)) continue;
        if (auto version = parseLine(line))
            versions.all.push_back(std::move(*version));
        else
            versions.damaged = true;
    }
    return versions;
}

Versions readVersions(const VersionStore& store)
{
    return versionsOf(store, readFile(pathIn(store.folder, indexName)));
}

Message keepVersion(const VersionStore& store, const std::string& path, KeptKind kind,
                    std::string& reason)
try {
    if (!unreadableKind(path).empty()) return Message::none; // not replaced but written to
    if (!stampOf(path).exists) return Message::none;
    const auto bytes = readFile(path, store.limit, &reason);
    if (!bytes) return Message::versionNotKept;
    const Version version{path, kind, 0, writtenAt(path), bytes->size(), contentHash(*bytes)};
    return keepBytes(store, version, *bytes, reason);
} catch (const std::bad_alloc&) {
    reason = "not enough memory for it";
    return Message::versionNotKept;
}

std::optional<Bytes> readVersion(const VersionStore& store, const Version& version,
                                 std::string& reason)
{
    auto bytes = readFile(contentPath(store, version), store.limit, &reason);
    if (!bytes || (bytes->size() == version.size && contentHash(*bytes) == version.hash))
        return bytes;
    reason = "it is damaged";
    return std::nullopt;
}

} // namespace facetor
