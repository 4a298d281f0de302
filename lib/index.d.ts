// The reference of deskhand's functions.
//
// Spaces and units: positions and sizes of displays are in points, in one global desktop space whose
// origin is the top-left corner of the primary display, y down; displays to the left or above have
// negative coordinates. Sizes of pictures are in pixels. On X11 a point is a pixel.

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
 * @throws {Error} `"captureDisplay(excludeBundleIds: string[], quality?: number, displayId?: number)"`
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
 * @throws {Error} `"captureRegion(excludeBundleIds: string[], x, y, w, h, outW, outH, quality?, displayId?)"`
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
 * returned as it is; 0 × 0 when an edge is below 1.
 *
 * @param physWidth Physical pixels; truncated to a 32-bit integer that wraps around.
 * @param physHeight Likewise.
 * @throws {Error} `"calculateTargetSize(physWidth: number, physHeight: number)"` when one of them is not
 *   a number.
 */
export function calculateTargetSize(physWidth: number, physHeight: number): PixelSize;

/**
 * The attached displays, the primary one first; none when there is no display. Nothing is cached: a
 * display that is attached, moved or removed is seen by the next call. Blocks for the question alone:
 * well under a millisecond; on X11, where a server may hang, a few seconds at most.
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
