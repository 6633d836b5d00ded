#pragma once

namespace engine {

/// The play of a gear, in steps. A position counts as reached from below alone: a move that does not end
/// upwards with the play taken up dips below its target first and comes back up.
class Backlash {
  public:
    /// `play` in steps, 0 for none. At the start nothing is known, so that the whole play is to be taken up.
    void setPlay(int play);
    int play() const { return play_; }

    /// The engine has made one step up (+1) or down (-1).
    void stepped(int direction);

    /// Where a move by `steps` (above 0 upwards) has to go first, in steps from where the engine stands: at
    /// or below the target, by the play at most. `floor` is the lowest place it may go to, in steps from
    /// where it stands; a dip is cut there. Equal to `steps` where no dip is needed.
    int dip(int steps, int floor) const;
    /// Whether the last steps have taken up all play upwards.
    bool takenUp() const { return taken_ >= play_; }

  private:
    int play_ = 0;
    int taken_ = 0; // steps of play taken up since the engine last went down, 0 to play_
};

} // namespace engine
