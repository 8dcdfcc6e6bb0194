#pragma once

#include "base/message.h"

#include <string>

namespace facetor {

// Exit statuses of every command.
inline constexpr int exitDone = 0;
inline constexpr int exitFailed = 1;
inline constexpr int exitWrongCommandLine = 2;

/// How much a command says about work that goes well.
enum class Progress { shown, silent };

/// Writes "facetor-cli: PATH: TEXT" to the error stream, with " (reason)" behind it when there is
/// one. Returns exitFailed.
int reportFailure(const std::string& path, Message message, const std::string& reason = {});

/// Writes "facetor-cli: TEXT" to the error stream. Returns exitWrongCommandLine.
int reportWrongCommandLine(const std::string& text);

/// For commands whose result is what they print: `status`, or exitFailed after a line on the error
/// stream when the standard output did not take all of it.
int finishOutput(int status);

/// Says that a file was written.
void reportWritten(const std::string& path, Progress progress);

} // namespace facetor
