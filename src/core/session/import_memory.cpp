#include "session/import_memory.h"

#include "base/text.h"

#include <algorithm>
#include <utility>

namespace facetor {

namespace {

template <typename Entries> auto findPath(Entries& entries, const std::string& path)
{
    return std::find_if(entries.begin(), entries.end(),
                        [&](const auto& entry) { return equalIgnoringCase(entry.path, path); });
}

} // namespace

void rememberSource(ImportMemory& memory, const std::string& path, const ImportOptions& options)
{
    if (const auto known = findPath(memory.sources, path); known != memory.sources.end())
        known->options = options;
    else
        memory.sources.push_back({path, options, {}});
}

ImportOptions optionsOf(const ImportMemory& memory, const std::string& path,
                        const ImportOptions& otherwise)
{
    const auto known = findPath(memory.sources, path);
    return known == memory.sources.end() ? otherwise : known->options;
}

void rememberFiles(ImportMemory& memory, const std::string& path, std::vector<std::string> files)
{
    if (const auto known = findPath(memory.sources, path); known != memory.sources.end())
        known->files = std::move(files);
}

std::vector<std::string> filesOf(const ImportMemory& memory, const std::string& path)
{
    const auto known = findPath(memory.sources, path);
    return known == memory.sources.end() ? std::vector<std::string>() : known->files;
}

void rememberModel(ImportMemory& memory, const std::string& path, const std::string& importedFrom)
{
    if (const auto known = findPath(memory.models, path); known != memory.models.end())
        known->importedFrom = importedFrom;
    else if (!importedFrom.empty())
        memory.models.push_back({path, importedFrom});
}

std::string importedFrom(const ImportMemory& memory, const std::string& path)
{
    const auto known = findPath(memory.models, path);
    return known == memory.models.end() ? std::string() : known->importedFrom;
}

} // namespace facetor
