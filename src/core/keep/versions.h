#pragma once

#include "base/bytes.h"
#include "base/message.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

// Earlier versions of files: what a save is about to replace is kept first. They lie in one folder,
// each content once, beside an index that says whose they are: docs/formats/versions.md.

enum class KeptKind : std::uint8_t { model, textures };

/// One file as it was before a save replaced it.
struct Version {
    std::string document; ///< its path; empty when the index does not know any more
    KeptKind kind = KeptKind::model;
    std::uint64_t number = 0; ///< grows with each version that is kept, whatever the clock says
    std::int64_t savedAt = 0; ///< when that content was saved, in seconds since 1970
    std::uint64_t size = 0;   ///< in bytes
    std::uint64_t hash = 0;   ///< contentHash() of it

    bool operator==(const Version&) const = default;
};

struct VersionStore {
    std::string folder;               ///< made when it is needed
    std::size_t perDocument = 10;     ///< versions of one document; the oldest go
    std::uint64_t limit = 256u << 20; ///< of all contents, in bytes; likewise, of all documents
};

struct Versions {
    std::vector<Version> all; ///< the newest first
    bool damaged = false;     ///< a part of the index could not be read: some have lost their name
};

/// Reads the text of an index; `all` has the order of its lines. Lines that cannot be read are
/// passed over.
Versions parseVersionIndex(std::string_view text);
/// The whole text.
std::string formatVersionIndex(const std::vector<Version>& all);

/// What the folder holds; nothing when it is not there.
Versions readVersions(const VersionStore& store);

/// Keeps the file that stands at `path` and is about to be replaced. Nothing is done when there is
/// none, or when what it holds is the document's newest version already; an older one of the same
/// content becomes the newest. versionNotKept, with the cause in `reason`, when it cannot be: what
/// was kept before stays.
Message keepVersion(const VersionStore& store, const std::string& path, KeptKind kind,
                    std::string& reason);

/// The content of a version, which is held against its hash: none, with the cause in `reason`, when
/// it is gone or is not what was kept.
std::optional<Bytes> readVersion(const VersionStore& store, const Version& version,
                                 std::string& reason);

} // namespace facetor
