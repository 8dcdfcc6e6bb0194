#pragma once

#include <string>

namespace facetor {

/// Runs facetor-cli and waits for its end. Returns its exit status; -1 when it does not start or
/// end.
int runCommandLineTool(const std::string& arguments);

} // namespace facetor
