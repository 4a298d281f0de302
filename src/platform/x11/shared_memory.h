// Memory that the X server writes pictures into.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <xcb/shm.h>
#include <xcb/xcb.h>

namespace deskhand::platform {

/// A block of memory shared with the server through a file descriptor: it needs no name, no common
/// IPC namespace, and is gone with its last user. The server's side ends with the connection.
class SharedMemory {
 public:
  /// Null when the system or the server refuses.
  static std::shared_ptr<SharedMemory> Create(xcb_connection_t* connection, size_t bytes);

  ~SharedMemory();
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;

  uint8_t* data() const { return data_; }
  size_t size() const { return size_; }
  xcb_shm_seg_t segment() const { return segment_; }

 private:
  SharedMemory(uint8_t* data, size_t size) : data_(data), size_(size) {}

  uint8_t* const data_;
  const size_t size_;
  xcb_shm_seg_t segment_ = 0;
};

}  // namespace deskhand::platform
