#include "commands.h"

#include "base/text.h"
#include "exchange/foreign_file.h"
#include "exchange/html_report.h"
#include "input_file.h"
#include "outputs.h"

#include <filesystem>

namespace facetor {

int runReport(Run& run, const std::vector<std::string>& paths, float scale)
{
    if (paths.size() < 2 || paths.size() > 3)
        return reportWrongCommandLine(
            run, "report needs a model, perhaps its texture list, and an output; see facetor-cli "
                 "report --help");
    if (const int status = checkOutputKind(run, paths.back(), "report", "html"); status != exitDone)
        return status;
    InputFile files[2];
    constexpr FileKind kinds[] = {FileKind::model, FileKind::textures};
    constexpr const char* missing[] = {"no model", "no texture list"};
    for (std::size_t i = 0; i + 1 < paths.size(); ++i) {
        Message message = readInputFile(run, files[i], paths[i]);
        if (message == Message::none && files[i].kind != kinds[i]) {
            files[i].reason.text = missing[i];
            message = Message::formatNotSupported;
        }
        if (message != Message::none) return reportFailure(run, paths[i], message, files[i].reason);
    }
    const bool hasList = paths.size() == 3;
    const auto nameOf = [](const std::string& path) {
        return displayName(path.substr(folderOf(path).size()));
    };
    Bytes page;
    const Message message =
        formatReport(page, {files[0].model, hasList ? &files[1].textures : nullptr,
                            nameOf(paths[0]), hasList ? nameOf(paths[1]) : std::string(), scale});
    if (message != Message::none) return reportFailure(run, paths[0], message);
    return writeOutput(run, {paths.back(), std::move(page), {}});
}

} // namespace facetor
