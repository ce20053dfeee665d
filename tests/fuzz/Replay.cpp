// Gives each file that is named to the fuzzer's rules, where the compiler has no fuzzer of its own.
#include "support/KnownFile.h"

#include <cstdint>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) __attribute__((weak));
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char* argv[])
{
    if (LLVMFuzzerInitialize != nullptr) LLVMFuzzerInitialize(&argc, &argv);
    if (argc < 2) return EXIT_FAILURE; // a corpus that isn't there
    for (int i = 1; i < argc; ++i) {
        const auto input = Read(argv[i]);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    }
}
