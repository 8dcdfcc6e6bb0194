#include "document/document.h"

#include "base/text.h"
#include "document/undo_kinds.h"

#include <cassert>
#include <new>
#include <utility>

namespace facetor {

namespace {

void markChanged(Document& document, Revision& revision, Revision saved)
{
    if (revision == saved) revision = ++document.lastRevision;
}

void forgetSteps(History& history)
{
    history.steps.clear();
    history.position = 0;
    history.size = 0;
}

/// Lets go of the steps that were taken back: another change takes their place.
void dropStepsAhead(History& history)
{
    while (history.steps.size() > history.position) {
        history.size -= sizeOf(history.steps.back());
        history.steps.pop_back();
    }
}

void addStep(History& history, Step step)
{
    dropStepsAhead(history);
    const std::size_t size = sizeOf(step);
    try {
        history.steps.push_back(std::move(step));
    } catch (const std::bad_alloc&) {
        forgetSteps(history); // a gap would make the older ones wrong
        return;
    }
    history.size += size;
    ++history.position;
    while (history.size > history.limit) {
        history.size -= sizeOf(history.steps.front());
        history.steps.pop_front();
        --history.position;
    }
}

void setRevisions(Document& document, const Step& step, Direction direction)
{
    const bool back = direction == Direction::back;
    if (step.changesModel()) document.modelRevision = back ? step.modelBefore : step.modelAfter;
    if (!step.textures.empty())
        document.textureRevision = back ? step.texturesBefore : step.texturesAfter;
}

/// The document's files and those on the step's other side change places.
void exchangeFile(Document& document, Step& step)
{
    if (step.opensModel || step.breaksOffModel)
        std::swap(document.partlyReadModel, step.otherModelFile.partlyRead);
    if (step.opensTextures || step.breaksOffTextures)
        std::swap(document.partlyReadTextures, step.otherTextureFile.partlyRead);
    if (step.opensModel) {
        std::swap(document.modelFile, step.otherModelFile.path);
        std::swap(document.savedModelRevision, step.otherModelFile.saved);
    }
    if (step.changesSource) std::swap(document.importedFrom, step.otherModelFile.importedFrom);
    if (step.opensTextures) {
        std::swap(document.textureFile, step.otherTextureFile.path);
        std::swap(document.savedTextureRevision, step.otherTextureFile.saved);
    }
}

/// Gives the document the revisions that come with a step.
void countRevisions(Document& document, Step& step)
{
    step.modelBefore = document.modelRevision;
    step.texturesBefore = document.textureRevision;
    if (step.changesModel()) document.modelRevision = ++document.lastRevision;
    if (!step.textures.empty()) document.textureRevision = ++document.lastRevision;
    step.modelAfter = document.modelRevision;
    step.texturesAfter = document.textureRevision;
}

enum class Recording { newStep, mayBeAStep };

/// Ends with the edit, whatever becomes of that.
class Changing {
public:
    explicit Changing(Document& document) : document_(document) { document_.changing = true; }
    ~Changing() { document_.changing = false; }
    Changing(const Changing&) = delete;
    Changing& operator=(const Changing&) = delete;

private:
    Document& document_;
};

EditOutcome record(Document& document, Word name, const std::function<EditOutcome()>& edit,
                   ChangeKind kind, Recording recording)
{
    if (document.changing) return edit();
    const bool opens = kind != ChangeKind::edit;
    FileState model{document.modelFile, document.savedModelRevision, document.importedFrom,
                    document.partlyReadModel};
    FileState textures{
        document.textureFile, document.savedTextureRevision, {}, document.partlyReadTextures};
    Message message = takeSnapshot(document.before, document.model, document.textures);
    EditOutcome outcome;
    {
        const Changing guard(document);
        outcome = edit();
    }
    const bool opened = opens && outcome.edit == Message::none;
    if (opened && kind == ChangeKind::openModel) document.partlyReadModel.clear();
    Step step;
    if (message == Message::none)
        message = findChanges(step, document.before, document.model, document.textures);
    document.before.textures.clearAll(); // a share of pixels would make the next edit copy them
    if (message != Message::none) {
        forgetSteps(document.history);
        if (!opens || opened) document.modelRevision = ++document.lastRevision;
        if (!opens || opened) document.textureRevision = ++document.lastRevision;
        outcome.brokenOff = opens && !opened;
        return outcome;
    }
    if (step.isEmpty()) return outcome;
    outcome.brokenOff = opens && !opened;
    History& history = document.history;
    if (recording == Recording::mayBeAStep) {
        const std::size_t at = history.position;
        if (at > 0 && isInverse(step, history.steps[at - 1])) {
            setRevisions(document, history.steps[--history.position], Direction::back);
            return outcome;
        }
        if (at < history.steps.size() && isSame(step, history.steps[at])) {
            setRevisions(document, history.steps[history.position++], Direction::forward);
            return outcome;
        }
    }
    step.name = name;
    step.opensModel = opened && kind != ChangeKind::openTextures;
    step.opensTextures = opened && kind != ChangeKind::openModel;
    step.changesSource = document.importedFrom != model.importedFrom;
    step.otherModelFile = std::move(model);
    step.otherTextureFile = std::move(textures);
    if (!opens || opened) {
        countRevisions(document, step);
    } else { // broken off: the flags stay, so does what they are computed from
        step.modelBefore = step.modelAfter = document.modelRevision;
        step.texturesBefore = step.texturesAfter = document.textureRevision;
    }
    addStep(history, std::move(step));
    return outcome;
}

} // namespace

bool isSameFile(std::string_view a, std::string_view b)
{
    return !a.empty() && equalIgnoringCase(cutExtension(a), cutExtension(b));
}

Message startDocument(Document& document)
{
    if (const Message message = document.textures.create(); message != Message::none)
        return message;
    return createModelStore(document.model);
}

void releaseDocument(Document& document)
{
    releaseModelStore(document.model);
    if (!document.textures.slots().empty()) document.textures.clearAll();
    undoClear(document.undo);
    forgetSteps(document.history);
}

bool isModelChanged(const Document& document)
{
    return document.modelRevision != document.savedModelRevision;
}

bool areTexturesChanged(const Document& document)
{
    return document.textureRevision != document.savedTextureRevision;
}

void markModelChanged(Document& document)
{
    markChanged(document, document.modelRevision, document.savedModelRevision);
}

void markTexturesChanged(Document& document)
{
    markChanged(document, document.textureRevision, document.savedTextureRevision);
}

void leaveModelFile(Document& document, const std::string& importedFrom)
{
    document.modelFile.clear();
    document.importedFrom = importedFrom;
    document.partlyReadModel.clear();
    document.savedModelRevision = ++document.lastRevision; // which no state ever has
}

void leaveTextureFile(Document& document)
{
    document.textureFile.clear();
    document.partlyReadTextures.clear();
    document.savedTextureRevision = ++document.lastRevision;
}

void notePartlyRead(Document& document, ChangeKind kind, const std::string& path)
{
    const bool isModel = kind == ChangeKind::openModel;
    (isModel ? document.partlyReadModel : document.partlyReadTextures) = path;
    History& history = document.history;
    if (history.position == 0) return; // memory was short: there is no step back over it
    Step& step = history.steps[history.position - 1];
    (isModel ? step.breaksOffModel : step.breaksOffTextures) = true;
}

void markModelSaved(Document& document)
{
    document.savedModelRevision = document.modelRevision;
    // What was saved there before is no longer what a step across an opening leads back to.
    for (Step& step : document.history.steps)
        if (step.opensModel && isSameFile(step.otherModelFile.path, document.modelFile))
            step.otherModelFile.saved = document.modelRevision;
}

void markTexturesSaved(Document& document)
{
    document.savedTextureRevision = document.textureRevision;
    for (Step& step : document.history.steps)
        if (step.opensTextures && isSameFile(step.otherTextureFile.path, document.textureFile))
            step.otherTextureFile.saved = document.textureRevision;
}

EditOutcome change(Document& document, Word name, const std::function<EditOutcome()>& edit,
                   ChangeKind kind)
{
    return record(document, name, edit, kind, Recording::newStep);
}

EditOutcome changeModel(Document& document, Word name, ModelEdit edit,
                        const std::function<void(Model&)>& action)
{
    return change(document, name, [&] {
        const Message message = rememberModel(document.undo, document.model, edit);
        action(document.model);
        return EditOutcome{message, Message::none};
    });
}

EditOutcome undoLastEdit(Document& document)
{
    const bool texturesEdited = isTextureEdit(document.undo);
    const EditOutcome outcome = record(
        document, Word::stepUndo,
        [&] {
            return EditOutcome{Message::none,
                               undoEdit(document.undo, document.model, document.textures)};
        },
        ChangeKind::edit, Recording::mayBeAStep);
    // Undo counts as an edit of the list even where it leads back to what was saved.
    if (texturesEdited) markTexturesChanged(document);
    return outcome;
}

bool canStep(const Document& document, Direction direction)
{
    const History& history = document.history;
    return direction == Direction::back ? history.position > 0
                                        : history.position < history.steps.size();
}

Word stepName(const Document& document, Direction direction)
{
    assert(canStep(document, direction));
    const History& history = document.history;
    return history.steps[direction == Direction::back ? history.position - 1 : history.position]
        .name;
}

bool takeStep(Document& document, Direction direction)
{
    assert(canStep(document, direction));
    History& history = document.history;
    const bool back = direction == Direction::back;
    Step& step = history.steps[back ? --history.position : history.position++];
    applyStep(step, direction, document.model, document.textures);
    setRevisions(document, step, direction);
    exchangeFile(document, step);
    undoClear(document.undo);
    return step.opensModel;
}

} // namespace facetor
