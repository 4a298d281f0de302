'use strict';

// What to do about what does not work.

const SETTINGS = 'System Settings > Privacy & Security';

const isMac = () => process.platform === 'darwin';

/** When there is no display, or none that answers. */
function displayHint() {
  if (isMac()) {
    return 'Attach a display, or begin in a session that has one: over ssh there may be none.';
  }
  const { DISPLAY } = process.env;
  if (!DISPLAY) {
    return (
      'DISPLAY is not set. On a desktop set it to that of the session (DISPLAY=:0, often); without one start ' +
      'a server: Xvfb :99 -screen 0 1280x800x24 & export DISPLAY=:99'
    );
  }
  return (
    `Does an X server run at DISPLAY=${DISPLAY}, and may this user use it? Its key is in the file that ` +
    'XAUTHORITY names, else in ~/.Xauthority.'
  );
}

/** When the screen may not be read; `program`: whom macOS asks about. */
function recordingHint(program = 'the program that runs this one') {
  if (!isMac()) return displayHint();
  return `Allow it in ${SETTINGS} > Screen & System Audio Recording, for ${program}; then start that anew.`;
}

/** When no events may be made. */
function accessibilityHint(program = 'the program that runs this one') {
  if (isMac()) return `Allow it in ${SETTINGS} > Accessibility, for ${program}.`;
  return 'The X server has no XTEST extension, or does not let this program use it.';
}

const KEY_HINT =
  'A chord is one key and any modifiers: "cmd+shift+t", "ctrl+page up", "f5". Keys are named in docs/api.md, ' +
  'at keyPress. For text there is "deskhand type".';

/** [what the message is, what to do]: of the errors that the addon and Node.js make. */
const HINTS = [
  [/^Failed to get shareable content/, recordingHint],
  [/^No display found/, displayHint],
  [/timed out after 10 seconds$/, () => 'Run "deskhand doctor": it says what is in the way.'],
  [/no valid key found in chord/, () => KEY_HINT],
  [
    /leave windows out/,
    () => 'Leave --exclude away, or use an X server that has Composite, Damage, Render and XFixes.',
  ],
  [/failed: the region has no area/, () => 'Give --region a width and a height above 0.'],
  [/^Failed to encode/, () => 'Ask for a smaller --size.'],
  [/^ENOENT|^ENOTDIR/, () => 'Does the folder exist?'],
  [/^EACCES|^EPERM|^EROFS/, () => 'May this user write there?'],
  [/^EISDIR/, () => 'That is a folder: name a file.'],
];

function hintFor({ message }) {
  const found = HINTS.find(([pattern]) => pattern.test(message));
  return found?.[1]();
}

module.exports = { accessibilityHint, displayHint, hintFor, recordingHint };
