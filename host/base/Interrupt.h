#pragma once

namespace zelm::host {

/// While one lives, a wish to end (Ctrl-C, a signal to terminate or hang up) is noted rather than obeyed, so that what
/// is being written ends with a whole line.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// The signal that came, 0 if none did.
    static int signal();
};

} // namespace zelm::host
