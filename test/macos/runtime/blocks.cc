// A blocks runtime that retains captured objects and counts heap blocks.
// The ones that Debian offers do neither: there, a block compiled without ARC holds captured
// objects unretained. Layout and flags are as Clang documents its block ABI.
#include "blocks.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

#include <objc/objc.h>

#include "counters.h"

extern "C" {
id objc_retain(id object);
void objc_release(id object);
}

namespace macdoubles {

std::atomic<long> live_blocks{0};

namespace {

enum Flags : int {
  kReferenceMask = 0xffff,  // the count shares the word with the flags
  kNeedsFree = 1 << 24,     // lives on the heap
  kHasHelpers = 1 << 25,
  kIsGlobal = 1 << 28,
};

// What a captured variable is, as the compiler says it to the two functions below.
enum Field : int {
  kObject = 3,
  kBlock = 7,
  kByref = 8,
  kWeak = 16,
  kByrefCaller = 128,  // the call is for the content of a __block variable
};

struct Descriptor {
  unsigned long reserved;
  unsigned long size;
  void (*copy)(void* to, const void* from);  // only when kHasHelpers
  void (*dispose)(const void* block);
};

struct Block {
  void* isa;
  std::atomic<int> flags;
  int reserved;
  void (*invoke)();
  Descriptor* descriptor;
};

/// The storage of one __block variable.
struct Byref {
  void* isa;
  Byref* forwarding;
  std::atomic<int> flags;
  unsigned size;
  void (*keep)(Byref* to, Byref* from);  // only when kHasHelpers
  void (*destroy)(Byref* byref);
};

template <class Counted>
Counted* CopyToHeap(const Counted* source, size_t size, int references) {
  auto* copy = static_cast<Counted*>(std::malloc(size));
  std::memcpy(static_cast<void*>(copy), source, size);
  copy->flags = (source->flags & ~kReferenceMask) | kNeedsFree | references;
  return copy;
}

/// True when the last reference went.
template <class Counted>
bool DropReference(Counted* counted) {
  return ((counted->flags.fetch_sub(1) - 1) & kReferenceMask) == 0;
}

Byref* RetainByref(Byref* variable) {
  Byref* const source = variable->forwarding;
  if (source->flags & kNeedsFree) {
    source->flags.fetch_add(1);
    return source;
  }
  // Two references: the block's and that of the stack frame, which disposes of it on its way out.
  Byref* const copy = CopyToHeap(source, source->size, 2);
  copy->forwarding = copy;
  source->forwarding = copy;
  if (copy->flags & kHasHelpers) copy->keep(copy, source);
  return copy;
}

void ReleaseByref(Byref* variable) {
  Byref* const byref = variable->forwarding;
  if (!(byref->flags & kNeedsFree) || !DropReference(byref)) return;
  if (byref->flags & kHasHelpers) byref->destroy(byref);
  std::free(byref);
}

}  // namespace
}  // namespace macdoubles

using namespace macdoubles;

extern "C" {

void* _NSConcreteStackBlock[kClassWords];
void* _NSConcreteMallocBlock[kClassWords];
void* _NSConcreteGlobalBlock[kClassWords];

void* _Block_copy(const void* pointer) {
  auto* const block = static_cast<Block*>(const_cast<void*>(pointer));
  if (!block || (block->flags & kIsGlobal)) return block;
  if (block->flags & kNeedsFree) {
    block->flags.fetch_add(1);
    return block;
  }
  Block* const copy = CopyToHeap(block, block->descriptor->size, 1);
  copy->isa = _NSConcreteMallocBlock;
  ++live_blocks;
  if (copy->flags & kHasHelpers) copy->descriptor->copy(copy, block);
  return copy;
}

void _Block_release(const void* pointer) {
  auto* const block = static_cast<Block*>(const_cast<void*>(pointer));
  if (!block || !(block->flags & kNeedsFree) || !DropReference(block)) return;
  if (block->flags & kHasHelpers) block->descriptor->dispose(block);
  --live_blocks;
  std::free(block);
}

void _Block_object_assign(void* destination, const void* object, const int field) {
  switch (field & ~kWeak) {
    case kObject:
      *static_cast<id*>(destination) = objc_retain(static_cast<id>(const_cast<void*>(object)));
      return;
    case kBlock:
      *static_cast<void**>(destination) = _Block_copy(object);
      return;
    case kByref:
      *static_cast<void**>(destination) =
          RetainByref(static_cast<Byref*>(const_cast<void*>(object)));
      return;
    default:
      // kByrefCaller: the content of a __block variable is not retained without ARC.
      *static_cast<const void**>(destination) = object;
  }
}

void _Block_object_dispose(const void* object, const int field) {
  switch (field & ~kWeak) {
    case kObject:
      objc_release(static_cast<id>(const_cast<void*>(object)));
      return;
    case kBlock:
      _Block_release(object);
      return;
    case kByref:
      ReleaseByref(static_cast<Byref*>(const_cast<void*>(object)));
      return;
    default:
      return;
  }
}

}  // extern "C"
