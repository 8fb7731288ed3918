#pragma once

namespace kestrova {

/// Lets this process do without the session bus if that takes connections but does not answer them: the
/// libraries of the window would wait for it without end. To be called at the start of main, while there is
/// no other thread.
void avoidSilentSessionBus();

}  // namespace kestrova
