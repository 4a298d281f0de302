'use strict';

// The packages of Debian and Ubuntu that have the shared libraries of the Linux binary.

const PACKAGES = {
  'libgio-2.0.so.0': 'libglib2.0-0',
  'libglib-2.0.so.0': 'libglib2.0-0',
  'libgmodule-2.0.so.0': 'libglib2.0-0',
  'libgobject-2.0.so.0': 'libglib2.0-0',
  'libjpeg.so.62': 'libjpeg62-turbo',
  'libstdc++.so.6': 'libstdc++6',
  'libgcc_s.so.1': 'libgcc-s1',
  'libX11-xcb.so.1': 'libx11-xcb1',
  'libXau.so.6': 'libxau6',
  'libXdmcp.so.6': 'libxdmcp6',
  'libxcb-composite.so.0': 'libxcb-composite0',
  'libxcb-damage.so.0': 'libxcb-damage0',
  'libxcb-randr.so.0': 'libxcb-randr0',
  'libxcb-render.so.0': 'libxcb-render0',
  'libxcb-res.so.0': 'libxcb-res0',
  'libxcb-shm.so.0': 'libxcb-shm0',
  'libxcb-xfixes.so.0': 'libxcb-xfixes0',
  'libxcb-xinput.so.0': 'libxcb-xinput0',
  'libxcb-xkb.so.1': 'libxcb-xkb1',
  'libxcb-xtest.so.0': 'libxcb-xtest0',
  'libxcb.so.1': 'libxcb1',
  'libxkbcommon.so.0': 'libxkbcommon0',
};

/** Those that others bring along, or that every system has. */
const IMPLIED = new Set([
  'libgcc-s1',
  'libstdc++6',
  'libx11-xcb1',
  'libxau6',
  'libxcb1',
  'libxdmcp6',
]);

const packageOf = (library) => PACKAGES[library];

const ALL_PACKAGES = [...new Set(Object.values(PACKAGES))]
  .filter((name) => !IMPLIED.has(name))
  .sort();

module.exports = { ALL_PACKAGES, packageOf };
