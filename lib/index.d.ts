/**
 * Thirty functions that operate the desktop as a person would. Four return promises: {@link captureDisplay},
 * {@link captureRegion}, {@link listInstalledApps} and {@link openApp}. On macOS their work goes through the
 * main dispatch queue, which the host must service: every Cocoa application does, Electron for one; a plain
 * Node.js process starts `deskhand/run-loop`. All others have done their work when they return.
 *
 * **Spaces and units.** Positions and sizes of displays are in points, in one global desktop space whose
 * origin is the top-left corner of the primary display, y down; displays to the left or above have
 * negative coordinates. Sizes of pictures are in pixels. On X11 a point is a pixel.
 *
 * **Mouse and keyboard.** The functions post what a person's hands would, and return `true` once that is
 * done; whether a program acted on it they do not know. An event that the system cannot make is
 * skipped; without its permission (Accessibility on macOS) it ignores them all. Positions are in the
 * global desktop space and go to the system as they are, fractions and any other number. Pauses are
 * part of the gesture and block the calling thread; the times below are those of the pauses alone.
 * On X11 events go through XTEST, positions to the nearest pixel, and modifiers are keys that are really
 * pressed, once before the gesture and released after it. Where the user holds modifiers himself, a click, a
 * turn of the wheel, a chord or a text takes up to 1.1 seconds more: see docs/platforms.md.
 *
 * **Conversion.** Where the documentation of a mouse function, of {@link scroll} or of {@link keyHold} says that
 * an argument is converted, its type is not checked first. One of the wrong type counts as 0 or as an empty
 * string, the events are posted, and then the call throws: a `TypeError` with Node-API's own message,
 * `"A number was expected"` or `"A string was expected"`, the first one when there are several.
 *
 * **Servers that hang.** On X11 a call that asks the server something, or posts events, gives up after about two
 * seconds when no answer comes; one that looks at displays after a few. Without any server nothing waits.
 *
 * **Permissions.** macOS asks the user for two: Accessibility for mouse and keyboard, Screen Recording for
 * pictures. Nothing else here needs one. X11 knows none: what the server lets us do is permitted.
 *
 * **Loading.** Where no binary loads, the first `require` or `import` throws an `Error` with the `code`
 * `"ERR_DESKHAND_LOAD"`: its `message` says what was tried, why each failed and what to do, its `hint` the last
 * part alone, and its `cause` is what the loader said. Loading itself starts no thread and asks for nothing.
 *
 * @packageDocumentation
 */

/** A size in whole pixels. */
export interface PixelSize {
  width: number;
  height: number;
}

/** An attached display. The whole of it is described, menu bars and docks included. */
export interface DisplayRecord {
  /** Display identifier: an unsigned 32-bit integer, the same as long as the display is attached. */
  id: number;
  /** Width in points. */
  width: number;
  /** Height in points. */
  height: number;
  /** Whether this is the main display. */
  isMain: boolean;
  /** Left edge in the global desktop space, points. */
  originX: number;
  /** Top edge in the global desktop space, points. */
  originY: number;
  /** Pixels per point: 1 or 2 on macOS, always 1 on X11. */
  scaleFactor: number;
  /** The display's name; `"Display"` when it has none. */
  name: string;
}

/** A running application. */
export interface AppRecord {
  /**
   * Its bundle identifier. On X11 the id of its desktop entry (`org.gnome.Calculator`), else the class
   * of its windows (`XTerm`).
   */
  bundleId: string;
  /** Its name in the user's language; `""` when it has none. */
  displayName: string;
  /** Its process. On X11 0 when nobody knows it. */
  pid: number;
}

/** An application that is installed, running or not. */
export interface InstalledAppRecord {
  /** Its bundle identifier; the same in all copies of it. */
  bundleId: string;
  /** Its name in the user's language. */
  displayName: string;
  /** Where it is: the bundle's folder; on X11 the file of its desktop entry. */
  path: string;
}

/** What an application's name stands for. */
export interface ResolvedApp {
  /** Its bundle identifier. */
  bundleId: string;
  /** Its name in the user's language; what was looked for when the system has no other. */
  displayName: string;
}

