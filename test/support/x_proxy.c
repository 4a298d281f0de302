// x_proxy - stands between X clients and a server and spoils one of the server's answers, for
// tests.
//
// Usage: x_proxy OWN_NUMBER SERVER_NUMBER
// Listens as display OWN_NUMBER and passes everything on, file descriptors included, from and to
// the local display SERVER_NUMBER. An answer is what a client may wait for: the one to the opening
// of a connection, a reply, or an error. Events are none.
//
// Reads one command a line from standard input and replies to each with a line of its own: "ok" and
// the number of answers since the last `spoil`, over all connections; or "error".
//
//   spoil N FAULT [VALUE]   the N-th answer from now on; no answer when N is 0
//   count                   only counts
//   hangup                  closes the connections that have fallen silent
//   drop                    closes all connections
//
// FAULT is one of
//   error    an X error in its place; VALUE is its code. To an opening: a refusal.
//   close    the connection is closed in its place
//   cut      its first half, then the connection is closed
//   stall    its first half, then silence
//   silence  nothing any more, although the connection stays
//   delay    it comes VALUE milliseconds later; all other traffic waits, too
#include <poll.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

enum {
  kMostConnections = 32,
  kMostFiles = 16,
  kPacketSize = 32,   // of events, errors and the beginning of replies
  kOpeningSize = 8,   // the beginning of the answer to an opening
  kFirstStreams = 2,  // in the list to poll: after standard input and the listening socket
};

enum Fault { kNone, kError, kClose, kCut, kStall, kSilence, kDelay };
static const char* const kFaultNames[] = {"none",  "error",   "close", "cut",
                                          "stall", "silence", "delay"};

// Bytes on their way, with the descriptors that came with them.
struct Chunk {
  uint8_t bytes[1 << 16];
  size_t size;
  int files[kMostFiles];
  size_t file_count;
};

// A client and its connection to the server. The other members follow the server's packets.
struct Connection {
  int client;
  int server;
  bool is_open;    // for requests: the opening was answered
  bool is_silent;  // the server is not read any more
  uint8_t header[kPacketSize];
  size_t header_size;  // how much of it has come
  uint64_t to_pass;    // what is left of the packet and goes to the client
  uint64_t to_drop;    // what is then left of it
  bool has_answer;     // since the client sent something
  enum Fault ending;   // kCut or kStall: what happens when to_pass is 0
};

static struct Connection connections[kMostConnections];
static size_t connection_count;
static uint64_t answers;
static uint64_t turns;  // how often a client sent something after an answer
static struct Plan {
  enum Fault fault;
  uint64_t answer;
  unsigned value;
} plan;

static size_t Least(uint64_t one, size_t other) { return one < other ? (size_t)one : other; }

static bool Receive(int socket, struct Chunk* chunk) {
  _Alignas(struct cmsghdr) char control[CMSG_SPACE(sizeof(chunk->files))];
  struct iovec place = {chunk->bytes, sizeof(chunk->bytes)};
  struct msghdr message = {.msg_iov = &place,
                           .msg_iovlen = 1,
                           .msg_control = control,
                           .msg_controllen = sizeof(control)};
  const ssize_t size = recvmsg(socket, &message, MSG_CMSG_CLOEXEC);
  if (size <= 0) return false;
  chunk->size = (size_t)size;
  chunk->file_count = 0;
  const struct cmsghdr* part = CMSG_FIRSTHDR(&message);
  if (part && part->cmsg_type == SCM_RIGHTS) {
    chunk->file_count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    memcpy(chunk->files, CMSG_DATA(part), chunk->file_count * sizeof(int));
  }
  return true;
}

static void CloseFiles(struct Chunk* chunk) {
  while (chunk->file_count > 0) close(chunk->files[--chunk->file_count]);
}

