#pragma once

#include <string>
#include <vector>

namespace facetor {

/// What the monitor does with each image that it accepts, and how it shows itself.
struct MonitorOptions {
    std::string folder;  ///< for copies; empty for none
    std::string command; ///< run for each, with the path added; empty for none
    std::string log;     ///< a file that a line is added to for each image; empty for none
    bool hidden = false; ///< no window on the screen: for build servers
    bool once = false;   ///< ends after the first image and its command
};

/// Reads the arguments over the options: --folder DIR, --command LINE, --log FILE, --hidden,
/// --once. False, with what is wrong, for others and for a value that is missing.
bool readArguments(MonitorOptions& options, const std::vector<std::string>& arguments,
                   std::string& wrong);

/// The command line that runs `command` on a file: the path is added in quotes.
std::string commandLineFor(const std::string& command, const std::string& path);

/// The name of an image's copy: the moment, then the name that it has, as
/// "20261122-083501-042-devMX3.sal". `milliseconds` 0-999.
std::string copyName(const std::string& path, const std::string& moment, int milliseconds);

} // namespace facetor