/** An ordinary window on the screen. Positions and sizes in points, in the global desktop space. */
export interface WindowRecord {
  /** Bundle identifier of the application that owns it. */
  bundleId: string;
  /** The process that owns it. */
  pid: number;
  /** Left edge, frame included; any number. */
  x: number;
  /** Top edge. */
  y: number;
  /** Width. */
  w: number;
  /** Height. */
  h: number;
  /** The display that holds its centre; the main display when none does. */
  displayId: number;
}

/** A picture of a region. */
export interface RegionCapture {
  /** The picture: JPEG, as base64 without line breaks. */
  base64: string;
  /** Width of the picture in pixels. */
  width: number;
  /** Height of the picture in pixels. */
  height: number;
}

/**
 * A picture of a whole display. The pixel (px, py) shows the global point
 * (originX + px × displayWidth / width, originY + py × displayHeight / height).
 */
export interface DisplayCapture extends RegionCapture {
  /** Width of the display in points. */
  displayWidth: number;
  /** Height of the display in points. */
  displayHeight: number;
  /** Identifier of the display that was captured, which need not be the one asked for. */
  displayId: number;
  /** Left edge of the display in the global desktop space, points. */
  originX: number;
  /** Top edge of the display in the global desktop space, points. */
  originY: number;
}

/**
 * Takes a picture of a whole display, the mouse pointer included, reduced to the size that
 * {@link calculateTargetSize} gives for its pixels.
 *
 * Does not block: the work is done on other threads. On macOS it starts on the main dispatch queue,
 * which the host must service, as every Cocoa application does; the process needs the Screen Recording
 * permission.
 *
 * @param excludeBundleIds Bundle identifiers of applications to leave out, compared exactly. Elements
 *   that are not strings are skipped; identifiers of applications that do not run have no effect. All
 *   windows of these applications are absent, and what lies behind them shows. On X11 the identifier is
 *   that of the desktop entry, else the class of the windows; the first picture that leaves something
 *   out may take a quarter of a second longer, while programs paint what was covered; and the promise is
 *   rejected when something cannot be left out for certain.
 * @param quality JPEG quality factor, above 0 and at most 1. Anything else, except NaN, counts as 0.75.
 * @param displayId Display identifier; 0 or absent: the main display. When no display has it, the
 *   first one that the system reports is captured.
 * @returns Rejects with an `Error`:
 *   - `"Failed to get shareable content"`, with `": "` and the system's description when there is one:
 *     no permission, or on X11 no display, or one that refuses us
 *   - `"No display found"`
 *   - `"Screenshot capture failed"`, with `": "` and a description when there is one
 *   - `"Failed to encode screenshot to JPEG"`
 *   - `"Screenshot capture timed out after 10 seconds"`
 * @throws `Error`: `"captureDisplay(excludeBundleIds: string[], quality?: number, displayId?: number)"`
 *   when the first argument is not an array; what an element's getter throws is passed on.
 */
export function captureDisplay(
  excludeBundleIds: readonly string[],
  quality?: number,
  displayId?: number,
): Promise<DisplayCapture>;

/**
 * Takes a picture of a rectangle of one display, the mouse pointer included, stretched to a size of
 * the caller's choice. Does not block; needs what {@link captureDisplay} needs.
 *
 * @param excludeBundleIds As for {@link captureDisplay}.
 * @param x Left edge of the rectangle in points of the display, from its own top-left corner.
 * @param y Top edge, likewise.
 * @param w Width in points. The rectangle is not checked: on X11 what lies outside of the display is
 *   black, and a rectangle without area, or that is not finite, fails.
 * @param h Height in points.
 * @param outW Width of the picture in pixels; truncated to a 32-bit integer, not checked. A size that no
 *   JPEG can have ends in the encoding failure below; on X11 so does one of over 2^27 pixels.
 * @param outH Height of the picture in pixels, likewise.
 * @param quality As for {@link captureDisplay}.
 * @param displayId As for {@link captureDisplay}.
 * @returns `width` and `height` are `outW` and `outH`. Rejects with an `Error`:
 *   - `"Failed to get shareable content"` and `"No display found"`, as for {@link captureDisplay}
 *   - `"Region capture failed"`, with `": "` and a description when there is one
 *   - `"Failed to encode region screenshot to JPEG"`
 *   - `"Region capture timed out after 10 seconds"`
 * @throws `Error`: `"captureRegion(excludeBundleIds: string[], x, y, w, h, outW, outH, quality?, displayId?)"`
 *   when the first argument is not an array or one of the next six is not a number; what an element's
 *   getter throws is passed on.
 */
