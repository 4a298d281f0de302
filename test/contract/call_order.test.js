'use strict';
// Every call that one capture makes to the platform, in order, arguments included. Threads race, so
// each has its own list.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, shortTimeouts } = require('./harness');

const screens = [
  { id: 1, frame: [0, 0, 1440, 900], scale: 2, name: 'Retina' },
  { id: 2, frame: [1440, 0, 800, 600], scale: 1, name: 'Second' },
];
const content = { applications: [{ bundleId: 'com.a' }, {}, { bundleId: 'com.b' }] };

const workerCalls = [
  ['dispatch_semaphore_create', 0],
  ['dispatch_async', 'main queue'],
  ['dispatch_time', 'DISPATCH_TIME_NOW', 10_000_000_000],
  ['dispatch_semaphore_wait', 'until a time'],
];

const requestContent = [
  '+[SCShareableContent getShareableContentExcludingDesktopWindows:onScreenWindowsOnly:' +
    'completionHandler:]', false, true,
];

const readDisplays = [
  ['-[SCShareableContent displays]'],
  ['-[SCShareableContent applications]'],
  ['-[SCDisplay displayID]', 'display 1'],
  ['-[SCDisplay width]', 'display 1'],
  ['-[SCDisplay height]', 'display 1'],
  ['-[SCDisplay displayID]', 'display 2'],
  ['-[SCDisplay width]', 'display 2'],
  ['-[SCDisplay height]', 'display 2'],
];

const readScreens = [
  ['+[NSScreen screens]'],
  ...['screen 0', 'screen 1'].flatMap((label) => [
    ['-[NSScreen deviceDescription]', label],
    ['-[NSScreen frame]', label],
    ['-[NSScreen backingScaleFactor]', label],
    ['-[NSScreen localizedName]', label],
  ]),
  ['+[NSScreen screens]'],
  ['-[NSScreen frame]', 'screen 0'],
];

const readApplications = [
  ['-[SCRunningApplication bundleIdentifier]', 'application com.a'],
  ['-[SCRunningApplication bundleIdentifier]', 'application without identifier'],
  ['-[SCRunningApplication bundleIdentifier]', 'application com.b'],
];

function makeFilter(display, applications) {
  return [
    // Not even looked at when nothing is to be left out.
    ...(applications.length > 0 ? readApplications : []),
    ['-[SCContentFilter initWithDisplay:excludingApplications:exceptingWindows:]',
      display, applications, []],
  ];
}

function configure(width, height, sourceRect) {
  return [
    ['-[SCStreamConfiguration init]'],
    ...(sourceRect ? [['-[SCStreamConfiguration setSourceRect:]', sourceRect]] : []),
    ['-[SCStreamConfiguration setWidth:]', width],
    ['-[SCStreamConfiguration setHeight:]', height],
    ['-[SCStreamConfiguration setScalesToFit:]', true],
    ['-[SCStreamConfiguration setShowsCursor:]', true],
    ['-[SCStreamConfiguration setCapturesAudio:]', false],
    ['+[SCScreenshotManager captureImageWithFilter:configuration:completionHandler:]',
      'filter', 'configuration'],
  ];
}

function encode(width, height, quality) {
  return [
    ['-[NSBitmapImageRep initWithBitmapDataPlanes:pixelsWide:pixelsHigh:bitsPerSample:' +
      'samplesPerPixel:hasAlpha:isPlanar:colorSpaceName:bytesPerRow:bitsPerPixel:]',
    'NULL', width, height, 8, 4, true, false, 'NSDeviceRGBColorSpace', 0, 0],
    ['+[NSGraphicsContext graphicsContextWithBitmapImageRep:]', 'bitmap'],
    ['+[NSGraphicsContext saveGraphicsState]'],
    ['+[NSGraphicsContext setCurrentContext:]', 'graphics context'],
    ['-[NSImage initWithCGImage:size:]', 'image 3024 x 1964', [width, height]],
    ['-[NSImage drawInRect:fromRect:operation:fraction:]', 'picture', 'graphics context',
      [0, 0, width, height], [0, 0, 0, 0], 1, 1],
    ['+[NSGraphicsContext restoreGraphicsState]'],
    ['-[NSBitmapImageRep representationUsingType:properties:]', 'bitmap', 3,
      { NSImageCompressionFactor: quality, entries: 1 }],
    ['-[NSData length]', 'JPEG data'],
    ['-[NSData base64EncodedStringWithOptions:]', 'JPEG data', 0],
    ['dispatch_semaphore_signal'],
  ];
}

/** What each thread called: [role, calls] in the order of their first calls. */
function byThread(mac) {
  return [...mac.callsByThread()].map(([key, calls]) => [key.replace(/ \d+$/, ''), calls]);
}

test('the calls of a display capture, thread by thread', async (t) => {
  const mac = scene(t, { screens, content });
  await mac.addon.captureDisplay(['com.b', 'com.a'], 0.5);
  assert.deepEqual(byThread(mac), [
    ['worker', workerCalls],
    ['main queue', [requestContent]],
    ['completion', [
      ...readDisplays,
      ['CGMainDisplayID'],
      ...readScreens,
      ...makeFilter('display 1', ['application com.a', 'application com.b']),
      ...configure(1390, 868),
    ]],
    ['completion', encode(1390, 868, 0.5)],
  ]);
});

test('the calls of a capture of a display that is asked for: the main one is not', async (t) => {
  const mac = scene(t, { screens, content });
  await mac.addon.captureDisplay([], 0.5, 2);
  assert.deepEqual(mac.calls('completion'), [
    ...readDisplays,
    ...readScreens,
    ...makeFilter('display 2', []),
    ...configure(800, 600),
    ...encode(800, 600, 0.5),
  ]);
});

test('the calls of a region capture, thread by thread', async (t) => {
  const mac = scene(t, { screens, content });
  await mac.addon.captureRegion(['com.a'], 1.5, -2, 30, 40, 60, 80);
  assert.deepEqual(byThread(mac), [
    ['worker', workerCalls],
    ['main queue', [requestContent]],
    ['completion', [
      ...readDisplays,
      ['CGMainDisplayID'],
      ...makeFilter('display 1', ['application com.a']),
      ...configure(60, 80, [1.5, -2, 30, 40]),
    ]],
    ['completion', encode(60, 80, 0.75)],
  ]);
});

test('the calls when the content is refused end with the signal', async (t) => {
  const mac = scene(t, { content: { result: 'error' } });
  await assert.rejects(mac.addon.captureDisplay([]));
  assert.deepEqual(byThread(mac), [
    ['worker', workerCalls],
    ['main queue', [requestContent]],
    ['completion', [['dispatch_semaphore_signal']]],
  ]);
});

test('the calls when the picture is refused end with the signal', async (t) => {
  const mac = scene(t, { screens, content, image: { result: 'error' } });
  await assert.rejects(mac.addon.captureRegion([], 0, 0, 1, 1, 1, 1));
  assert.deepEqual(byThread(mac).at(-1), ['completion', [['dispatch_semaphore_signal']]]);
});

test('the calls of a capture whose main queue is stalled are the worker\'s alone', async (t) => {
  const mac = scene(t, { ...shortTimeouts, mainQueue: 'stalled', leavesMainQueueBlocks: true });
  await assert.rejects(mac.addon.captureDisplay([]));
  assert.deepEqual(byThread(mac), [['worker', workerCalls]]);
});
