// clipboard_peer as the owner of the clipboard.
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "clipboard_peer.h"

enum {
  kMostOffers = 8,
  kPieceSize = 64 * 1024,
};

struct Offer {
  xcb_atom_t target;
  struct Bytes bytes;
};

static struct Offer offers[kMostOffers];
static size_t offer_count;
static enum { kGood, kSilent, kHalfway } manners;
static xcb_selection_request_event_t unanswered;

// A text that never ends.
static enum { kDies, kFallsSilent, kGoesOn } at_second_piece;
static size_t piece_size;
static xcb_window_t piece_window;
static xcb_atom_t piece_property;

// As the clipboard manager.
static bool never_answers;
static size_t kept_size;
static bool has_kept;

static void SetBytes(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const void* data,
                     size_t size) {
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, 8, size, data);
}

static void Notify(const xcb_selection_request_event_t* request, bool is_done) {
  union {
    xcb_selection_notify_event_t notify;
    char bytes[32];
  } event = {.notify = {.response_type = XCB_SELECTION_NOTIFY,
                        .time = request->time,
                        .requestor = request->requestor,
                        .selection = request->selection,
                        .target = request->target,
                        .property = is_done ? request->property : XCB_ATOM_NONE}};
  xcb_send_event(connection, false, request->requestor, 0, event.bytes);
}

static void Announce(const xcb_selection_request_event_t* request) {
  const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE, size = 1 << 20;
  piece_window = request->requestor;
  piece_property = request->property;
  xcb_change_window_attributes(connection, piece_window, XCB_CW_EVENT_MASK, &events);
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, piece_window, piece_property, names.incr,
                      32, 1, &size);
}

// Gives a piece of a text that never ends.
static void GivePiece(void) {
  static bool is_second;
  if (is_second && at_second_piece == kDies) _exit(EXIT_SUCCESS);
  if (is_second && at_second_piece == kFallsSilent) return;
  is_second = true;
  uint8_t* piece = malloc(piece_size);
  memset(piece, 'p', piece_size);
  SetBytes(piece_window, piece_property, names.utf8, piece, piece_size);
  free(piece);
}

static bool Give(const xcb_selection_request_event_t* request) {
  if (request->target == names.targets) {
    xcb_atom_t given[kMostOffers + 1] = {names.targets};
    for (size_t i = 0; i < offer_count; ++i) given[i + 1] = offers[i].target;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request->requestor, request->property,
                        XCB_ATOM_ATOM, 32, offer_count + 1, given);
    return true;
  }
  for (size_t i = 0; i < offer_count; ++i) {
    if (offers[i].target != request->target) continue;
    SetBytes(request->requestor, request->property, request->target, offers[i].bytes.data,
             offers[i].bytes.size);
    return true;
  }
  return false;
}

void AnswerDeletion(const xcb_property_notify_event_t* change) {
  if (piece_window && change->window == piece_window && change->atom == piece_property) GivePiece();
}

static void OfferText(struct Bytes text) {
  offers[0] = (struct Offer){names.utf8, text};
  offer_count = 1;
  manners = kGood;
}

static bool KeepText(void) {
  struct Bytes text = {0};
  if (!TakeText(&text)) return false;
  OfferText(text);
  kept_size = text.size;
  has_kept = true;
  return true;
}

void AnswerRequest(const xcb_selection_request_event_t* request) {
  if (request->selection == names.manager) {
    if (never_answers) return;
    const bool is_kept = request->target == names.save_targets && KeepText();
    Notify(request, is_kept);
    if (is_kept) Own(names.clipboard);
  } else if (manners == kHalfway && request->target == names.utf8) {
    Announce(request);
    Notify(request, true);
  } else if (manners == kGood) {
    Notify(request, Give(request));
  } else {
    unanswered = *request;
  }
}

bool AnswerLate(char* words) {
  (void)words;
  xcb_generic_error_t* error = xcb_request_check(
      connection,
      xcb_change_property_checked(connection, XCB_PROP_MODE_REPLACE, unanswered.requestor,
                                  unanswered.property, unanswered.target, 8, 4, "late"));
  Notify(&unanswered, true);
  free(error);
  return !error;
}

bool MakeOffers(char* words) {
  offer_count = 0;
  for (char* word = strtok(words, " "); word && offer_count < kMostOffers;
       word = strtok(NULL, " ")) {
    char* hex = strrchr(word, '=');
    if (!hex) return false;
    *hex++ = '\0';
    struct Offer* offer = &offers[offer_count++];
    offer->target = Atom(word);
    offer->bytes.size = strlen(hex) / 2;
    offer->bytes.data = malloc(offer->bytes.size + 1);
    for (size_t i = 0; i < offer->bytes.size; ++i) {
      unsigned value = 0;
      sscanf(hex + 2 * i, "%2x", &value);
      offer->bytes.data[i] = value;
    }
  }
  manners = kGood;
  return Own(names.clipboard);
}

bool Hang(char* words) {
  (void)words;
  manners = kSilent;
  return Own(names.clipboard);
}

bool GoHalfway(char* word) {
  manners = kHalfway;
  piece_size = strtoul(word, NULL, 10);
  at_second_piece = piece_size ? kGoesOn : strcmp(word, "die") == 0 ? kDies : kFallsSilent;
  if (!piece_size) piece_size = kPieceSize;
  return Own(names.clipboard);
}

bool Manage(char* word) {
  never_answers = strcmp(word, "never") == 0;
  return Own(names.manager);
}

bool TellKept(char* words) {
  (void)words;
  fprintf(answer, " %zu", kept_size);
  return has_kept;
}