export function captureRegion(
  excludeBundleIds: readonly string[],
  x: number,
  y: number,
  w: number,
  h: number,
  outW: number,
  outH: number,
  quality?: number,
  displayId?: number,
): Promise<RegionCapture>;

/**
 * The size to which a picture of `physWidth` × `physHeight` pixels is reduced: no edge above 1568
 * pixels, no more than 1568 tiles of 28 × 28 pixels, the proportions kept. A size within both is
 * returned as it is; 0 × 0 when an edge is below 1. It only computes: nothing is asked of the system.
 *
 * @param physWidth Physical pixels; truncated to a 32-bit integer that wraps around.
 * @param physHeight Likewise.
 * @throws `Error`: `"calculateTargetSize(physWidth: number, physHeight: number)"` when one of them is not
 *   a number.
 */
export function calculateTargetSize(physWidth: number, physHeight: number): PixelSize;

/** A position in the global desktop space, in points; it may be fractional or negative. */
export interface CursorPosition {
  x: number;
  y: number;
}

/**
 * Moves the pointer to a point and clicks there. The second click of a row is a double click to the
 * system, the third a triple one.
 *
 * Blocks for 50 ms after each press and 50 ms between clicks: 50 ms for one click, 150 ms for two,
 * 100 ms more for each further one. Needs Accessibility on macOS. On X11 programs count clicks by themselves,
 * by time and place.
 *
 * @param button `"left"`, `"right"` or `"1"`, `"middle"` or `"2"`, in any case; any other name means the
 *   left button. Spaces are not trimmed. Converted.
 * @param x Points in the global desktop space, from the left edge of the primary display. Converted.
 * @param y Points, from its top edge, downward. Converted.
 * @param clickCount How many clicks; truncated to a 32-bit integer that wraps around. Below 1 only the
 *   pointer is moved; there is no upper limit. Absent or not a number: 1.
 * @param modifiers Names of modifiers joined by `"+"`, which press and release carry: see
 *   {@link keyPress}. Case does not matter, spaces are not trimmed, empty and unknown names are skipped.
 *   Absent or not a string: none.
 * @throws `TypeError`: `"mouseClick requires (button, x, y)"` with fewer than three arguments; nothing is
 *   posted. A conversion error as above, after the events.
 */
export function mouseClick(
  button: string,
  x: number,
  y: number,
  clickCount?: number,
  modifiers?: string,
): true;

/**
 * Moves the pointer to a point, with no button held. Does not pause. Needs Accessibility on macOS. On X11 the
 * server keeps the pointer on its screen, and a coordinate that is not a number moves nothing.
 *
 * @param x Points in the global desktop space. Converted.
 * @param y Likewise, downward.
 * @throws `TypeError`: `"mouseMove requires (x, y)"` with fewer than two arguments; nothing is posted. A
 *   conversion error as above, after the event.
 */
export function mouseMove(x: number, y: number): true;

/**
 * Presses a button at a point, moves to another one in ten even steps, and releases it there. Blocks
 * for 250 ms, whatever the distance. Needs Accessibility on macOS.
 *
 * @param startX Points in the global desktop space. Converted, as the next three.
 * @param startY Likewise, downward.
 * @param endX Likewise. The release is exactly at the end.
 * @param endY Likewise, downward.
 * @param button As for {@link mouseClick}, not converted. Absent or not a string: the left button.
 * @throws `TypeError`: `"mouseDrag requires (startX, startY, endX, endY)"` with fewer than four arguments;
 *   nothing is posted. A conversion error as above, after the events.
 */
export function mouseDrag(
  startX: number,
  startY: number,
  endX: number,
  endY: number,
  button?: string,
): true;

/**
 * Presses a button at a point, in one event: to be sure that the pointer is there, move it first.
 * Does not pause, and the button is held until {@link mouseUp}. Needs Accessibility on macOS. On X11 the pointer
 * is moved there by the press.
 *
 * @param button As for {@link mouseClick}. Converted.
 * @param x Points in the global desktop space. Converted.
 * @param y Likewise, downward.
 * @throws `TypeError`: `"mouseDown requires (button, x, y)"` with fewer than three arguments; nothing is
 *   posted. A conversion error as above, after the event.
 */
