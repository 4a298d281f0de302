// keyboard - what is held down on an X server, what its keys give, and a user's own keyboard, for
// tests. The user's keys go down on the keyboard of the server, those of programs on another one,
// that of XTEST.
// Reads one command a line from standard input and answers each with a line of its own, "ok" or
// "error". All that an answer tells of, and all that a command does, has happened then.
//
//   state            answers "ok" and NAME=VALUE words: `keys` and `buttons`, each DEVICE:NUMBER of
//                    what is down, the core keyboard's base, latched, locked and group, and
//                    `pointer`, X,Y
//   layout           answers "ok" and a word KEYCODE=LEVEL,... for each key that gives something; a
//                    level is GROUP/LEVEL/MODIFIERS/SYMBOL, the last two in hexadecimal
//   press KEYCODE    release KEYCODE    on the user's own keyboard
//   tap KEYCODE      a press and a release on that of XTEST
//   lock MASK        locks these core modifiers and unlocks the others
//   group NUMBER     chooses one of the layouts, from 0
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xcb/xkb.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-x11.h>

enum {
  kAllDevices = 0,
  kMostMasks = 16,
  kKeyClass = 0,
  kButtonClass = 1,
  kLineSize = 128,
};

static xcb_connection_t* connection;
static xcb_window_t root;
static struct xkb_context* context;

// The server's own keyboard, and the first event of the input extension.
static uint8_t user_keyboard, first_event;

static bool Sync(void) {
  xcb_get_input_focus_reply_t* reply =
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), NULL);
  free(reply);
  return reply != NULL;
}

static xcb_input_xi_query_device_reply_t* QueryDevices(void) {
  return xcb_input_xi_query_device_reply(connection,
                                         xcb_input_xi_query_device(connection, kAllDevices), NULL);
}

// The keyboard attached to the core keyboard that is not for tests.
static bool FindUserKeyboard(void) {
  xcb_input_xi_query_device_reply_t* reply = QueryDevices();
  if (!reply) return false;
  xcb_input_xi_device_info_iterator_t infos = xcb_input_xi_query_device_infos_iterator(reply);
  for (; infos.rem; xcb_input_xi_device_info_next(&infos)) {
    const xcb_input_xi_device_info_t* info = infos.data;
    if (info->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD) continue;
    char name[kLineSize];
    snprintf(name, sizeof(name), "%.*s", info->name_len, xcb_input_xi_device_info_name(info));
    if (!strstr(name, "XTEST")) user_keyboard = (uint8_t)info->deviceid;
  }
  free(reply);
  return user_keyboard != 0;
}

static bool Start(void) {
  connection = xcb_connect(NULL, NULL);
  if (xcb_connection_has_error(connection)) return false;
  root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  free(xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, 2, 2),
                                        NULL));
  const xcb_query_extension_reply_t* input = xcb_get_extension_data(connection, &xcb_input_id);
  if (!input || !input->present) return false;
  first_event = input->first_event;
  context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  return xkb_x11_setup_xkb_extension(connection, 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, NULL,
                                     NULL, NULL, NULL) &&
         FindUserKeyboard();
}

// Prints what a device holds down of a class, each as DEVICE:NUMBER and a comma.
static void PrintHeld(uint16_t device, uint8_t wanted) {
  xcb_input_query_device_state_reply_t* reply = xcb_input_query_device_state_reply(
      connection, xcb_input_query_device_state(connection, (uint8_t)device), NULL);
  if (!reply) return;
  const uint8_t* class = (const uint8_t*)(reply + 1);
  for (int index = 0; index < reply->num_classes; ++index, class += class[1]) {
    if (class[0] != wanted) continue;
    // Both kinds are as long, and begin alike.
    const uint8_t* bits = ((const xcb_input_key_state_t*)class)->keys;
    for (int number = 0; number < 256; ++number) {
      if (bits[number / 8] >> number % 8 & 1) printf("%u:%d,", device, number);
    }
  }
  free(reply);
}

static void PrintHeldOfAll(uint8_t wanted) {
  xcb_input_xi_query_device_reply_t* reply = QueryDevices();
  if (!reply) return;
  xcb_input_xi_device_info_iterator_t infos = xcb_input_xi_query_device_infos_iterator(reply);
  for (; infos.rem; xcb_input_xi_device_info_next(&infos)) {
    PrintHeld(infos.data->deviceid, wanted);
  }
  free(reply);
}

