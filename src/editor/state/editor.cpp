#include "state/editor.h"

#include <cassert>

namespace facetor {

namespace {

Editor* runningEditor = nullptr;

} // namespace

Editor& theEditor()
{
    assert(runningEditor);
    return *runningEditor;
}

void setTheEditor(Editor* editor)
{
    runningEditor = editor;
}

} // namespace facetor
