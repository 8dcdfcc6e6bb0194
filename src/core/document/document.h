#pragma once

#include "document/model_edit.h"
#include "document/step.h"
#include "document/texture_edits.h"
#include "document/undo.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

namespace facetor {

/// The changes that can be taken back, oldest first.
struct History {
    std::deque<Step> steps;
    std::size_t position = 0;       ///< steps before it are done, the others taken back
    std::size_t size = 0;           ///< of all steps, as sizeOf() counts
    std::size_t limit = 256u << 20; ///< in bytes; when it is exceeded the oldest steps go
};

/// What is being edited. Whatever changes the model or the texture list goes through change().
struct Document {
    Model model;
    TextureList textures;
    std::string modelFile;    ///< empty for a model that has no file yet
    std::string importedFrom; ///< another program's file that the model was made of; else empty
    std::string textureFile;  ///< where the list was opened or saved last; empty until then
    /// The file whose reading broke off and left a part in the model, or in the list, that no save
    /// has taken since: what is saved now is not what the document's own file holds. Else empty.
    std::string partlyReadModel, partlyReadTextures;
    Revision modelRevision = 0, savedModelRevision = 0;
    Revision textureRevision = 0, savedTextureRevision = 0;
    Revision lastRevision = 0; ///< the newest one that was given out
    UndoSlot undo;             ///< of Undo, which knows one edit
    History history;           ///< of Step Backward and Step Forward
    Snapshot before;           ///< of the change that is under way
    bool changing = false;     ///< a change is under way
};

/// Whether two models, or two lists, have one file once a save gives both paths its extension.
/// False when `a` is empty.
bool isSameFile(std::string_view a, std::string_view b);

/// Makes the start-up cube and an empty texture list. outOfMemory when memory is short.
Message startDocument(Document& document);

/// Frees both, the undo slot and the history.
void releaseDocument(Document& document);

// The changed flags: what is not as it stands in its file. Stepping back to what was saved takes
// the flag away.

bool isModelChanged(const Document& document);
bool areTexturesChanged(const Document& document);
/// Sets the flag without an edit, for what commands do to it whatever came of them.
void markModelChanged(Document& document);
void markTexturesChanged(Document& document);
void markModelSaved(Document& document);
void markTexturesSaved(Document& document);

/// What a change is for the files: an edit, or the contents of other files, whose paths the change
/// sets. With the former the changed flags are set, with the latter they are left to the caller.
/// An opening that fails half-way leaves revisions and paths as they are; its outcome says so.
enum class ChangeKind { edit, openModel, openTextures, openBoth };

/// For a change that brings a model or a texture list which is in no file: nothing is saved of it.
/// Within the change; `importedFrom` as Document has it.
void leaveModelFile(Document& document, const std::string& importedFrom);
void leaveTextureFile(Document& document);

/// Carries out one change of model and texture list and keeps it as a step of the history: the only
/// way to change either. `edit` may fail half way; what it changed is kept all the same. A change
/// that changes nothing is no step. `name` tells the user what a step is. Returns what `edit` does.
/// When memory is short the edit goes ahead and the history is empty. A change within another one,
/// as when a dialog of it lets messages through, becomes a part of that.
EditOutcome change(Document& document, Word name, const std::function<EditOutcome()>& edit,
                   ChangeKind kind = ChangeKind::edit);

/// change() of the model, kept in the undo slot too. The outcome's `undo` is outOfUndoMemory when
/// memory is short for that; the edit goes ahead.
EditOutcome changeModel(Document& document, Word name, ModelEdit edit,
                        const std::function<void(Model&)>& action);

/// Notes that what a file's reading left behind is in the document, after a change() whose outcome
/// is brokenOff; a step back over it takes the note away. Until then it stays to the next save.
void notePartlyRead(Document& document, ChangeKind kind, const std::string& path);

/// Undo, which toggles between the states before and after the last edit of the model, or brings
/// textures back once (document/undo_kinds.h). A step itself, unless it leads to where the step
/// before or behind leads: then that one is taken back or done again.
EditOutcome undoLastEdit(Document& document);

bool canStep(const Document& document, Direction direction);
/// The name of the step that is taken back or done again next. Needs canStep().
Word stepName(const Document& document, Direction direction);
/// Takes the last step back, or does the next one again. The undo slot is empty afterwards, since
/// what it held belongs to another state. Returns whether a model was opened by that step, which is
/// then another one than before. Needs canStep().
bool takeStep(Document& document, Direction direction);

} // namespace facetor
