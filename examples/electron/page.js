'use strict';

document.querySelector('#take').addEventListener('click', async () => {
  const picture = await window.desktop.picture();
  if (picture) document.querySelector('#picture').src = picture;
});
