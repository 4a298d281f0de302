// How a program may use the functions, and how it may not: compiled as CommonJS and as a module, never run.
import {
  appUnderPoint,
  calculateTargetSize,
  captureDisplay,
  captureRegion,
  checkAccessibility,
  checkScreenRecording,
  getCursorPosition,
  getDisplaySize,
  getFrontmostApp,
  getWindowList,
  hideApps,
  keyHold,
  keyPress,
  listDisplays,
  listInstalledApps,
  listRunningApps,
  mouseClick,
  mouseDown,
  mouseDrag,
  mouseMove,
  mouseUp,
  openApp,
  readClipboard,
  requestAccessibility,
  requestScreenRecording,
  resolveAppName,
  scroll,
  typeText,
  unhideApps,
  writeClipboard,
} from 'deskhand';
import type {
  AppRecord,
  CursorPosition,
  DisplayCapture,
  DisplayRecord,
  InstalledAppRecord,
  PixelSize,
  RegionCapture,
  ResolvedApp,
  WindowRecord,
} from 'deskhand';
import { start, stop } from 'deskhand/run-loop';

/** Compiles only when the types are the same, in both directions. */
type Same<A, B> =
  (<T>() => T extends A ? 1 : 2) extends <T>() => T extends B ? 1 : 2 ? true : false;
function is<A, B>(same: Same<A, B>): void {
  void same;
}

is<ReturnType<typeof captureDisplay>, Promise<DisplayCapture>>(true);
is<ReturnType<typeof captureRegion>, Promise<RegionCapture>>(true);
is<ReturnType<typeof calculateTargetSize>, PixelSize>(true);
is<ReturnType<typeof getCursorPosition>, CursorPosition>(true);
is<ReturnType<typeof listRunningApps>, AppRecord[]>(true);
is<ReturnType<typeof listInstalledApps>, Promise<InstalledAppRecord[]>>(true);
is<ReturnType<typeof resolveAppName>, ResolvedApp | null>(true);
is<ReturnType<typeof getFrontmostApp>, AppRecord | null>(true);
is<ReturnType<typeof appUnderPoint>, AppRecord | null>(true);
is<ReturnType<typeof openApp>, Promise<boolean>>(true);
is<ReturnType<typeof hideApps>, void>(true);
is<ReturnType<typeof unhideApps>, void>(true);
is<ReturnType<typeof getWindowList>, WindowRecord[]>(true);
is<ReturnType<typeof listDisplays>, DisplayRecord[]>(true);
is<ReturnType<typeof getDisplaySize>, DisplayRecord>(true);
is<ReturnType<typeof readClipboard>, string | null>(true);
is<ReturnType<typeof writeClipboard>, void>(true);
for (const check of [
  checkAccessibility,
  requestAccessibility,
  checkScreenRecording,
  requestScreenRecording,
]) {
  is<ReturnType<typeof check>, boolean>(true);
}
is<typeof start, () => void>(true);
is<typeof stop, () => void>(true);

// What was done is done.
const done: true[] = [
  mouseClick('left', 1, 2),
  mouseClick('left', 1, 2, 2),
  mouseClick('left', 1, 2, 2, 'cmd+shift'),
  mouseMove(-1.5, 2),
  mouseDrag(1, 2, 3, 4),
  mouseDrag(1, 2, 3, 4, 'right'),
  mouseDown('left', 1, 2),
  mouseUp('left', 1, 2),
  scroll(0, -3),
  scroll(0, -3, 100, 100),
  typeText('text'),
  keyPress('cmd+c'),
  keyPress('down', 3),
  keyHold('w', 500),
];
void done;

// What is optional may be left out; lists may be read-only.
void captureDisplay([]);
void captureDisplay(['a.b'] as const, 0.8, 1);
void captureRegion([], 0, 0, 10, 10, 20, 20);
void captureRegion([], 0, 0, 10, 10, 20, 20, 0.8, 1);
getDisplaySize();
getDisplaySize(1);
hideApps(['a.b'] as const);

// What may be nothing has to be looked at first.
// @ts-expect-error
getFrontmostApp().bundleId;
// @ts-expect-error
appUnderPoint(1, 2).pid;
// @ts-expect-error
resolveAppName('Name').bundleId;
// @ts-expect-error
readClipboard().length;

// Promises are no results.
// @ts-expect-error
captureDisplay([]).base64;
// @ts-expect-error
listInstalledApps().length;

// Arguments that are missing, too many or of another type.
// @ts-expect-error
void captureDisplay();
// @ts-expect-error
void captureDisplay('a.b');
// @ts-expect-error
void captureDisplay([1]);
// @ts-expect-error
void captureRegion([], 0, 0, 10, 10);
// @ts-expect-error
calculateTargetSize(1);
// @ts-expect-error
mouseClick(1, 2);
// @ts-expect-error
mouseClick(0, 1, 2);
// @ts-expect-error
mouseClick('left', 1, 2, 'cmd');
// @ts-expect-error
mouseMove('1', 2);
// @ts-expect-error
mouseDrag(1, 2, 3);
// @ts-expect-error
scroll(1);
// @ts-expect-error
keyPress(['cmd', 'c']);
// @ts-expect-error
keyHold('w');
// @ts-expect-error
typeText(1);
// @ts-expect-error
void openApp();
// @ts-expect-error
hideApps('a.b');
// @ts-expect-error
writeClipboard(null);
// @ts-expect-error
checkAccessibility(true);
