// With libFuzzer, which has its own main function.
#include "tests/fuzz/write_seeds.h"

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    if (fuzz::write_seeds(*argc, *argv)) std::_Exit(0);
    return 0;
}
