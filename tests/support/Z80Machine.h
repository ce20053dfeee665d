// Z80Machine.h: a Z80 that plays a finished image and tells what leaves its port.
#pragma once

#include <z80ex/z80ex.h>

#include <algorithm>
#include <string_view>
#include <vector>

struct Level {
    int value;
    long start; // T-states since the image was entered, at the end of the OUT that set it
};

/// Runs `image` from its first byte, at 80C5, until it returns, on a machine that waits `waits` T-states at each opcode
/// fetch: what it writes to port 18. The system routines return at once.
inline std::vector<Level> Play(std::string_view image, long waits)
{
    constexpr Z80EX_WORD kLoadAddress = 0x80C5;
    constexpr Z80EX_WORD kCaller = 0; // what the empty memory at the stack's top returns to
    constexpr Z80EX_BYTE kRet = 0xC9;
    struct Machine {
        std::vector<Z80EX_BYTE> memory = std::vector<Z80EX_BYTE>(0x10000);
        int written = -1; // to port 18, by the instruction that is running
        long fetches = 0; // of opcodes, by the instruction that is running
    } machine;
    for (const auto routine : {0x0112U, 0x0109U, 0x00EBU})
        machine.memory[routine] = kRet;
    std::ranges::copy(image, machine.memory.begin() + kLoadAddress);

    auto* const cpu = z80ex_create(
        [](auto*, Z80EX_WORD address, int isOpcodeFetch, void* data) {
            static_cast<Machine*>(data)->fetches += isOpcodeFetch;
            return static_cast<Machine*>(data)->memory[address];
        },
        &machine, [](auto*, auto address, auto value, auto* m) { static_cast<Machine*>(m)->memory[address] = value; },
        &machine, [](auto*, Z80EX_WORD, void*) -> Z80EX_BYTE { return 0; }, nullptr,
        [](auto*, Z80EX_WORD port, Z80EX_BYTE value, void* data) {
            if ((port & 0xFF) == 0x18) static_cast<Machine*>(data)->written = value; // the high byte carries A
        },
        &machine, [](auto*, void*) -> Z80EX_BYTE { return 0; }, nullptr);
    z80ex_set_reg(cpu, regPC, kLoadAddress);
    z80ex_set_reg(cpu, regSP, 0xFFF0);

    std::vector<Level> levels;
    for (long time = 0; z80ex_get_reg(cpu, regPC) != kCaller && time < 2'000'000'000;) {
        machine.written = -1;
        machine.fetches = 0;
        time += z80ex_step(cpu);
        time += waits * machine.fetches;
        if (machine.written >= 0) levels.push_back({machine.written, time});
    }
    z80ex_destroy(cpu);
    return levels;
}
