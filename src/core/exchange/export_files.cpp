#include "exchange/export_files.h"

#include "base/beside_file.h"
#include "base/file.h"
#include "base/new_folders.h"

#include <filesystem>
#include <system_error>

namespace facetor {

std::vector<std::string> standingFiles(const std::string& folder,
                                       std::span<const ExportedFile> files)
{
    std::vector<std::string> standing;
    for (std::size_t i = 1; i < files.size(); ++i) {
        const auto path = toPath(folder + files[i].name);
        std::error_code error;
        if (path && std::filesystem::exists(*path, error)) standing.push_back(files[i].name);
    }
    return standing;
}

Message writeExport(const std::string& folder, std::span<const ExportedFile> files, Reason& reason)
{
    NewFolders folders;
    std::vector<FileToWrite> outputs;
    for (const ExportedFile& file : files) {
        if (const std::size_t end = file.name.rfind('/'); end != std::string::npos) {
            if (!folders.make(folder + file.name.substr(0, end))) {
                reason.text = file.name.substr(0, end) + ": the folder cannot be made";
                return Message::cannotCreateFile;
            }
        }
        outputs.push_back({folder + file.name, file.bytes});
    }
    std::size_t failed = 0;
    std::string cause;
    const Message message = writeFiles(outputs, &failed, &cause);
    if (message == Message::none)
        folders.keep();
    else
        reason.text = files[failed].name + ": " + cause;
    return message;
}

} // namespace facetor
