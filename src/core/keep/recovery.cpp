#include "keep/recovery.h"

#include "base/checksum.h"
#include "base/file.h"
#include "base/file_stamp.h"
#include "base/folder.h"
#include "texture/texture_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <new>
#include <random>
#include <set>
#include <string_view>
#include <utility>

namespace facetor {

namespace {

constexpr std::string_view stateExtension = ".recovery", lockExtension = ".lock";
constexpr std::string_view texturesExtension = ".mxt";
constexpr std::string_view nameDigits = "0123456789abcdef";
constexpr std::size_t nameSize = 12;

std::string drawName()
{
    std::random_device device;
    std::string name;
    for (std::size_t i = 0; i < nameSize; ++i) name += nameDigits[device() % nameDigits.size()];
    return name;
}

/// The set that a file belongs to; empty for another file.
std::string setOf(std::string_view file)
{
    const std::string_view name = file.substr(0, nameSize);
    const bool isOurs = name.size() == nameSize &&
                        name.find_first_not_of(nameDigits) == std::string_view::npos &&
                        (file.ends_with(stateExtension) || file.ends_with(texturesExtension) ||
                         file.ends_with(lockExtension));
    return isOurs ? std::string(name) : std::string();
}

/// The number of a texture list of the set; 0 for another file.
std::uint32_t texturesNumberOf(std::string_view file, const std::string& set)
{
    const std::string prefix = set + "-";
    if (!file.starts_with(prefix) || !file.ends_with(texturesExtension)) return 0;
    const std::string_view digits =
        file.substr(prefix.size(), file.size() - prefix.size() - texturesExtension.size());
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc{} && end == digits.data() + digits.size() ? number : 0;
}

std::int64_t secondsNow()
{
    using namespace std::chrono;
    return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

/// Reads the list that the state names. False when it is not the one that was written.
bool readTexturesOf(const RecoverySet& set, const RecoveryState& state, TextureList& textures,
                    std::string& reason)
{
    if (state.texturesNumber == 0) return true;
    const auto bytes = readFile(set.texturesPath(state.texturesNumber), largestFile, &reason);
    if (!bytes) return false;
    Reason damage;
    const Message message = readTextures(textures, *bytes, &damage);
    textures.current = state.currentTexture;
    if (message != Message::none) reason = damage.text;
    if (message == Message::none &&
        (bytes->size() != state.texturesSize || crc32(*bytes) != state.texturesChecksum))
        reason = "it was changed";
    return reason.empty();
}

Recoverable look(RecoverySet set, Model& model)
{
    Recoverable found;
    found.set = std::move(set);
    const std::string path = found.set.statePath();
    const auto bytes = readFile(path, largestFile, &found.reason);
    found.damaged = !bytes || model.objects.size() == 0 ||
                    readRecoveryFile(found.state, model, *bytes, found.reason) != Message::none;
    if (found.damaged) {
        found.state = {};
        found.state.writtenAt = writtenAt(path);
    }
    found.size = bytes ? bytes->size() + found.state.texturesSize : 0;
    if (found.damaged || found.state.texturesNumber == 0) return found;
    TextureList textures;
    found.texturesDamaged = textures.create() != Message::none ||
                            !readTexturesOf(found.set, found.state, textures, found.reason);
    return found;
}

} // namespace

RecoverySet RecoverySet::withoutLock() const
{
    RecoverySet set;
    set.folder_ = folder_;
    set.name_ = name_;
    return set;
}

bool RecoverySet::create(const std::string& folder, std::string& reason)
{
    reason = makeFolder(folder);
    if (!reason.empty()) return false;
    folder_ = folder;
    name_ = drawName();
    if (lock_.take(pathIn(folder_, name_ + std::string(lockExtension)))) return true;
    reason = systemReason(errno);
    return false;
}

bool RecoverySet::claim(const std::string& folder, const std::string& name)
{
    folder_ = folder;
    name_ = name;
    return lock_.take(pathIn(folder_, name_ + std::string(lockExtension)));
}

std::string RecoverySet::statePath() const
{
    return pathIn(folder_, name_ + std::string(stateExtension));
}

std::string RecoverySet::texturesPath(std::uint32_t number) const
{
    return pathIn(folder_, name_ + "-" + std::to_string(number) + std::string(texturesExtension));
}

void RecoverySet::removeOtherTextures(std::uint32_t number) const
{
    for (const std::string& file : namesIn(folder_))
        if (const std::uint32_t found = texturesNumberOf(file, name_);
            found != 0 && found != number)
            (void)removeFile(pathIn(folder_, file));
}

void RecoverySet::remove()
{
    if (!isHeld()) return;
    (void)removeFile(statePath()); // first: without it the others count as nothing
    removeOtherTextures(0);
#ifdef _WIN32
    lock_.release(); // what is open cannot be removed
    (void)removeFile(pathIn(folder_, name_ + std::string(lockExtension)));
#else
    (void)removeFile(pathIn(folder_, name_ + std::string(lockExtension)));
    lock_.release();
#endif
}

Message writeRecovery(const RecoverySet& set, RecoveryState& state, const Model& model,
                      const TextureList& textures, bool texturesAreThere, std::string& reason)
try {
    const bool hasTextures = textures.usedCount() > 0;
    if (hasTextures && !texturesAreThere) {
        const Bytes bytes = writeTextures(textures);
        ++state.texturesNumber;
        state.texturesSize = bytes.size();
        state.texturesChecksum = crc32(bytes);
        if (writeFile(set.texturesPath(state.texturesNumber), bytes, &reason) != Message::none)
            return Message::recoveryNotWritten;
    }
    state.writtenAt = secondsNow();
    RecoveryState written = state; // a number of an empty list's would be one of no file
    if (!hasTextures) written.texturesNumber = 0;
    if (writeFile(set.statePath(), writeRecoveryFile(written, model), &reason) != Message::none)
        return Message::recoveryNotWritten;
    if (!texturesAreThere) set.removeOtherTextures(written.texturesNumber);
    return Message::none;
} catch (const std::bad_alloc&) {
    reason = "not enough memory for it";
    return Message::recoveryNotWritten;
}

std::vector<Recoverable> findRecoverable(const std::string& folder)
{
    std::vector<Recoverable> all;
    const std::vector<std::string> files = namesIn(folder);
    std::set<std::string> names;
    for (const std::string& file : files)
        if (std::string name = setOf(file); !name.empty()) names.insert(std::move(name));
    if (names.empty()) return all;
    Model model; // without memory for it, all are there and none can be opened
    (void)createModelStore(model);
    for (const std::string& name : names) {
        RecoverySet set;
        if (!set.claim(folder, name)) continue;
        // Of a process that ended before it wrote anything, or while it cleaned up. What is there
        // and cannot be opened now, as while a scanner reads it, is no such thing.
        if (!stampOf(set.statePath()).exists) {
            set.remove();
            continue;
        }
        all.push_back(look(std::move(set), model));
    }
    std::ranges::stable_sort(all, [](const Recoverable& a, const Recoverable& b) {
        return a.state.writtenAt > b.state.writtenAt;
    });
    return all;
}

Message readRecoverable(const Recoverable& recoverable, RecoveryState& state, Model& model,
                        TextureList& textures, std::string& reason)
{
    const auto bytes = readFile(recoverable.set.statePath(), largestFile, &reason);
    if (!bytes) return Message::cannotOpenFile;
    if (const Message message = readRecoveryFile(state, model, *bytes, reason);
        message != Message::none)
        return message;
    (void)readTexturesOf(recoverable.set, state, textures, reason);
    return Message::none;
}

Message writeChangedFlags(const Recoverable& recoverable, std::string& reason)
try {
    Model model;
    if (createModelStore(model) != Message::none) throw std::bad_alloc();
    const std::string path = recoverable.set.statePath();
    const auto bytes = readFile(path, largestFile, &reason);
    RecoveryState state;
    if (!bytes || readRecoveryFile(state, model, *bytes, reason) != Message::none)
        return Message::recoveryNotWritten;
    state.modelChanged = recoverable.state.modelChanged;
    state.texturesChanged = recoverable.state.texturesChanged;
    return writeFile(path, writeRecoveryFile(state, model), &reason) == Message::none
               ? Message::none
               : Message::recoveryNotWritten;
} catch (const std::bad_alloc&) {
    reason = "not enough memory for it";
    return Message::recoveryNotWritten;
}

void takeRecovered(Document& document, View& view, const RecoveryState& state, const Model& model,
                   const TextureList& textures)
{
    const auto take = [&] {
        copyModel(document.model, model);
        replaceTextures(document.textures, textures);
        document.textures.current = state.currentTexture;
        leaveModelFile(document, state.importedFrom);
        leaveTextureFile(document);
        document.modelFile = state.modelFile;
        document.textureFile = state.textureFile;
        document.partlyReadModel = state.partlyReadModel;
        document.partlyReadTextures = state.partlyReadTextures;
        return EditOutcome{};
    };
    (void)change(document, Word::stepRecover, take, ChangeKind::openBoth);
    undoClear(document.undo);
    if (!state.modelChanged) markModelSaved(document);
    if (!state.texturesChanged) markTexturesSaved(document);
    View kept = state.view;
    kept.backgroundColour = view.backgroundColour;
    kept.dragDrawMode = view.dragDrawMode;
    view = kept;
    view.frameNeedsDrawing = true;
}

} // namespace facetor
