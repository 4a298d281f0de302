'use strict';

// What is special about some texts, and about typing one after another.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const { startHost } = require('../support/host.js');
const { texts, withFewCharacters } = require('../support/texts.js');
const { assertSameText, startTypingScene, typeAndCheck } = require('../support/typing.js');
const { until } = require('../support/until.js');

const chinese = texts['1,000 different Chinese characters'];

test('typeText types', async (t) => {
  const scene = await startTypingScene(t);
  const { addon, keyboard, leavesNoTrace, receivers, setLayouts } = scene;
  const { page, terminal } = receivers;
  const plain = { layout: 'us', circumstance: 'nothing in the way' };

  for (const [title, text, inPage, inTerminal] of [
    ['nothing for an empty text', '', '', ''],
    ['Tab and Return', 'a\tb\nc', 'a\tb\nc', 'a\tb\rc'],
    ['one Return for CR and LF', 'a\r\nb', 'a\nb', 'a\rb'],
    ['two Returns for LF and CR', 'a\n\rb', 'a\n\nb', 'a\r\rb'],
    ['line breaks at both ends', '\nab\r', '\nab\n', '\rab\r'],
    ['a pair that a run cuts in half', `${'x'.repeat(19)}😀y`, `${'x'.repeat(19)}😀y`],
    ['halves of pairs as replacements', 'a\ud83db\ude00c', 'a\ufffdb\ufffdc'],
    ['the same character many times', '語'.repeat(200), '語'.repeat(200)],
    ['one letter many times', 'l'.repeat(500), 'l'.repeat(500)],
    ['characters that the layout has on dead keys', '^`´~¨', '^`´~¨'],
    ['a symbol beside letters of the layout', 'für 5 € – ½ ≠ ∞', 'für 5 € – ½ ≠ ∞'],
  ]) {
    for (const layout of title.includes('layout') ? ['us', 'de', 'fr', 'ru'] : ['us']) {
      await t.test(`${title}, with a keyboard of ${layout}`, async () => {
        await typeAndCheck(scene, { ...plain, layout, receiver: 'page' }, text, inPage);
        await typeAndCheck(
          scene,
          { ...plain, layout, receiver: 'terminal' },
          text,
          inTerminal ?? inPage,
        );
      });
    }
  }

  await t.test('in the layout that is chosen, also after another was', async () => {
    await setLayouts('us,ru');
    for (const number of [0, 1, 0]) {
      await keyboard.chooseLayout(number);
      await page.begin();
      await leavesNoTrace(() => addon.typeText('Привет, world! яz'));
      assertSameText(await page.finish(), 'Привет, world! яz');
    }
  });

  await t.test('after the keyboard was set to another layout, which frees all keys', async () => {
    for (const [layout, text] of [
      ['us', 'zy語'],
      ['de', 'zyß語'],
      ['fr', 'aqé語'],
      ['ru', 'яd語'],
    ]) {
      await setLayouts(layout);
      await terminal.begin();
      await leavesNoTrace(() => addon.typeText(text));
      // A layout that is set while keys are still to be looked up gives them another meaning.
      assertSameText(await terminal.finish(), text);
    }
  });

  await t.test('a hundred texts in a row, each with other characters', async () => {
    await setLayouts('us');
    await page.begin();
    const before = await keyboard.layout();
    for (let index = 0; index < 100; ++index) {
      await addon.typeText([...chinese].slice(index * 10, index * 10 + 10).join(''));
    }
    assertSameText(await page.finish(), chinese);
    const lent = [...(await keyboard.layout()).keys()].filter((keycode) => !before.has(keycode));
    assert.ok(lent.length <= 30, `${lent.length} keys are lent`);
  });

  await t.test('what another process begins with, which finds its keys', async () => {
    await setLayouts('us');
    await page.begin();
    const expected = [];
    for (const text of ['первый процесс', 'Ωδεύτερη', '第三種語']) {
      const another = startHost(t, scene.env);
      await leavesNoTrace(() => another.addon.typeText(text));
      another.end();
      expected.push(text);
    }
    assertSameText(await page.finish(), expected.join(''));
  });

  await t.test('the texts of two processes at once, one after the other', async () => {
    await setLayouts('us');
    await page.begin();
    const another = startHost(t, scene.env);
    const [one, other] = [chinese.slice(0, 150), texts['Greek and Cyrillic'].slice(0, 150)];
    await leavesNoTrace(async () => {
      const ends = [addon.typeText(one), another.addon.typeText(other)];
      assert.deepEqual(await Promise.all(ends), [true, true]);
    });
    const text = await page.finish();
    const characters = [...text];
    // They may take turns, but no character is lost or another.
    const isOne = new Set(one);
    assertSameText(characters.filter((character) => isOne.has(character)).join(''), one);
    assertSameText(characters.filter((character) => !isOne.has(character)).join(''), other);
  });

  await t.test('as ever after a process was killed in mid-text', async () => {
    await setLayouts('us');
    await terminal.begin();
    const victim = startHost(t, scene.env);
    const text = withFewCharacters(chinese, 70).repeat(50);
    victim.addon.typeText(text).catch(() => {});
    await until(terminal.hasStarted, 'text comes');
    await victim.end();
    await addon.typeText(' Всё хорошо 好, all right');
    const arrived = await terminal.finish();
    const [left, ...rest] = arrived.split(' ');
    assertSameText(left, text.slice(0, left.length));
    assert.ok(left.length < text.length, 'it was killed too late');
    assertSameText(rest.join(' '), 'Всё хорошо 好, all right');
    const { base, latched, locked, keys } = await keyboard.state();
    assert.deepEqual({ base, latched, locked, keys }, { base: 0, latched: 0, locked: 0, keys: [] });
  });

  await t.test('no character when a function key is pressed after it', async () => {
    await setLayouts('us');
    await page.begin();
    await addon.typeText(chinese.slice(0, 76));
    for (let number = 13; number <= 20; ++number) await addon.keyPress(`f${number}`);
    assertSameText(await page.finish(), chinese.slice(0, 76));
  });
});
