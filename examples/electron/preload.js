'use strict';

// What the page may ask of the main process.
const { contextBridge, ipcRenderer } = require('electron');

contextBridge.exposeInMainWorld('desktop', { picture: () => ipcRenderer.invoke('picture') });
