#pragma once

/// Inline functions that sources for several instruction sets share are in the inline namespace
/// ZENTRIX_INSTRUCTION_SET. Callers do not see it, but the linker does: a function that is not inlined has a name of
/// its own for each instruction set, so that code for plain x86-64 never calls a copy with wider instructions.
#ifdef __AVX2__
#define ZENTRIX_INSTRUCTION_SET avx2
#else
#define ZENTRIX_INSTRUCTION_SET baseline
#endif
