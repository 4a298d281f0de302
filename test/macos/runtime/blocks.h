// The classes of blocks, as compiled code refers to them. See blocks.cc.
#pragma once

#include <Block.h>

extern "C" {

// Each has room for a class structure; the compiler puts its address into a block as the block's
// class.
inline constexpr int kClassWords = 32;
extern void* _NSConcreteStackBlock[kClassWords];
extern void* _NSConcreteMallocBlock[kClassWords];
extern void* _NSConcreteGlobalBlock[kClassWords];

}  // extern "C"