static bool PrintState(void) {
  xcb_xkb_get_state_reply_t* state = xcb_xkb_get_state_reply(
      connection, xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD), NULL);
  xcb_query_pointer_reply_t* pointer =
      xcb_query_pointer_reply(connection, xcb_query_pointer(connection, root), NULL);
  if (!state || !pointer) return false;
  printf("ok pointer=%d,%d ", pointer->root_x, pointer->root_y);
  free(pointer);
  printf("base=%u latched=%u locked=%u group=%u keys=", state->baseMods, state->latchedMods,
         state->lockedMods, state->group);
  free(state);
  PrintHeldOfAll(kKeyClass);
  printf(" buttons=");
  PrintHeldOfAll(kButtonClass);
  printf("\n");
  return true;
}

static void PrintLevel(struct xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t group,
                       xkb_level_index_t level) {
  const xkb_keysym_t* symbols;
  if (xkb_keymap_key_get_syms_by_level(keymap, key, group, level, &symbols) != 1) return;
  xkb_mod_mask_t masks[kMostMasks] = {0};
  xkb_keymap_key_get_mods_for_level(keymap, key, group, level, masks, kMostMasks);
  printf("%u/%u/%x/%x,", group, level, masks[0], symbols[0]);
}

static bool HasSymbols(struct xkb_keymap* keymap, xkb_keycode_t key) {
  const xkb_keysym_t* symbols;
  const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap, key);
  for (xkb_layout_index_t group = 0; group < groups; ++group) {
    const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap, key, group);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
      if (xkb_keymap_key_get_syms_by_level(keymap, key, group, level, &symbols) > 0) return true;
    }
  }
  return false;
}

static bool PrintLayout(void) {
  struct xkb_keymap* keymap = xkb_x11_keymap_new_from_device(
      context, connection, xkb_x11_get_core_keyboard_device_id(connection),
      XKB_KEYMAP_COMPILE_NO_FLAGS);
  if (!keymap) return false;
  printf("ok");
  const xkb_keycode_t last = xkb_keymap_max_keycode(keymap);
  for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap); key <= last; ++key) {
    if (!HasSymbols(keymap, key)) continue;
    printf(" %u=", key);
    const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap, key);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
      const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap, key, group);
      for (xkb_level_index_t level = 0; level < levels; ++level) {
        PrintLevel(keymap, key, group, level);
      }
    }
  }
  printf("\n");
  xkb_keymap_unref(keymap);
  return true;
}

// All of it has happened.
static bool Done(void) { return Sync() && puts("ok") >= 0; }

// An event type of the input extension goes to the device, see the XTEST protocol, version 2.2.
static bool Press(unsigned keycode, bool is_down) {
  const uint8_t type = is_down ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE;
  xcb_test_fake_input(connection, (uint8_t)(first_event + type), (uint8_t)keycode, 0, root, 0, 0,
                      user_keyboard);
  return Done();
}

static bool Tap(unsigned keycode) {
  xcb_test_fake_input(connection, XCB_KEY_PRESS, (uint8_t)keycode, 0, root, 0, 0, 0);
  xcb_test_fake_input(connection, XCB_KEY_RELEASE, (uint8_t)keycode, 0, root, 0, 0, 0);
  return Done();
}

static bool Lock(unsigned mask) {
  xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, 0xff, (uint8_t)mask, false, 0, 0,
                           false, 0);
  return Done();
}

static bool ChooseGroup(unsigned group) {
  xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, true, (uint8_t)group, 0,
                           false, 0);
  return Done();
}

static bool Do(const char* command, unsigned number) {
  if (strcmp(command, "state") == 0) return PrintState();
  if (strcmp(command, "layout") == 0) return PrintLayout();
  if (strcmp(command, "press") == 0) return Press(number, true);
  if (strcmp(command, "release") == 0) return Press(number, false);
  if (strcmp(command, "tap") == 0) return Tap(number);
  if (strcmp(command, "lock") == 0) return Lock(number);
  if (strcmp(command, "group") == 0) return ChooseGroup(number);
  return false;
}

static void Obey(const char* line) {
  char command[kLineSize] = "";
  unsigned number = 0;
  sscanf(line, "%127s %u", command, &number);
  if (!Sync() || !Do(command, number)) puts("error");
}

int main(void) {
  if (!Start()) return EXIT_FAILURE;
  char line[kLineSize];
  while (fgets(line, sizeof(line), stdin)) {
    Obey(line);
    fflush(stdout);
  }
  xcb_disconnect(connection);
  return EXIT_SUCCESS;
}
