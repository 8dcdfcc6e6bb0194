#include "keep/keeper.h"

#include <algorithm>
#include <new>
#include <utility>

namespace facetor {

namespace {

constexpr std::chrono::hours withoutEnd{1};
constexpr std::chrono::seconds crashPatience{5};

bool isOn(const Keeper& keeper)
{
    return keeper.enabled && !keeper.folder.empty();
}

bool isChanged(const Document& document)
{
    return isModelChanged(document) || areTexturesChanged(document);
}

bool isModelWritten(const Keeper& keeper, const Document& document)
{
    return keeper.writtenModel == document.modelRevision &&
           keeper.writtenPartOfModel == document.partlyReadModel;
}

bool areTexturesWritten(const Keeper& keeper, const Document& document)
{
    return keeper.writtenTextures == document.textureRevision &&
           keeper.writtenPartOfTextures == document.partlyReadTextures;
}

bool isWritten(const Keeper& keeper, const Document& document)
{
    return keeper.live.isHeld() && isModelWritten(keeper, document) &&
           areTexturesWritten(keeper, document);
}

void forgetLive(Keeper& keeper)
{
    keeper.live = {};
    keeper.liveState = {};
    keeper.writtenModel = keeper.writtenTextures = 0;
    keeper.writtenPartOfModel.clear();
    keeper.writtenPartOfTextures.clear();
}

void takeOutcome(Keeper& keeper, std::optional<RecoveryWriter::Outcome> outcome)
{
    if (!outcome) return;
    keeper.fault = outcome->reason;
    keeper.liveState = outcome->copy->state; // also of a failed one: its numbers are used up
    if (outcome->message == Message::none) {
        keeper.writtenModel = outcome->copy->modelRevision;
        keeper.writtenTextures = outcome->copy->textureRevision;
        keeper.writtenPartOfModel = outcome->copy->state.partlyReadModel;
        keeper.writtenPartOfTextures = outcome->copy->state.partlyReadTextures;
        keeper.fault.clear();
    } else {
        keeper.writtenTextures = 0;
    }
    keeper.spare = std::move(outcome->copy);
    keeper.spare->textures.clearAll(); // a share of pixels would make the next edit copy them
}

void waitForWriter(Keeper& keeper)
{
    takeOutcome(keeper, keeper.writer.waitFor(withoutEnd));
}

/// Begins to write the document. False when it cannot be.
bool beginWriting(Keeper& keeper, const Document& document, const View& view)
{
    if (!keeper.writer.start()) return false;
    if (!keeper.live.isHeld() && !keeper.live.create(keeper.folder, keeper.fault)) return false;
    auto copy = keeper.spare ? std::move(keeper.spare)
                             : std::unique_ptr<DocumentCopy>(new (std::nothrow) DocumentCopy);
    if (!copy || !copyDocument(*copy, document, view)) {
        keeper.fault = "not enough memory for it";
        return false;
    }
    copy->state.texturesNumber = keeper.liveState.texturesNumber;
    copy->state.texturesSize = keeper.liveState.texturesSize;
    copy->state.texturesChecksum = keeper.liveState.texturesChecksum;
    const bool texturesAreThere =
        keeper.writtenTextures != 0 && areTexturesWritten(keeper, document);
    keeper.writer.begin(keeper.live, std::move(copy), texturesAreThere);
    return true;
}

/// Writes the document to the live set and waits for it.
bool writeAndWait(Keeper& keeper, const Document& document, const View& view)
{
    waitForWriter(keeper);
    if (!beginWriting(keeper, document, view)) return false;
    waitForWriter(keeper);
    return keeper.fault.empty();
}

/// A document that was left among the recoverable ones is written, or cannot be.
void takeKept(Keeper& keeper, std::optional<RecoveryWriter::Outcome> outcome)
{
    if (!outcome) return;
    const auto kept = std::ranges::find_if(keeper.recoverable, [&](const Recoverable& recoverable) {
        return recoverable.set.statePath() == keeper.laterState;
    });
    if (kept == keeper.recoverable.end()) return;
    if (outcome->message == Message::none) {
        const RecoveryState& written = outcome->copy->state;
        kept->state.writtenAt = written.writtenAt;
        kept->state.texturesNumber = written.texturesNumber;
        kept->state.texturesSize = written.texturesSize;
        kept->state.texturesChecksum = written.texturesChecksum;
    } else {
        keeper.fault = outcome->reason;
        kept->set.remove();
        keeper.recoverable.erase(kept);
    }
}

void dropLive(Keeper& keeper)
{
    waitForWriter(keeper);
    keeper.live.remove();
    forgetLive(keeper);
}

} // namespace

void startKeeper(Keeper& keeper, const std::string& folder)
{
    keeper.folder = folder;
    if (folder.empty()) return;
    keeper.recoverable = findRecoverable(folder);
    keeper.writer.start();
    keeper.spare.reset(new (std::nothrow) DocumentCopy);
    if (keeper.spare && createModelStore(keeper.spare->model) != Message::none)
        keeper.spare.reset();
}

void tickKeeper(Keeper& keeper, const Document& document, const View& view, std::uint64_t now)
{
    takeKept(keeper, keeper.laterWriter.poll());
    takeOutcome(keeper, keeper.writer.poll());
    if (document.changing || keeper.writer.isBusy()) return;
    if (!isOn(keeper) || !isChanged(document)) {
        if (keeper.live.isHeld()) dropLive(keeper);
        return;
    }
    if (keeper.lastBegun != 0 && now - keeper.lastBegun < keeper.period) return;
    keepNow(keeper, document, view, now);
}

void keepNow(Keeper& keeper, const Document& document, const View& view, std::uint64_t now)
{
    takeOutcome(keeper, keeper.writer.poll());
    if (!isOn(keeper) || document.changing || keeper.writer.isBusy() || !isChanged(document) ||
        isWritten(keeper, document))
        return;
    keeper.lastBegun = now;
    beginWriting(keeper, document, view);
}

bool keepForLater(Keeper& keeper, const Document& document, const View& view)
{
    return keepForLater(keeper, copyForLater(keeper, document, view));
}

std::unique_ptr<DocumentCopy> copyForLater(const Keeper& keeper, const Document& document,
                                           const View& view)
{
    if (!isOn(keeper)) return nullptr;
    std::unique_ptr<DocumentCopy> copy(new (std::nothrow) DocumentCopy);
    if (copy && !copyDocument(*copy, document, view)) copy.reset();
    return copy;
}

bool keepForLater(Keeper& keeper, std::unique_ptr<DocumentCopy> copy)
{
    if (!copy || !isOn(keeper) || !keeper.laterWriter.start()) return false;
    waitForKept(keeper);
    Recoverable kept;
    if (!kept.set.create(keeper.folder, keeper.fault)) return false;
    kept.state = copy->state;
    keeper.laterState = kept.set.statePath();
    keeper.laterWriter.begin(kept.set, std::move(copy), false);
    keeper.recoverable.insert(keeper.recoverable.begin(), std::move(kept));
    return true;
}

void waitForKept(Keeper& keeper)
{
    takeKept(keeper, keeper.laterWriter.waitFor(withoutEnd));
}

void noteReplaced(Keeper& keeper, KeptKind kind, const std::string& path)
{
    waitForKept(keeper);
    const bool isModel = kind == KeptKind::model;
    for (Recoverable& kept : keeper.recoverable) {
        RecoveryState& state = kept.state;
        bool& changed = isModel ? state.modelChanged : state.texturesChanged;
        if (kept.damaged || changed ||
            !isSameFile(isModel ? state.modelFile : state.textureFile, path))
            continue;
        changed = true;
        if (std::string reason; writeChangedFlags(kept, reason) != Message::none)
            keeper.fault = std::move(reason);
    }
}

Message recover(Keeper& keeper, std::size_t index, Document& document, View& view,
                std::string& reason)
{
    Model model;
    TextureList textures;
    RecoveryState state;
    if (createModelStore(model) != Message::none || textures.create() != Message::none)
        return Message::outOfMemory;
    Recoverable& chosen = keeper.recoverable[index];
    if (readRecoverable(chosen, state, model, textures, reason) != Message::none)
        return Message::recoveryDamaged;
    const bool texturesLost = !reason.empty();
    // Its file was replaced since, and it could not be written anew.
    state.modelChanged = state.modelChanged || chosen.state.modelChanged;
    state.texturesChanged = state.texturesChanged || chosen.state.texturesChanged;
    takeRecovered(document, view, state, model, textures);
    // What a damaged list has lost may still be saved by hand.
    if (writeAndWait(keeper, document, view) && !texturesLost) {
        chosen.set.remove();
        keeper.recoverable.erase(keeper.recoverable.begin() + static_cast<std::ptrdiff_t>(index));
    }
    return texturesLost ? Message::recoveryPartly : Message::none;
}

void endKeeper(Keeper& keeper, const Document& document, const View& view, KeeperEnd end)
{
    waitForWriter(keeper);
    waitForKept(keeper);
    const bool stays = end == KeeperEnd::undecided && isOn(keeper) && isChanged(document);
    if (stays && (isWritten(keeper, document) || writeAndWait(keeper, document, view)))
        keeper.live.leave();
    else if (!stays)
        keeper.live.remove();
    forgetLive(keeper); // what an older writing holds is better than nothing
    for (Recoverable& other : keeper.recoverable)
        if (!other.damaged && !other.state.modelChanged && !other.state.texturesChanged)
            other.set.remove();
    keeper.recoverable.clear();
    keeper.folder.clear();
}

void keepAtCrash(Keeper& keeper, const Document& document, const View& view)
{
    takeOutcome(keeper, keeper.writer.waitFor(crashPatience));
    (void)keeper.laterWriter.waitFor(crashPatience);
    if (!isOn(keeper) || document.changing || keeper.writer.isBusy() || !isChanged(document) ||
        isWritten(keeper, document) || !isSafeToDraw(document.model))
        return;
    if (beginWriting(keeper, document, view))
        takeOutcome(keeper, keeper.writer.waitFor(crashPatience));
}

} // namespace facetor