export function mouseDown(button: string, x: number, y: number): true;

/**
 * Releases a button at a point, in one event. Does not pause. Needs Accessibility on macOS. On X11 the pointer
 * is moved there by the release.
 *
 * @param button As for {@link mouseClick}. Converted.
 * @param x Points in the global desktop space. Converted.
 * @param y Likewise, downward.
 * @throws `TypeError`: `"mouseUp requires (button, x, y)"` with fewer than three arguments; nothing is
 *   posted. A conversion error as above, after the event.
 */
export function mouseUp(button: string, x: number, y: number): true;

/**
 * Turns the scroll wheel by whole lines, in one event however many they are. Which way a sign scrolls is
 * the system's convention for wheel events, and its user's setting. Needs Accessibility on macOS.
 *
 * On X11 a line is a click of button 4 (up, a positive `deltaY`), 5 (down), 6 (left, a positive `deltaX`) or 7
 * (right): 100,000 of each at most. More than 1,000 may block for up to ten seconds, while the server takes them.
 *
 * @param deltaX Horizontal lines. Converted, to a 32-bit integer: truncated, wrapping around.
 * @param deltaY Vertical lines, likewise.
 * @param x Where to scroll, points in the global desktop space: the pointer is moved there first, which
 *   blocks for 10 ms. Without two numbers `x` and `y` the wheel turns where the pointer is.
 * @param y Likewise, downward.
 * @throws `TypeError`: `"scroll requires (deltaX, deltaY)"` with fewer than two arguments; nothing is
 *   posted. A conversion error as above, after the events.
 */
export function scroll(deltaX: number, deltaY: number, x?: number, y?: number): true;

/**
 * Where the pointer is. It may be handed to any mouse function unchanged. Never fails: 0, 0 when the
 * system does not say. Blocks for the question alone. On macOS no permission is needed.
 */
export function getCursorPosition(): CursorPosition;

/**
 * Types text into whatever has the keyboard focus, whatever the keyboard's layout. A tab is the Tab key;
 * a line feed, a carriage return, or both in this order: `"\r\n"`, is the Return key; every other
 * character is typed as text, control characters too. Does not pause. Needs Accessibility on macOS.
 *
 * On X11 characters that no key of the layout has are lent keys. A text with more than some 76 different ones of
 * this kind waits for the program that reads it; what it does not take within ten seconds is left out, as is
 * what cannot be typed because another process types for as long. Control characters other than tab, line
 * breaks, backspace, escape and delete have no key, and are left out.
 *
 * @param text Any string; on macOS it goes out in runs of 20 UTF-16 units. An empty one does nothing.
 * @throws `TypeError`: `"typeText requires (text: string)"` when it is not a string; nothing is posted.
 */
export function typeText(text: string): true;

/**
 * Presses and releases a key, with modifiers. These travel on the key's own events: no keys of theirs
 * are pressed on macOS. Needs Accessibility there. On X11 it is the key that has the symbol in the active
 * layout, else the one in its place; `fn` has no counterpart, and is ignored.
 *
 * A chord is the name of a key and those of any modifiers, joined by `"+"`: `"cmd+shift+t"`. Case and
 * spaces do not matter (`"A"` is `"a"`, `"page up"` is `"pageup"`). Unknown words are skipped; of several
 * keys the last one counts; modifiers alone are a press of the last one, when it is the last word. Keys
 * are named by their place on the ANSI keyboard:
 *
 * - letters, digits, and ``- = [ ] \ ; ' , . / ` ``; there is no name for a plus or a shifted character
 * - `return` or `enter`, `tab`, `space`, `backspace` or `delete`, `forwarddelete`, `escape` or `esc`,
 *   `home`, `end`, `pageup`, `pagedown`, `help`, `capslock`
 * - `left`, `right`, `up`, `down`, each with or without `arrow` behind it
 * - `f1` to `f20`
 * - keypad: `numpad0` to `numpad9`, `add`, `subtract`, `multiply`, `divide`, `decimal`, `numpadenter`,
 *   `numpadclear`, `numpadequals`
 *
 * Modifiers: `shift`, `lshift`, `rshift`; `control`, `ctrl`, `lctrl`, `rctrl`; `option`, `alt`, `loption`,
 * `roption`; `command`, `cmd`, `meta`, `super`, `lcommand`, `rcommand`; `fn`, `function`. Left and right
 * differ only when the modifier itself is the key.
 *
 * @param chord The chord.
 * @param repeat How often to press and release it; truncated to a 32-bit integer that wraps around, below
 *   2 once; no upper limit. Blocks for 20 ms between two presses. Absent or not a number: once.
 * @throws `TypeError`: `"keyPress requires (chord: string)"` when the chord is not a string.
 * @throws `Error`: `"keyPress: no valid key found in chord '…'"`, with the chord as it was passed. Nothing
 *   is posted in either case.
 */
