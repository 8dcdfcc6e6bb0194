#include "commands.h"

namespace facetor {

int runScene(const SceneSettings& scene, const std::string& output, Progress progress)
{
    if (const Message message = writeSceneImage(scene, output); message != Message::none)
        return reportFailure(output, message);
    reportWritten(output, progress);
    return exitDone;
}

} // namespace facetor
