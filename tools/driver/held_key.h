#pragma once

#include "driver/running_editor.h"

#include <gtest/gtest.h>

namespace facetor {

/// Holds a key of the keyboard down for a scope, as the editor's thread sees it.
class HeldKey {
public:
    HeldKey(const RunningEditor& editor, WORD key) : editor_(editor), key_(key) { send(0, true); }
    ~HeldKey() { send(KEYEVENTF_KEYUP, false); }
    HeldKey(const HeldKey&) = delete;
    HeldKey& operator=(const HeldKey&) = delete;

private:
    void send(DWORD flags, bool down) const
    {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key_;
        input.ki.dwFlags = flags;
        // Again if need be: a display that learns a moment later that the focus has moved resets
        // its keys to those of the real keyboard.
        EXPECT_TRUE(waitUntil([&] {
            SendInput(1, &input, sizeof input);
            return editor_.ask([&](Editor&) { return (GetAsyncKeyState(key_) < 0) == down; });
        }));
    }

    const RunningEditor& editor_;
    WORD key_;
};

} // namespace facetor
