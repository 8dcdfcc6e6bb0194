#pragma once

namespace facetor {

/// The command of a key of the model view, held alone or with Shift: a letter, or the system's
/// number for a digit of the number pad (0x60 to 0x69). 0 for every other key.
int viewKeyCommand(unsigned key, bool shift);

} // namespace facetor