// Sends all of it, the chunk's descriptors with its first byte. May block: clients read whatever
// comes while they wait, and the server's requests are small.
static bool Send(int socket, const void* bytes, size_t size, struct Chunk* chunk) {
  _Alignas(struct cmsghdr) char control[CMSG_SPACE(sizeof(chunk->files))] = {0};
  while (size > 0) {
    struct iovec place = {(void*)bytes, size};
    struct msghdr message = {.msg_iov = &place, .msg_iovlen = 1};
    if (chunk->file_count > 0) {
      const size_t files_size = chunk->file_count * sizeof(int);
      message.msg_control = control;
      message.msg_controllen = CMSG_SPACE(files_size);
      struct cmsghdr* part = CMSG_FIRSTHDR(&message);
      *part = (struct cmsghdr){CMSG_LEN(files_size), SOL_SOCKET, SCM_RIGHTS};
      memcpy(CMSG_DATA(part), chunk->files, files_size);
    }
    const ssize_t sent = sendmsg(socket, &message, MSG_NOSIGNAL);
    if (sent <= 0) return false;
    CloseFiles(chunk);
    bytes = (const char*)bytes + sent;
    size -= (size_t)sent;
  }
  return true;
}

static uint64_t PacketSize(const struct Connection* connection) {
  if (!connection->is_open) {
    return kOpeningSize + 4u * ((const xcb_setup_failed_t*)connection->header)->length;
  }
  const xcb_generic_reply_t* packet = (const xcb_generic_reply_t*)connection->header;
  const uint8_t type = packet->response_type & 0x7f;
  return kPacketSize + (type == 1 || type == XCB_GE_GENERIC ? 4 * (uint64_t)packet->length : 0);
}

static bool SendError(const struct Connection* connection, struct Chunk* chunk) {
  if (!connection->is_open) {
    static const xcb_setup_failed_t refusal = {.protocol_major_version = 11};
    return Send(connection->client, &refusal, sizeof(refusal), chunk);
  }
  const uint16_t sequence = ((const xcb_generic_reply_t*)connection->header)->sequence;
  const xcb_generic_error_t error = {.error_code = (uint8_t)plan.value, .sequence = sequence};
  return Send(connection->client, &error, kPacketSize, chunk);
}

// A whole header has come: decides what becomes of its packet. False when the connection ends.
static bool Begin(struct Connection* connection, struct Chunk* chunk) {
  const bool is_answer = !connection->is_open || connection->header[0] <= 1;
  connection->has_answer |= is_answer;
  const bool is_spoiled = is_answer && ++answers == plan.answer;
  const enum Fault fault = is_spoiled ? plan.fault : kNone;
  const uint64_t size = PacketSize(connection);
  uint64_t passed = size;
  if (fault == kClose) return false;
  connection->is_silent = fault == kSilence;
  if (fault == kSilence) return true;
  if (fault == kDelay) usleep(1000 * plan.value);
  if (fault == kError) {
    if (!SendError(connection, chunk)) return false;
    passed = 0;
  } else if (fault == kCut || fault == kStall) {
    connection->ending = fault;
    passed = size / 2;
  }
  const size_t first = Least(passed, connection->header_size);
  connection->to_pass = passed - first;
  connection->to_drop = size - connection->header_size - connection->to_pass;
  connection->header_size = 0;
  connection->is_open = true;
  return Send(connection->client, connection->header, first, chunk);
}

// Takes some of what the server sent a step on. False when the connection ends.
static bool Step(struct Connection* connection, struct Chunk* chunk, size_t* used) {
  const uint8_t* bytes = chunk->bytes + *used;
  const size_t left = chunk->size - *used;
  size_t taken = 0;
  bool is_well = true;
  if (connection->to_pass > 0) {
    taken = Least(connection->to_pass, left);
    connection->to_pass -= taken;
    is_well = Send(connection->client, bytes, taken, chunk);
  } else if (connection->to_drop > 0) {
    taken = Least(connection->to_drop, left);
    connection->to_drop -= taken;
  } else {
    const size_t header_size = connection->is_open ? kPacketSize : kOpeningSize;
    taken = Least(header_size - connection->header_size, left);
    memcpy(connection->header + connection->header_size, bytes, taken);
    connection->header_size += taken;
    if (connection->header_size == header_size) is_well = Begin(connection, chunk);
  }
  *used += taken;
  if (connection->to_pass > 0) return is_well;
  if (connection->ending == kStall) connection->is_silent = true;
  return is_well && connection->ending != kCut;
}

static bool FromServer(struct Connection* connection) {
  static struct Chunk chunk;
  if (!Receive(connection->server, &chunk)) return false;
  bool is_well = true;
  for (size_t used = 0; is_well && !connection->is_silent && used < chunk.size;) {
    is_well = Step(connection, &chunk, &used);
  }
  CloseFiles(&chunk);
  return is_well;
}

