'use strict';

// The packages of Debian and Ubuntu that have the shared libraries of a Linux binary: of the published one,
// and of one that was built from source, which is linked to more.

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

const packageOf = (library) => PACKAGES[library];

/** All that the published binary needs and that Node.js does not need, too. */
const ALL_PACKAGES = ['libglib2.0-0', 'libxkbcommon0'];

module.exports = { ALL_PACKAGES, packageOf };
