#pragma once

#include "monitor/monitor.h"

namespace facetor {

/// An image that an editor sends with WM_COPYDATA: its path, with its terminator, under the
/// editor's mark. Checks and lists it. The editor waits for the result, 0 when it was accepted and
/// 1 when it was refused: copies and commands come later, with imageReceived.
LRESULT receiveCopyData(Monitor& monitor, const COPYDATASTRUCT& data);

/// Copies an accepted image and has the command run on the copy. Without a folder for copies that
/// is one in the system's folder for temporary files, where it stays for a while after the command:
/// some only hand the path to a program that goes on.
void handOn(Monitor& monitor, std::size_t number);

/// Says that the command on an image has begun.
void beginCommand(Monitor& monitor, std::size_t number);

/// Removes the copies that nobody asked to keep, but for that of the command that runs.
void removeTemporaries(Monitor& monitor);

/// Shows what a command has written and how it has ended, or that it goes on by itself.
void endCommand(Monitor& monitor, const CommandRunner::Result& result);

} // namespace facetor
