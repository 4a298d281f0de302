'use strict';

// An Electron main process: a window with a button that shows what the desktop looks like without
// this application. Usage: electron examples/electron/main.js
const path = require('node:path');
const { app, BrowserWindow, dialog, ipcMain } = require('electron');
const deskhand = require('deskhand');

/** On macOS the bundle identifier of whoever calls is that of its own record among the running ones. */
function ownBundleIds() {
  return deskhand
    .listRunningApps()
    .filter(({ pid }) => pid === process.pid)
    .map(({ bundleId }) => bundleId);
}

async function takePicture() {
  // macOS takes no pictures for whom its user has not allowed it; this asks, once.
  if (!deskhand.checkScreenRecording() && !deskhand.requestScreenRecording()) {
    throw new Error('Allow screen recording in the system settings, then start this again.');
  }
  const shot = await deskhand.captureDisplay(ownBundleIds());
  return `data:image/jpeg;base64,${shot.base64}`;
}

app.whenReady().then(() => {
  // The page gets pictures and nothing else: only the main process operates the desktop.
  ipcMain.handle('picture', () =>
    takePicture().catch((error) => {
      dialog.showErrorBox('No picture', error.message);
      return null;
    }),
  );
  const window = new BrowserWindow({
    width: 900,
    height: 640,
    webPreferences: { preload: path.join(__dirname, 'preload.js') },
  });
  window.loadFile(path.join(__dirname, 'index.html'));
});

app.on('window-all-closed', () => app.quit());
