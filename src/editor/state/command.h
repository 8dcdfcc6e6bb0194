#pragma once

#include <windows.h>

#include <cstdint>

namespace facetor {

struct Editor;

/// The window in which a command is given. Some numbers mean one thing in one and another in
/// another.
enum class CommandWindow : std::uint8_t { main, textures, hierarchy };

enum class CommandOutcome {
    done,
    abandoned, ///< the user cancelled, or a message has been shown
    unsaved,   ///< done, and what it brought is in no file of ours: changed flags stay as it left
               ///< them
};

/// Runs a command by its number. `argument` is the message's second one; only commands without a
/// menu item take one. False for a number that the window does not know.
using CommandRunner = bool (*)(Editor& editor, CommandWindow window, int number, LPARAM argument);

/// Whether an operation that would lose unsaved changes goes on.
enum class Decision { goOn, stay };

} // namespace facetor
