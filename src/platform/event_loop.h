// The one event loop of the main thread, and the pump that keeps the window system alive inside a long operation.
#pragma once

#include <cstddef>
#include <functional>

namespace platform {

/// Makes the application object: style, palette, fonts, translations. Once, first thing on the main thread.
/// The argument vector must outlive the program.
void ApplicationInit(int& argc, char** argv);
/// Runs the event loop until ApplicationQuit; returns its exit status.
int ApplicationRun();
/// Ends ApplicationRun from a turn of the loop, never from a deep stack.
void ApplicationQuit(int status);
/// Called when the desktop ends the session or a signal asks the program to end; main thread, from the loop.
void ApplicationOnQuitRequest(std::function<void()> handler);

/// Called when the desktop asks the running program to show itself, as when the user starts it again; main thread.
/// Without a session bus nobody asks. An empty handler ends it.
void ApplicationOnReopenRequest(std::function<void()> handler);

/// Handles everything that waits in the window system's queue, and returns. Main thread.
void EventLoopPump();
/// The same for whoever asks at every step of its work: nobody notices an event a millisecond late, and a turn of the
/// loop costs a system call, as much as a step. So it looks at the queue when gEventLoopOftenUs have passed and it is
/// asked a second time, or when twice that has passed, or a call was posted. Main thread.
void EventLoopPumpOften();
/// A millisecond; 0 for a test that wants to come between any two steps.
extern unsigned gEventLoopOftenUs;
/// For work in one piece that nothing may come between: lets the windows draw and resize themselves if the last time is
/// long enough ago for a person to notice, and nothing else. Keys, clicks, timers, sockets and posted calls wait. To be
/// called often; it costs a look at the clock. On other threads it does nothing.
void EventLoopDraw();
/// True inside EventLoopDraw. The window system calls for a drag at once, whatever else is to wait.
bool EventLoopIsDrawing();
/// How long a wait that stays in one piece may last between two calls of EventLoopDraw.
constexpr unsigned kEventLoopDrawMs = 40;
/// Runs the loop until one of `count` descriptors is readable, an event was handled, or `ms` have passed.
/// Returns false when the time ran out. Main thread.
bool EventLoopWait(const int* descriptors, size_t count, unsigned ms);
/// Runs `call` on the main thread from the loop. Any thread.
void EventLoopPost(std::function<void()> call);
bool IsMainThread();

struct Timer;
/// A one-shot timer that calls once on the main thread. Owned by the caller until TimerDestroy, which also cancels.
/// Main thread.
Timer* TimerCreate(std::function<void()> call);
/// Starts it, or moves its next firing.
void TimerArm(Timer* timer, unsigned ms);
void TimerDestroy(Timer* timer);

}  // namespace platform
