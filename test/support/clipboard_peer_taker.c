// clipboard_peer as one that asks for what is on the clipboard.
#include <stdlib.h>
#include <string.h>

#include "clipboard_peer.h"

enum {
  kMostTargets = 16,
  kMostWords = 0x1fffffff,
  kMinuteMs = 60000,
};

// What is being taken.
static struct Bytes taken;

// Asks, and waits for the answer. False when it is a refusal, or none comes.
static bool Convert(xcb_atom_t target, xcb_timestamp_t time) {
  xcb_convert_selection(connection, taker_window, names.clipboard, target, names.transfer, time);
  for (;;) {
    xcb_selection_notify_event_t* event = (void*)AwaitEvent(XCB_SELECTION_NOTIFY);
    if (!event) return false;
    const bool is_answer = event->requestor == taker_window && event->target == target;
    const bool is_done = event->property != XCB_ATOM_NONE;
    free(event);
    if (is_answer) return is_done;
  }
}

static xcb_get_property_reply_t* Take(xcb_atom_t property) {
  return xcb_get_property_reply(connection,
                                xcb_get_property(connection, true, taker_window, property,
                                                 XCB_GET_PROPERTY_TYPE_ANY, 0, kMostWords),
                                NULL);
}

static void Keep(const xcb_get_property_reply_t* piece) {
  const size_t size = xcb_get_property_value_length(piece);
  taken.data = realloc(taken.data, taken.size + size + 1);
  memcpy(taken.data + taken.size, xcb_get_property_value(piece), size);
  taken.size += size;
}

static bool AwaitProperty(void) {
  for (;;) {
    xcb_property_notify_event_t* event = (void*)AwaitEvent(XCB_PROPERTY_NOTIFY);
    if (!event) return false;
    const bool is_piece = event->window == taker_window && event->atom == names.transfer &&
                          event->state == XCB_PROPERTY_NEW_VALUE;
    free(event);
    if (is_piece) return true;
  }
}

// Takes the next piece. False when that was the end, or none came.
static bool TakePiece(void) {
  for (;;) {
    xcb_get_property_reply_t* piece = Take(names.transfer);
    if (!piece) return false;
    const bool is_there = piece->type != XCB_ATOM_NONE;
    const bool is_end = is_there && xcb_get_property_value_length(piece) == 0;
    if (is_there) Keep(piece);
    free(piece);
    if (is_there) return !is_end;
    if (!AwaitProperty()) return false;
  }
}

// Takes the text, or announces that it comes in pieces.
static bool BeginToTake(bool* is_in_pieces) {
  taken.size = 0;
  if (!Convert(names.utf8, Now())) return false;
  xcb_get_property_reply_t* reply = Take(names.transfer);
  if (!reply) return false;
  *is_in_pieces = reply->type == names.incr;
  if (!*is_in_pieces) Keep(reply);
  free(reply);
  return true;
}

bool TakeText(struct Bytes* text) {
  bool is_in_pieces = false;
  if (!BeginToTake(&is_in_pieces)) return false;
  while (is_in_pieces && TakePiece()) continue;
  *text = taken;
  taken = (struct Bytes){0};
  return true;
}

static void PrintName(xcb_atom_t atom) {
  xcb_get_atom_name_reply_t* reply =
      xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), NULL);
  if (reply)
    fprintf(answer, "%.*s", xcb_get_atom_name_name_length(reply), xcb_get_atom_name_name(reply));
  free(reply);
}

static void PrintAnswer(void) {
  xcb_get_property_reply_t* reply = Take(names.transfer);
  if (!reply) return;
  fputc(' ', answer);
  PrintName(reply->type);
  fputc(':', answer);
  const int length = xcb_get_property_value_length(reply);
  const uint8_t* bytes = xcb_get_property_value(reply);
  const bool are_atoms = reply->type == XCB_ATOM_ATOM && reply->format == 32;
  for (int i = 0; i < length && !are_atoms; ++i) fprintf(answer, "%02x", bytes[i]);
  for (uint32_t i = 0; i < reply->value_len && are_atoms; ++i) {
    PrintName(((const xcb_atom_t*)(const void*)bytes)[i]);
    fputc(',', answer);
  }
  free(reply);
}

bool Ask(char* words) {
  const xcb_timestamp_t now = Now();
  for (char* word = strtok(words, " "); word; word = strtok(NULL, " ")) {
    if (Convert(Atom(word), now)) {
      PrintAnswer();
    } else {
      fprintf(answer, " none");
    }
  }
  return true;
}

bool AskEarly(char* word) {
  fprintf(answer, Convert(Atom(word), Now() - kMinuteMs) ? " given" : " none");
  return true;
}

bool AskMultiple(char* words) {
  xcb_atom_t pairs[2 * kMostTargets];
  size_t count = 0;
  for (char* word = strtok(words, " "); word && count < kMostTargets; word = strtok(NULL, " ")) {
    char property[16];
    snprintf(property, sizeof(property), "_PAIR_%zu", count);
    pairs[2 * count] = Atom(word);
    pairs[2 * count + 1] = Atom(property);
    ++count;
  }
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, taker_window, names.transfer,
                      Atom("ATOM_PAIR"), 32, 2 * count, pairs);
  if (!Convert(Atom("MULTIPLE"), Now())) return false;
  xcb_get_property_reply_t* reply = Take(names.transfer);
  if (!reply || reply->value_len != 2 * count) return false;
  const xcb_atom_t* answers = xcb_get_property_value(reply);
  for (size_t i = 0; i < count; ++i) {
    xcb_get_property_reply_t* value = answers[2 * i + 1] ? Take(answers[2 * i + 1]) : NULL;
    fprintf(answer, value ? " %d" : " none", value ? xcb_get_property_value_length(value) : 0);
    free(value);
  }
  free(reply);
  return true;
}

bool Stall(char* words) {
  (void)words;
  bool is_in_pieces = false;
  if (!BeginToTake(&is_in_pieces) || !is_in_pieces || !TakePiece()) return false;
  fprintf(answer, " %zu", taken.size);
  return true;
}

bool Resume(char* words) {
  (void)words;
  while (TakePiece()) continue;
  fprintf(answer, " %zu", taken.size);
  return true;
}

bool Vanish(char* words) {
  (void)words;
  xcb_destroy_window(connection, taker_window);
  taker_window = OpenWindow();
  return Now() != XCB_CURRENT_TIME;
}
