// Services the main dispatch queue from the event loop of a plain Node.js process, where nobody else does.
// On macOS four functions need it: captureDisplay, captureRegion, listInstalledApps and openApp. A Cocoa
// application, Electron for one, services the queue itself. On Linux this does nothing.

/**
 * Begins to service the queue: every few milliseconds, and only while a promise of deskhand's is pending,
 * that of a worker thread, too. Does not keep the process alive.
 *
 * Starts are counted: the queue is serviced until {@link stop} was called as often. So whoever needs it
 * for a while can start and stop it without regard to others.
 *
 * Throws an `Error` when the binary cannot be loaded (its code is `ERR_DESKHAND_LOAD`), and in a worker
 * thread: only the main thread can service the queue.
 */
export function start(): void;

/**
 * Undoes one {@link start}; without one it does nothing. Promises that are pending when the last is undone
 * end with their timeout.
 */
export function stop(): void;
