#include "platform/x11/clipboard_atoms.h"

#include <string_view>
#include <utility>
#include <vector>

#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

constexpr std::pair<xcb_atom_t ClipboardAtoms::*, std::string_view> kNames[] = {
    {&ClipboardAtoms::clipboard, "CLIPBOARD"},
    {&ClipboardAtoms::manager, "CLIPBOARD_MANAGER"},
    {&ClipboardAtoms::targets, "TARGETS"},
    {&ClipboardAtoms::multiple, "MULTIPLE"},
    {&ClipboardAtoms::timestamp, "TIMESTAMP"},
    {&ClipboardAtoms::save_targets, "SAVE_TARGETS"},
    {&ClipboardAtoms::utf8_string, "UTF8_STRING"},
    {&ClipboardAtoms::plain_utf8, "text/plain;charset=utf-8"},
    {&ClipboardAtoms::plain, "text/plain"},
    {&ClipboardAtoms::text, "TEXT"},
    {&ClipboardAtoms::incr, "INCR"},
    {&ClipboardAtoms::null, "NULL"},
    {&ClipboardAtoms::transfer, "_DESKHAND_CLIPBOARD"},
};

}  // namespace

std::unique_ptr<const ClipboardAtoms> ClipboardAtoms::Make(xcb_connection_t* connection) {
  std::vector<xcb_intern_atom_cookie_t> cookies;
  for (const auto& [place, name] : kNames) {
    cookies.push_back(
        xcb_intern_atom(connection, /*only_if_exists=*/false, name.size(), name.data()));
  }
  auto atoms = std::make_unique<ClipboardAtoms>();
  auto cookie = cookies.begin();
  bool is_complete = true;
  for (const auto& [place, name] : kNames) {
    const auto reply = Await(connection, xcb_intern_atom_reply, *cookie++);
    is_complete = is_complete && reply;
    if (reply) (*atoms).*place = reply->atom;
  }
  if (!is_complete) return nullptr;
  return atoms;
}

}  // namespace deskhand::platform
