#include "outputs.h"

#include "base/beside_file.h"
#include "base/file.h"
#include "base/text.h"
#include "depfile.h"
#include "report.h"

#include <cerrno>
#include <filesystem>
#include <optional>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace facetor {

namespace {

/// Whether two paths lead to one file, which need not be there yet.
bool isSameFile(const std::string& a, const std::string& b)
{
    const auto nativeA = toPath(a), nativeB = toPath(b);
    if (!nativeA || !nativeB) return a == b;
    std::error_code error;
    if (std::filesystem::equivalent(*nativeA, *nativeB, error) && !error) return true;
    const auto fullA = std::filesystem::weakly_canonical(*nativeA, error);
    if (error) return a == b;
    const auto fullB = std::filesystem::weakly_canonical(*nativeB, error);
    return error ? a == b : fullA == fullB;
}

/// Why an output must not be written; empty when it may be.
std::string conflict(const Run& run, std::span<const Output> outputs, std::size_t index)
{
    const Output& output = outputs[index];
    for (std::size_t i = 0; i < index; ++i)
        if (output.path == outputs[i].path ||
            (output.path != standardStream && isSameFile(output.path, outputs[i].path)))
            return "it is another output, too";
    if (output.path == standardStream) return {};
    if (!output.replaces.empty() && isSameFile(output.path, output.replaces)) return {};
    for (const std::string& input : run.filesRead)
        if (isSameFile(output.path, input)) return "it is also an input";
    return {};
}

bool isUnchanged(const Output& output)
{
    const std::optional<Bytes> old = readFile(output.path, output.bytes.size());
    return old && *old == output.bytes;
}

int writeStandardOutput(const Output& output)
{
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    errno = 0;
    const bool written =
        std::fwrite(output.bytes.data(), 1, output.bytes.size(), stdout) == output.bytes.size();
    if (written && std::fflush(stdout) == 0) return 0;
    return errno != 0 ? errno : EIO;
}

void reportDone(const Run& run, const Output& output, const char* what)
{
    if (run.progress == Progress::shown) std::printf("%s %s\n", what, output.path.c_str());
}

} // namespace

int writeOutputs(const Run& run, std::span<const Output> given)
{
    std::vector<Output> outputs(given.begin(), given.end());
    if (!run.depfile.empty())
        outputs.push_back({run.depfile, formatMakeRule(run.filesRead, given), {}});
    for (std::size_t i = 0; i < outputs.size(); ++i)
        if (const std::string why = conflict(run, outputs, i); !why.empty())
            return reportFailure(run, outputs[i].path, Message::cannotCreateFile, {why, {}});

    std::vector<FileToWrite> files;
    std::vector<bool> unchanged;
    const Output* standard = nullptr;
    for (const Output& output : outputs) {
        unchanged.push_back(false);
        if (output.path == standardStream)
            standard = &output;
        else if (run.ifChanged && isUnchanged(output))
            unchanged.back() = true;
        else
            files.push_back({output.path, output.bytes});
    }
    std::size_t failed = 0;
    Reason reason;
    if (const Message message = writeFiles(files, &failed, &reason.text); message != Message::none)
        return reportFailure(run, files[failed].path, message, reason);
    if (standard)
        if (const int error = writeStandardOutput(*standard); error != 0)
            return reportFailure(run, "standard output", Message::cannotCreateFile,
                                 {systemReason(error), {}});
    if (!standard)
        for (std::size_t i = 0; i < given.size(); ++i)
            reportDone(run, outputs[i], unchanged[i] ? "unchanged" : "wrote");
    return exitDone;
}

int writeOutput(const Run& run, Output output)
{
    return writeOutputs(run, {&output, 1});
}

std::string_view outputKind(const Run& run, const std::string& path)
{
    return path == standardStream ? std::string_view(run.standardKind) : extensionOf(path);
}

int checkOutputOptions(const Run& run, const std::string& path)
{
    if (path != standardStream && !run.standardKind.empty())
        return reportWrongCommandLine(run, "--to is for the standard output, -; \"" + path +
                                               "\" says by its extension what it is");
    if (path == standardStream && !run.depfile.empty())
        return reportWrongCommandLine(run, "--depfile needs an output that is a file");
    return exitDone;
}

int checkOutputKind(const Run& run, const std::string& path, std::string_view command,
                    std::string_view extension)
{
    if (const int status = checkOutputOptions(run, path); status != exitDone) return status;
    const std::string_view kind = outputKind(run, path);
    if (equalIgnoringCase(kind, extension) || (path == standardStream && kind.empty()))
        return exitDone;
    const std::string what = path == standardStream ? "--to " + std::string(kind) : path;
    return reportWrongCommandLine(run, std::string(command) + " writes ." + std::string(extension) +
                                           " files only, not \"" + what + "\"");
}

std::string nameAfter(const std::string& input, std::string_view extension)
{
    const std::string stem = input == standardStream ? "stdin" : std::string(cutExtension(input));
    return stem + '.' + std::string(extension);
}

std::FILE* reportStream(const std::string& output)
{
    return output == standardStream ? stderr : stdout;
}

} // namespace facetor
