'use strict';

// A stand-in for Electron's main process, as far as the example uses it: the page asks for a picture
// once, the process prints what it got and ends.
const handlers = {};

exports.app = {
  whenReady: async () => {},
  on() {},
};

exports.ipcMain = {
  handle(channel, handler) {
    handlers[channel] = handler;
  },
};

exports.dialog = {
  showErrorBox(title, text) {
    throw new Error(`${title}: ${text}`);
  },
};

exports.BrowserWindow = class {
  async loadFile(page) {
    const picture = await handlers.picture();
    console.log(JSON.stringify({ page, picture }));
  }
};
