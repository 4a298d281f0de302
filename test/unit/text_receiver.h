// A program with one window that takes text: an editor's heart, on a connection and thread of its
// own. It looks keys up when it gets to them, in the keymap that the server has then, as programs
// with toolkits do.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

namespace deskhand {

enum class Pings { kAnswered, kIgnored };

class TextReceiver {
 public:
  /// Opens the window and gives it the focus.
  explicit TextReceiver(Pings pings = Pings::kAnswered);
  ~TextReceiver();
  TextReceiver(const TextReceiver&) = delete;
  TextReceiver& operator=(const TextReceiver&) = delete;

  void Focus() const;

  /// As if it hung: events wait for it.
  void Stop() { SetStopped(true); }
  void Continue() { SetStopped(false); }

  /// The text that it got, once it has as many characters as `expected`, or after a while anyway.
  std::u32string TextLike(const std::u32string& expected);

  /// How often it had to look at the whole keymap anew.
  int keymap_loads();

 private:
  void Run();
  void Handle(const xcb_generic_event_t& event);
  void OnKey(const xcb_key_press_event_t& event);
  void AnswerPing(const xcb_client_message_event_t& message);
  void SetStopped(bool is_stopped);

  xcb_connection_t* const connection_;
  const Pings pings_;
  const xcb_screen_t* screen_ = nullptr;
  xcb_window_t window_ = XCB_NONE;
  uint8_t xkb_event_ = 0;
  xcb_atom_t protocols_ = XCB_NONE, ping_ = XCB_NONE;
  xkb_context* const context_;
  xkb_keymap* keymap_ = nullptr;
  xkb_state* state_ = nullptr;

  std::mutex mutex_;
  std::condition_variable changed_;
  bool is_stopped_ = false;
  bool is_ending_ = false;
  std::u32string text_;
  int keymap_loads_ = 0;
  std::thread thread_;
};

}  // namespace deskhand
