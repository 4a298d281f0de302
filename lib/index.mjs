// For import: all functions by name, and as the default the native exports object itself.
import deskhand from './index.js';

export default deskhand;

export const {
  captureDisplay,
  captureRegion,
  calculateTargetSize,
  mouseClick,
  mouseMove,
  mouseDrag,
  mouseDown,
  mouseUp,
  scroll,
  getCursorPosition,
  typeText,
  keyPress,
  keyHold,
  listRunningApps,
  listInstalledApps,
  resolveAppName,
  getFrontmostApp,
  appUnderPoint,
  openApp,
  hideApps,
  unhideApps,
  getWindowList,
  listDisplays,
  getDisplaySize,
  readClipboard,
  writeClipboard,
  checkAccessibility,
  requestAccessibility,
  checkScreenRecording,
  requestScreenRecording,
} = deskhand;
