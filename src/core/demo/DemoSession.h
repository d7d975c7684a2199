#pragma once

// The session a demo installation opens with, so that the first start shows something to
// compare: folder 1 with the two Silverstone runs and the demo's map of the circuit, each fast
// lap with the speed and the throttle in bands of their own, and the time graph open.

#include <QString>

class Messages;

// Writes that session into the home's settings unless a session is there already. False when
// the demo outings can't be loaded (their message went to `messages`).
bool WriteDemoSession(const QString& home, Messages& messages);

// True when the home's session is the demo's as WriteDemoSession leaves it: folder 1 alone, with
// the two demo runs and the demo's map.
bool HoldsDemoSession(const QString& home, Messages& messages);
