#include "commands.h"

#include "outputs.h"

namespace facetor {

int runScene(Run& run, const SceneSettings& scene, const std::string& output)
{
    if (const int status = checkOutputKind(run, output, "scene", "sal"); status != exitDone)
        return status;
    return writeOutput(run, {output, formatSceneImage(scene), {}});
}

} // namespace facetor
