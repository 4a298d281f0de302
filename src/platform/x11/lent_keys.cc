#include "platform/x11/lent_keys.h"

#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

// The first word. Another one is that of another way to write it.
constexpr uint32_t kVersion = 1;

constexpr size_t kHeadWords = 3;                       // version, writer, number of receivers
constexpr size_t kKeyWords = 1 + KeySymbols{}.size();  // keycode and symbols

// Nobody has as many receivers and keys.
constexpr uint32_t kMostWords = 4096;

}  // namespace

std::vector<uint32_t> Encode(const LentKeys& lent) {
  std::vector<uint32_t> words{kVersion, lent.writer, static_cast<uint32_t>(lent.receivers.size())};
  words.insert(words.end(), lent.receivers.begin(), lent.receivers.end());
  for (const auto& [keycode, symbols] : lent.keys) {
    words.push_back(keycode);
    words.insert(words.end(), symbols.begin(), symbols.end());
  }
  return words;
}

std::optional<LentKeys> Decode(const uint32_t* words, size_t count) {
  if (count < kHeadWords || words[0] != kVersion) return std::nullopt;
  const size_t receivers = words[2];
  if (receivers > count - kHeadWords) return std::nullopt;
  LentKeys lent{.writer = words[1], .receivers = {}, .keys = {}};
  const uint32_t* next = words + kHeadWords;
  lent.receivers.assign(next, next + receivers);
  next += receivers;
  size_t left = count - kHeadWords - receivers;
  if (left % kKeyWords != 0) return std::nullopt;
  for (; left > 0; left -= kKeyWords, next += kKeyWords) {
    if (next[0] > 255) return std::nullopt;
    KeySymbols& symbols = lent.keys[static_cast<uint8_t>(next[0])];
    for (size_t level = 0; level < symbols.size(); ++level) symbols[level] = next[1 + level];
  }
  return lent;
}

std::optional<LentKeys> ReadLentKeys(xcb_connection_t* connection, xcb_window_t root,
                                     xcb_atom_t property) {
  const auto reply =
      Await(connection, xcb_get_property_reply,
            xcb_get_property(connection, false, root, property, XCB_ATOM_CARDINAL, 0, kMostWords));
  if (!reply) return std::nullopt;
  if (reply->format != 32) return LentKeys{};
  const auto* const words = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
  return Decode(words, reply->value_len).value_or(LentKeys{});
}

void WriteLentKeys(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t property,
                   const LentKeys& lent) {
  const std::vector<uint32_t> words = Encode(lent);
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, property, XCB_ATOM_CARDINAL, 32,
                      words.size(), words.data());
}

}  // namespace deskhand::platform
