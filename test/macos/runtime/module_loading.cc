// Lets GCC's runtime accept the modules that Clang emits for gnustep-1.9.
// Clang stamps them with ABI version 9 or 10, the runtime takes 8 only. For a module that merely
// uses classes the layouts agree, so the stamp is corrected on the way. The linker reroutes the
// modules' registration to here (--wrap in Doubles.cmake).
#include <cstdio>
#include <cstdlib>

namespace {

constexpr unsigned long kGccAbiVersion = 8;

struct SymbolTable {
  unsigned long selector_count;
  void* selectors;
  unsigned short class_count;  // categories are not looked at: Clang adds one for the protocols
};

struct Module {
  unsigned long version;
  unsigned long size;
  const char* name;
  const SymbolTable* symbols;
};

}  // namespace

extern "C" {

void __real___objc_exec_class(Module* module);

void __wrap___objc_exec_class(Module* module) {
  if (module->version > kGccAbiVersion) {
    if (module->symbols && module->symbols->class_count > 0) {
      std::fprintf(stderr, "%s: ARC code must not define Objective-C classes here\n", module->name);
      std::abort();
    }
    module->version = kGccAbiVersion;
    module->size = sizeof(Module);
  }
  __real___objc_exec_class(module);
}

}  // extern "C"
