#include "platform/x11/monitors.h"

#include <algorithm>
#include <map>
#include <utility>

#include <xcb/randr.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {
namespace {

/// 32-bit FNV-1a.
uint32_t Hash(const std::string& text) {
  uint32_t hash = 2166136261u;
  for (const unsigned char byte : text) hash = (hash ^ byte) * 16777619u;
  return hash;
}

std::optional<std::vector<Monitor>> WholeScreen(const Session& session) {
  const auto geometry = Await(session.connection(), xcb_get_geometry_reply,
                              xcb_get_geometry(session.connection(), session.screen().root));
  if (!geometry) return std::nullopt;
  const std::string name = "screen";
  return {{{.id = MonitorIds({name}).front(),
            .name = std::nullopt,
            .bounds = {0, 0, geometry->width, geometry->height}}}};
}

/// None when the server does not say them all.
std::optional<std::vector<std::string>> AtomNames(Link& link,
                                                  const std::vector<xcb_atom_t>& atoms) {
  std::map<xcb_atom_t, xcb_get_atom_name_cookie_t> cookies;
  for (const xcb_atom_t atom : atoms) {
    if (link.atom_names.contains(atom)) continue;
    cookies.emplace(atom, xcb_get_atom_name(link.connection, atom));
  }
  for (const auto& [atom, cookie] : cookies) {
    // Each is taken: XCB keeps replies that nobody takes.
    if (const auto reply = Await(link.connection, xcb_get_atom_name_reply, cookie)) {
      link.atom_names[atom] = {xcb_get_atom_name_name(reply.get()),
                               size_t(xcb_get_atom_name_name_length(reply.get()))};
    }
  }
  std::vector<std::string> names;
  for (const xcb_atom_t atom : atoms) {
    const auto known = link.atom_names.find(atom);
    if (known == link.atom_names.end()) return std::nullopt;
    names.push_back(known->second);
  }
  return names;
}

}  // namespace

std::vector<uint32_t> MonitorIds(const std::vector<std::string>& names) {
  std::vector<uint32_t> ids;
  for (const std::string& name : names) {
    uint32_t id = Hash(name);
    // 0 would mean "no display given".
    while (id == 0 || std::find(ids.begin(), ids.end(), id) != ids.end()) ++id;
    ids.push_back(id);
  }
  return ids;
}

std::optional<std::vector<Monitor>> QueryMonitors(const Session& session) {
  xcb_connection_t* connection = session.connection();
  std::vector<Monitor> monitors;
  size_t primary = 0;
  if (session.link().has_monitors) {
    const auto reply = Await(connection, xcb_randr_get_monitors_reply,
                             xcb_randr_get_monitors(connection, session.screen().root, true));
    if (!reply) return std::nullopt;
    std::vector<xcb_atom_t> atoms;
    auto infos = xcb_randr_get_monitors_monitors_iterator(reply.get());
    for (; infos.rem > 0; xcb_randr_monitor_info_next(&infos)) {
      const xcb_randr_monitor_info_t& info = *infos.data;
      if (info.primary) primary = monitors.size();
      atoms.push_back(info.name);
      monitors.push_back({.bounds = {info.x, info.y, info.width, info.height}});
    }
    const auto names = AtomNames(session.link(), atoms);
    if (!names) return std::nullopt;
    const std::vector<uint32_t> ids = MonitorIds(*names);
    for (size_t index = 0; index < monitors.size(); ++index) {
      monitors[index].id = ids[index];
      if (!(*names)[index].empty()) monitors[index].name = (*names)[index];
    }
  }
  if (monitors.empty()) return WholeScreen(session);
  std::rotate(monitors.begin(), monitors.begin() + primary, monitors.begin() + primary + 1);
  return monitors;
}

}  // namespace deskhand::platform