static bool FromClient(struct Connection* connection) {
  static struct Chunk chunk;
  if (!Receive(connection->client, &chunk)) return false;
  turns += connection->has_answer;
  connection->has_answer = false;
  const bool is_well = Send(connection->server, chunk.bytes, chunk.size, &chunk);
  CloseFiles(&chunk);
  return is_well;
}

static int OpenSocket(unsigned display, struct sockaddr_un* address) {
  *address = (struct sockaddr_un){.sun_family = AF_UNIX};
  snprintf(address->sun_path, sizeof(address->sun_path), "/tmp/.X11-unix/X%u", display);
  return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
}

static int Listen(unsigned display) {
  struct sockaddr_un address;
  const int listener = OpenSocket(display, &address);
  if (bind(listener, (struct sockaddr*)&address, sizeof(address)) != 0 ||
      listen(listener, kMostConnections) != 0) {
    perror(address.sun_path);
    exit(EXIT_FAILURE);
  }
  return listener;
}

static void Accept(int listener, unsigned server_display) {
  struct sockaddr_un address;
  const int client = accept(listener, NULL, NULL);
  const int server = OpenSocket(server_display, &address);
  if (connection_count == kMostConnections ||
      connect(server, (struct sockaddr*)&address, sizeof(address)) != 0) {
    close(client);
    close(server);
    return;
  }
  connections[connection_count++] = (struct Connection){.client = client, .server = server};
}

static void CloseConnection(size_t index) {
  close(connections[index].client);
  close(connections[index].server);
  connections[index] = connections[--connection_count];
}

static bool Spoil(const char* arguments) {
  char fault[16];
  unsigned long answer;
  unsigned value = 0;
  if (sscanf(arguments, "%lu %15s %u", &answer, fault, &value) < 2) return false;
  enum Fault kind = kNone;
  while (kind <= kDelay && strcmp(fault, kFaultNames[kind]) != 0) ++kind;
  if (kind > kDelay) return false;
  plan = (struct Plan){kind, answer, value};
  answers = 0;
  turns = 0;
  return true;
}

static void HangUp(bool all) {
  for (size_t index = connection_count; index-- > 0;) {
    if (all || connections[index].is_silent) CloseConnection(index);
  }
}

// False at the end of the input.
static bool RunNextCommand(void) {
  char line[128];
  if (!fgets(line, sizeof(line), stdin)) return false;
  const bool drops = strcmp(line, "drop\n") == 0;
  const bool hangs_up = drops || strcmp(line, "hangup\n") == 0;
  if (hangs_up) HangUp(drops);
  const bool is_done = hangs_up || strcmp(line, "count\n") == 0 ||
                       (strncmp(line, "spoil ", 6) == 0 && Spoil(line + 6));
  printf("%s %llu %llu\n", is_done ? "ok" : "error", (unsigned long long)answers,
         (unsigned long long)turns);
  return true;
}

int main(int argc, char** argv) {
  if (argc != 3) return EXIT_FAILURE;
  const int listener = Listen((unsigned)atoi(argv[1]));
  const unsigned server_display = (unsigned)atoi(argv[2]);
  setvbuf(stdin, NULL, _IONBF, 0);  // what is buffered, poll() does not see
  setvbuf(stdout, NULL, _IOLBF, 0);
  for (;;) {
    struct pollfd sources[kFirstStreams + 2 * kMostConnections] = {{STDIN_FILENO, POLLIN, 0},
                                                                   {listener, POLLIN, 0}};
    for (size_t index = 0; index < connection_count; ++index) {
      struct pollfd* pair = sources + kFirstStreams + 2 * index;
      pair[0] = (struct pollfd){connections[index].client, POLLIN, 0};
      pair[1] =
          (struct pollfd){connections[index].is_silent ? -1 : connections[index].server, POLLIN, 0};
    }
    if (poll(sources, kFirstStreams + 2 * connection_count, -1) < 0) return EXIT_FAILURE;
    // From the last, because closing one moves the last into its place.
    for (size_t index = connection_count; index-- > 0;) {
      const struct pollfd* pair = sources + kFirstStreams + 2 * index;
      const bool is_well = (!pair[0].revents || FromClient(&connections[index])) &&
                           (!pair[1].revents || FromServer(&connections[index]));
      if (!is_well) CloseConnection(index);
    }
    if (sources[1].revents) Accept(listener, server_display);
    if (sources[0].revents && !RunNextCommand()) return EXIT_SUCCESS;
  }
}
