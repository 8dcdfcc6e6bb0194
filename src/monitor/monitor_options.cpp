#include "monitor/monitor_options.h"

#include <array>
#include <utility>

namespace facetor {

bool readArguments(MonitorOptions& options, const std::vector<std::string>& arguments,
                   std::string& wrong)
{
    const std::array<std::pair<const char*, std::string*>, 3> values{
        {{"--folder", &options.folder}, {"--command", &options.command}, {"--log", &options.log}}};
    const std::array<std::pair<const char*, bool*>, 2> flags{
        {{"--hidden", &options.hidden}, {"--once", &options.once}}};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        bool known = false;
        for (const auto& [name, flag] : flags)
            if (arguments[i] == name) *flag = known = true;
        for (const auto& [name, value] : values) {
            if (arguments[i] != name) continue;
            if (i + 1 == arguments.size()) {
                wrong = arguments[i] + " needs a value";
                return false;
            }
            *value = arguments[++i];
            known = true;
            break;
        }
        if (known) continue;
        wrong = arguments[i] +
                " is not known; --folder DIR, --command LINE, --log FILE, --hidden, --once are";
        return false;
    }
    return true;
}

std::string commandLineFor(const std::string& command, const std::string& path)
{
    return command + " \"" + path + "\""; // a path has no quote in it
}

std::string copyName(const std::string& path, const std::string& moment, int milliseconds)
{
    std::string thousandths = std::to_string(milliseconds);
    thousandths.insert(0, 3 - thousandths.size(), '0');
    return moment + '-' + thousandths + '-' + path.substr(path.find_last_of("\\/") + 1);
}

} // namespace facetor
