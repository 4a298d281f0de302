'use strict';
// The calls that the macOS backend makes about applications and windows, as the record has them.

const sharedWorkspace = ['+[NSWorkspace sharedWorkspace]'];

/** Asks for all running applications. */
const listRunning = [sharedWorkspace, ['-[NSWorkspace runningApplications]']];

/** Asks for the application in front. */
const findFrontmost = [sharedWorkspace, ['-[NSWorkspace frontmostApplication]']];

/** Asks for the place of an application by its bundle identifier. */
const locate = (bundleId) => [
  sharedWorkspace, ['-[NSWorkspace URLForApplicationWithBundleIdentifier:]', bundleId],
];

const processCall = (message) => (pid) => [`-[NSRunningApplication ${message}]`, `process ${pid}`];
const readPolicy = processCall('activationPolicy');
const readBundleId = processCall('bundleIdentifier');
const readName = processCall('localizedName');
const readPid = processCall('processIdentifier');
const readHidden = processCall('isHidden');
const hide = processCall('hide');
const unhide = processCall('unhide');

/** What makes an application record of a running application. */
const readRecord = (pid) => [readBundleId(pid), readName(pid), readPid(pid)];

const findRunning = (pid) =>
  ['+[NSRunningApplication runningApplicationWithProcessIdentifier:]', pid];

const copyWindows = ['CGWindowListCopyWindowInfo', 17, 0];
const releaseWindows = ['CFRelease', 'window list'];

const keys = {
  pid: 'kCGWindowOwnerPID', layer: 'kCGWindowLayer', alpha: 'kCGWindowAlpha',
  name: 'kCGWindowOwnerName', bounds: 'kCGWindowBounds',
};
const readEntry = (index, what) =>
  ['-[NSDictionary objectForKey:]', `window ${index}`, keys[what]];
const readRect = ([X, Y, Width, Height]) =>
  ['CGRectMakeWithDictionaryRepresentation', { X, Y, Width, Height }];

module.exports = {
  sharedWorkspace, listRunning, findFrontmost, locate, readPolicy, readBundleId, readName, readPid,
  readHidden, hide, unhide, readRecord, findRunning, copyWindows, releaseWindows, readEntry,
  readRect,
};