export function keyPress(chord: string, repeat?: number): true;

/**
 * Presses a chord's key, holds it, and releases it. Blocks for as long. Needs Accessibility on macOS.
 *
 * Types are not checked, and a second error cannot be thrown while one is pending: a chord that is not
 * a string, or one without a key together with a duration that is not a number, **ends the process**
 * with a fatal error of Node-API. Check what you pass.
 *
 * @param chord As for {@link keyPress}. Converted.
 * @param durationMs Milliseconds between press and release, truncated to a 32-bit integer; below 1 none.
 *   Durations above 4,294,967 ms wrap around: the microseconds are counted in 32 bits. Converted.
 * @throws `TypeError`: `"keyHold requires (chord: string, durationMs: number)"` with fewer than two
 *   arguments; nothing is posted. A conversion error as above when only the duration is not a number,
 *   after the key was pressed and released.
 * @throws `Error`: `"keyHold: no valid key found in chord '…'"`, with the chord as it was passed; nothing
 *   is posted.
 */
export function keyHold(chord: string, durationMs: number): true;

/**
 * The ordinary applications that run, those with a place in the dock or task bar, in the system's order;
 * this process included, if it is one. Without a bundle identifier an application is not listed. Never
 * `null`. On X11 these are the applications with an ordinary window, in the order of their processes.
 *
 * Blocks for the question alone, about a millisecond; on X11, where a server may hang, two seconds at most. On
 * macOS no permission is needed. Empty when there is no X server.
 */
export function listRunningApps(): AppRecord[];

/**
 * All applications that are installed for people to open, every copy of each, in the order of the system's
 * index. Agents and background programs are not listed. On X11 the desktop entries that menus show, of the
 * user's folder first.
 *
 * Does not block. Resolves within ten seconds, with an empty list when the index has not answered by then;
 * never rejects for that. On macOS the main dispatch queue must be serviced; no permission is needed. On X11 no
 * server is needed.
 */
export function listInstalledApps(): Promise<InstalledAppRecord[]>;

/**
 * What a person calls an application, to its bundle identifier. `name` is looked for, in this order, among
 * the names of all running applications (case does not matter), as a bundle identifier, and as the name of
 * an application in `/Applications` and `/System/Applications`, on X11 in the folders of desktop entries.
 * It is taken as it is: neither are spaces cut off, nor is an ending `.app`.
 *
 * Blocks for a few small questions and files; on X11, where a server may hang, for two seconds more at most. On
 * macOS no permission is needed.
 *
 * @returns `null` when nothing has this name, and when `name` is not a string.
 */
export function resolveAppName(name: string): ResolvedApp | null;

/**
 * The application that gets what is typed, whether it is an ordinary one or not. Blocks as
 * {@link listRunningApps} does.
 *
 * @returns `null` when there is none, or it has no bundle identifier.
 */
export function getFrontmostApp(): AppRecord | null;

/**
 * The application that a click at this point would reach: that of the frontmost ordinary window there. Docks,
 * menus, notifications, windows that cannot be seen and those of this process are looked through. The left
 * and the top edge belong to a window, the right and the bottom one do not.
 *
 * Blocks for one question about all windows, about a millisecond; on X11, where a server may hang, two seconds
 * at most. On macOS no permission is needed.
 *
 * @param x Global desktop space, points.
 * @param y Global desktop space, points.
 * @returns `null` when no window is there, and when `x` or `y` is not a number; throws nothing.
 */
export function appUnderPoint(x: number, y: number): AppRecord | null;

