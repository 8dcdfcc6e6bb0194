#pragma once

#include <string>
#include <vector>

namespace facetor {

/// What one run of facetor-cli did.
struct ProgramRun {
    int status; ///< exit status, -1 when it was ended by a signal
    std::string output;
    std::string errors;
};

/// Runs the built facetor-cli with these arguments and waits for its end. Its output goes to the
/// file `output`, where one is named, and is none then; its standard input is the file `input`.
ProgramRun runProgram(const std::vector<std::string>& arguments, const std::string& output = {},
                      const std::string& input = {});

} // namespace facetor
