// Services the main dispatch queue from the event loop of a plain Node.js process, where nobody else does.
// On macOS four functions need it: captureDisplay, captureRegion, listInstalledApps and openApp. A Cocoa
// application, Electron for one, services the queue itself. On Linux this does nothing.

/** Begins to service the queue. It does not keep the process alive. */
export function start(): void;

/** Ends it. */
export function stop(): void;
