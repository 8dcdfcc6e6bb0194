#include "cli/run_program.h"

#include "base/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <sstream>

namespace facetor {

namespace {

std::string contentsOf(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

/// Starts the built facetor-cli; none when it did not start.
std::optional<pid_t> start(const std::vector<std::string>& arguments,
                           posix_spawn_file_actions_t& actions)
{
    std::vector<std::string> words{FACETOR_CLI};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t process = 0;
    const int spawned =
        posix_spawn(&process, FACETOR_CLI, &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(spawned, 0) << FACETOR_CLI;
    return spawned == 0 ? std::optional(process) : std::nullopt;
}

} // namespace

ProgramRun runProgram(const std::vector<std::string>& arguments, const std::string& output,
                      const std::string& input)
{
    const TemporaryFolder folder;
    const std::string kept = folder.file("output"), errors = folder.file("errors");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const int flags = O_WRONLY | O_CREAT | O_TRUNC;
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO,
                                     input.empty() ? "/dev/null" : input.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO,
                                     (output.empty() ? kept : output).c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), flags, 0600);
    const std::optional<pid_t> process = start(arguments, actions);
    int status = 0;
    if (process) waitpid(*process, &status, 0);
    return {process && WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentsOf(kept),
            contentsOf(errors)};
}

} // namespace facetor
