#pragma once

namespace engine {

/// The backlash (play) of a gear, in steps. A move must end upwards with the play taken up. A move that would
/// not do so first goes below its target ("dip") and then comes back up.
class Backlash {
  public:
    /// `play` in steps, 0 for none. Assumes that no play is taken up yet.
    void setPlay(int play);
    int play() const { return play_; }

    /// The engine has made one step up (+1) or down (-1).
    void stepped(int direction);

    /// The first leg of a move by `steps` (positive upwards). All values are steps from the engine's
    /// position. The leg ends at the target or below it, by the play at most; it equals `steps` if no dip is
    /// needed. `floor` is the lowest allowed position and limits the dip.
    int dip(int steps, int floor) const;
    /// Whether the last steps have taken up all play upwards.
    bool takenUp() const { return taken_ >= play_; }
    /// Whether the last step went down; false if none was made.
    bool wentDown() const { return down_; }

  private:
    int play_ = 0;
    int taken_ = 0; // steps of play taken up since the engine last went down, 0 to play_
    bool down_ = false;
};

} // namespace engine
