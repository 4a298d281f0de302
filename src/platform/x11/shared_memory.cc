#include "platform/x11/shared_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include "platform/x11/reply.h"

namespace deskhand::platform {

std::shared_ptr<SharedMemory> SharedMemory::Create(xcb_connection_t* connection, size_t bytes) {
  const int fd = memfd_create("deskhand-picture", MFD_CLOEXEC);
  if (fd < 0) return nullptr;
  void* data = MAP_FAILED;
  if (ftruncate(fd, static_cast<off_t>(bytes)) == 0) {
    data = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  }
  if (data == MAP_FAILED) {
    close(fd);
    return nullptr;
  }
  std::shared_ptr<SharedMemory> memory(new SharedMemory(static_cast<uint8_t*>(data), bytes));
  memory->segment_ = xcb_generate_id(connection);
  // XCB sends the descriptor and closes it.
  const auto attached =
      xcb_shm_attach_fd_checked(connection, memory->segment_, fd, /*read_only=*/false);
  const XError error(xcb_request_check(connection, attached));
  if (error || xcb_connection_has_error(connection)) return nullptr;
  return memory;
}

SharedMemory::~SharedMemory() { munmap(data_, size_); }

}  // namespace deskhand::platform
