// What the parts of clipboard_peer share; see clipboard_peer.c.
#ifndef TEST_SUPPORT_CLIPBOARD_PEER_H_
#define TEST_SUPPORT_CLIPBOARD_PEER_H_

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <xcb/xcb.h>

struct Bytes {
  uint8_t* data;
  size_t size;
};

struct Names {
  xcb_atom_t clipboard, manager, targets, incr, transfer, utf8, save_targets;
};

extern xcb_connection_t* connection;
extern struct Names names;

// The windows that own what is offered, and that take what others offer.
extern xcb_window_t owner_window, taker_window;

// What the answer to a command says besides "ok".
extern FILE* answer;

xcb_atom_t Atom(const char* name);
xcb_window_t OpenWindow(void);

// The next event of that type, or null when none comes in time; others are handled.
xcb_generic_event_t* AwaitEvent(uint8_t type);
xcb_timestamp_t Now(void);
bool Own(xcb_atom_t selection);

// As an owner.
void AnswerRequest(const xcb_selection_request_event_t* request);
void AnswerDeletion(const xcb_property_notify_event_t* change);
bool MakeOffers(char* words);
bool Hang(char* words);
bool AnswerLate(char* words);
bool GoHalfway(char* words);
bool Manage(char* words);
bool TellKept(char* words);

// As one that asks. TakeText() and what it took, whole.
bool TakeText(struct Bytes* text);
bool Ask(char* words);
bool AskEarly(char* words);
bool AskMultiple(char* words);
bool Stall(char* words);
bool Resume(char* words);
bool Vanish(char* words);

#endif