/**
 * Launches an application, or brings it to the front when it runs already.
 *
 * Does not block. On macOS the main dispatch queue must be serviced; no permission is needed. On X11 a launched
 * program has nothing of this process's but its environment and working directory, and outlives it; one that
 * runs is raised, and made active by the window manager.
 *
 * @param bundleId Compared exactly; {@link resolveAppName} finds it.
 * @returns `true` once the application is open and active; `false` when there is none with this identifier,
 *   when it could not be opened, after ten seconds, and for what is not a string. Never rejects for that.
 */
export function openApp(bundleId: string): Promise<boolean>;

/**
 * Hides applications, every running instance of each; those that are hidden already are left alone. On X11
 * their windows are minimized. Returns at once; whether a program complies is not known. On macOS no permission
 * is needed. Throws nothing.
 *
 * @param bundleIds Compared exactly. Elements that are not strings are skipped; anything but an array is
 *   ignored.
 */
export function hideApps(bundleIds: readonly string[]): void;

/**
 * Shows hidden applications again; those that are not hidden are left alone. On X11 the windows that
 * {@link hideApps} minimized come back, and those that the user had minimized stay; where it minimized none,
 * the user did, and all come back. Returns, and throws nothing, as {@link hideApps}.
 *
 * @param bundleIds As for {@link hideApps}.
 */
export function unhideApps(bundleIds: readonly string[]): void;

/**
 * The ordinary windows on the screen, front to back: not those of docks, menus, notifications and the
 * desktop itself, not transparent ones, not those of this process, nor of applications without a bundle
 * identifier. Windows that others cover are listed. Never `null`.
 *
 * Blocks for one question about all windows, about a millisecond; on X11, where a server may hang, two
 * seconds at most. On macOS no permission is needed.
 */
export function getWindowList(): WindowRecord[];

/**
 * The attached displays, the primary one first; none when there is no display. Nothing is cached: a
 * display that is attached, moved or removed is seen by the next call. Blocks for the question alone:
 * well under a millisecond; on X11, where a server may hang, a few seconds at most. On macOS no permission is
 * needed.
 */
export function listDisplays(): DisplayRecord[];

/**
 * One display. Never fails: for an identifier that no display has, it describes the screen with the
 * active window, or the first one, under the identifier of the main display; without any display, all
 * numbers are 0. Blocks as {@link listDisplays} does.
 *
 * @param displayId Display identifier, converted to an unsigned 32-bit integer. Absent or not a number:
 *   the main display.
 */
export function getDisplaySize(displayId?: number): DisplayRecord;

/**
 * The plain text on the clipboard, up to its first U+0000.
 *
 * Blocks until it is there: at once on macOS. On X11 it is fetched from the program that has it, which has
 * one second to begin and as much longer as its text would take at 1 MB a second, with no silence of more than a
 * second. Texts above 128 MiB are not read. On macOS no permission is needed.
 *
 * @returns `null` when there is no plain text there, and when it is not told in time; `""` is a text.
 */
export function readClipboard(): string | null;

/**
 * Replaces whatever is on the clipboard by a text. Whether the system accepts it is not known. Does not block;
 * on X11, where a server may hang, for two seconds at most, and then changes nothing. On macOS no permission is
 * needed. Throws nothing.
 *
 * On X11 the text is served by a thread of this process as long as that lives, and then handed to a
 * clipboard manager if there is one; without one it ends with the process.
 *
 * @param text Ignored when it is not a string. Halves of surrogate pairs become U+FFFD.
 */
export function writeClipboard(text: string): void;

/**
 * Whether this process may make mouse and keyboard events now: the Accessibility permission on macOS, a
 * server with the XTEST extension on X11. Asks nobody, caches nothing. Blocks for the question alone; on X11,
 * where a server may hang, two seconds at most. So do the next three.
 */
export function checkAccessibility(): boolean;

/**
 * The same; when it may not, macOS asks the user, who decides in the system's settings. The answer is not
 * waited for: the result is that of the moment. On X11 there is nobody to ask: this is {@link checkAccessibility}.
 */
export function requestAccessibility(): boolean;

/**
 * Whether this process may read the screen now: the Screen Recording permission on macOS, a server that
 * lets us on X11. Asks nobody, caches nothing.
 */
export function checkScreenRecording(): boolean;

/**
 * The same; when it may not, macOS may ask the user, as {@link requestAccessibility} does. A program that is
 * permitted then may have to be started anew before it can read the screen. On X11 this is
 * {@link checkScreenRecording}.
 */
export function requestScreenRecording(): boolean;
