// Blocks that the doubles keep. Thread: any.
#pragma once

#include <memory>

#include <Block.h>

namespace macdoubles {

/// A heap copy of a block that lives as long as its last owner.
template <class BlockType>
std::shared_ptr<const void> OwnBlock(BlockType block) {
  return {_Block_copy(reinterpret_cast<const void*>(block)), _Block_release};
}

template <class BlockType>
BlockType BlockOf(const std::shared_ptr<const void>& owner) {
  return reinterpret_cast<BlockType>(const_cast<void*>(owner.get()));
}

}  // namespace macdoubles
