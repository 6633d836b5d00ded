#pragma once

#include "engine/motion.h"

#include <array>
#include <functional>

namespace engine {

/// Jogging by the four letters of General Settings, in the main window. An engine runs while its letter is
/// held: slowly, or fast with Shift; the speed that was selected comes back. With an increment chosen a press
/// moves by it, at the speed that is selected. Both letters of an engine at
/// once stop it until both are up. A letter that is bound twice moves nothing, and neither does an empty one.
class JogKeys {
  public:
    JogKeys(form::Form1& form, Motion& motion);

    /// A letter 'A' to 'Z' goes down or up; repeats are not told. `shift` chooses the fast speed.
    void keyDown(char letter, bool shift);
    void keyUp(char letter);
    /// The window has lost the keyboard: as if all letters had been released.
    void releaseAll();

    /// A letter starts a move while automatic recall is on.
    std::function<void()> onSemiAuto;

  private:
    struct Key {
        const Side* side;
        int direction;
        const std::string* letter;
        bool held = false;
    };
    /// The key of a letter; null, after a notice where it is bound twice, when it moves nothing.
    Key* keyOf(char letter);
    bool otherIsHeld(const Key& key) const;
    void start(Key& key, bool shift);
    void release(Key& key);

    form::Form1& form_;
    Motion& motion_;
    Sides sides_;
    std::array<Key, 4> keys_;
    std::array<bool, 2> fastBefore_{};
};

} // namespace engine
