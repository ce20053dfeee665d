// Z80Machine.h: a Z80 that plays a finished image and tells what leaves its port.
#pragma once

#include <z80ex/z80ex.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

struct Level {
    int value;
    long start; // T-states since the image was entered, at the end of the OUT that set it

    bool operator==(const Level&) const = default;
};

struct Run {
    std::vector<Level> levels;
    std::optional<unsigned> stray; // where it read or wrote what is neither its own nor the machine's, and was stopped
};

/// Runs `image` from its first byte, at `address`, until it returns, on a machine that waits `waits` T-states at each
/// opcode fetch: what it writes to port 18. The system routines return at once.
inline Run RunAt(Z80EX_WORD address, std::string_view image, long waits)
{
    constexpr Z80EX_WORD kCaller = 0; // what the empty memory at the stack's top returns to
    constexpr Z80EX_WORD kStack = 0xFFF0;
    constexpr Z80EX_WORD kDeepest = kStack - 16;
    constexpr Z80EX_BYTE kRet = 0xC9;
    struct Machine {
        unsigned first;
        std::size_t size;
        std::vector<Z80EX_BYTE> memory = std::vector<Z80EX_BYTE>(0x10000);
        int written = -1; // to port 18, by the instruction that is running
        long fetches = 0; // of opcodes, by the instruction that is running
        Run run = {};

        Z80EX_BYTE& At(unsigned place)
        {
            const bool isOwn = place >= first && place < first + size;
            const bool isOnStack = place >= kDeepest && place < kStack + 2;
            const bool isSystem = place == 0x0112 || place == 0x0109 || place == 0x00EB;
            if (!isOwn && !isOnStack && !isSystem && !run.stray) run.stray = place;
            return memory[place];
        }
    } machine{.first = address, .size = image.size()};
    for (const auto routine : {0x0112U, 0x0109U, 0x00EBU})
        machine.memory[routine] = kRet;
    std::ranges::copy(image, machine.memory.begin() + address);

    auto* const cpu = z80ex_create(
        [](auto*, Z80EX_WORD place, int isOpcodeFetch, void* data) {
            static_cast<Machine*>(data)->fetches += isOpcodeFetch;
            return static_cast<Machine*>(data)->At(place);
        },
        &machine, [](auto*, auto place, auto value, auto* m) { static_cast<Machine*>(m)->At(place) = value; }, &machine,
        [](auto*, Z80EX_WORD, void*) -> Z80EX_BYTE { return 0; }, nullptr,
        [](auto*, Z80EX_WORD port, Z80EX_BYTE value, void* data) {
            if ((port & 0xFF) == 0x18) static_cast<Machine*>(data)->written = value; // the high byte carries A
        },
        &machine, [](auto*, void*) -> Z80EX_BYTE { return 0; }, nullptr);
    z80ex_set_reg(cpu, regPC, address);
    z80ex_set_reg(cpu, regSP, kStack);

    for (long time = 0; z80ex_get_reg(cpu, regPC) != kCaller && !machine.run.stray && time < 2'000'000'000;) {
        machine.written = -1;
        machine.fetches = 0;
        time += z80ex_step(cpu);
        time += waits * machine.fetches;
        if (machine.written >= 0) machine.run.levels.push_back({machine.written, time});
    }
    z80ex_destroy(cpu);
    return machine.run;
}

/// The same at 80C5, where the window's player runs.
inline std::vector<Level> Play(std::string_view image, long waits)
{
    return RunAt(0x80C5, image, waits).levels;
}
