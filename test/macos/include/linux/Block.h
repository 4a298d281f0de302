// Copying and releasing blocks by hand, for code without ARC.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

void* _Block_copy(const void* block);
void _Block_release(const void* block);
void _Block_object_assign(void* destination, const void* object, const int field);
void _Block_object_dispose(const void* object, const int field);

#ifdef __cplusplus
}
#endif

#define Block_copy(block) ((__typeof__(block))_Block_copy((const void*)(block)))
#define Block_release(block) _Block_release((const void*)(block))
