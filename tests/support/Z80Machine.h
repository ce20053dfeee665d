// Z80Machine.h: a Z80 that plays a finished image and keeps a record of what the machine around it would notice.
#pragma once

#include <z80ex/z80ex.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct Level {
    int value;
    long start;      // T-states since the image was entered, at the end of the OUT that set it
    bool interrupts; // allowed at that moment
};

struct Performance {
    std::vector<std::string> calls; // system routines, with A and the text at DE as they were given
    std::vector<Level> levels;      // of port 18
    bool otherPorts = false;
    bool interruptsAfterwards = false;
};

/// Runs `image` from its first byte, at 80C5, until it returns, on a machine that waits `waits` T-states at each opcode
/// fetch. The system routines return at once.
inline Performance Play(std::string_view image, long waits = 0)
{
    constexpr Z80EX_WORD kLoadAddress = 0x80C5;
    constexpr Z80EX_WORD kCaller = 0xFFF0; // where the image returns to
    constexpr Z80EX_BYTE kRet = 0xC9;
    struct Machine {
        std::vector<std::uint8_t> memory = std::vector<std::uint8_t>(0x10000);
        int written = -1; // to port 18, by the instruction that is running
        bool otherPort = false;
        long fetches = 0; // of opcodes, by the instruction that is running
    } machine;
    for (const auto routine : {0x0112, 0x0109, 0x00EB})
        machine.memory.at(static_cast<std::size_t>(routine)) = kRet;
    for (std::size_t i = 0; i < image.size(); ++i)
        machine.memory.at(kLoadAddress + i) = static_cast<std::uint8_t>(image[i]);
    machine.memory[0xFFEE] = kCaller & 0xFF;
    machine.memory[0xFFEF] = kCaller >> 8;

    auto* const cpu = z80ex_create(
        [](auto*, Z80EX_WORD address, int isOpcodeFetch, void* data) {
            auto& m = *static_cast<Machine*>(data);
            m.fetches += isOpcodeFetch;
            return m.memory[address];
        },
        &machine,
        [](auto*, Z80EX_WORD address, Z80EX_BYTE value, void* data) {
            static_cast<Machine*>(data)->memory[address] = value;
        },
        &machine,
        [](auto*, Z80EX_WORD, void* data) -> Z80EX_BYTE { return static_cast<Machine*>(data)->otherPort = true, 0; },
        &machine,
        [](auto*, Z80EX_WORD port, Z80EX_BYTE value, void* data) { // the high byte of the port carries A
            auto& m = *static_cast<Machine*>(data);
            if ((port & 0xFF) == 0x18)
                m.written = value;
            else
                m.otherPort = true;
        },
        &machine, [](auto*, void*) -> Z80EX_BYTE { return 0; }, nullptr);
    z80ex_set_reg(cpu, regPC, kLoadAddress);
    z80ex_set_reg(cpu, regSP, 0xFFEE);

    Performance heard;
    for (long time = 0; z80ex_get_reg(cpu, regPC) != kCaller && time < 2'000'000'000;) {
        const auto at = z80ex_get_reg(cpu, regPC);
        if (at == 0x0112 || at == 0x0109) heard.calls.push_back(at == 0x0112 ? "0112" : "0109");
        if (at == 0x00EB) {
            const auto* const title = &machine.memory[z80ex_get_reg(cpu, regDE)];
            heard.calls.push_back("00EB " + std::to_string(z80ex_get_reg(cpu, regAF) >> 8) + " " +
                                  std::string(title, title + 26));
        }
        machine.written = -1;
        machine.fetches = 0;
        time += z80ex_step(cpu);
        time += waits * machine.fetches;
        if (machine.written >= 0) heard.levels.push_back({machine.written, time, z80ex_get_reg(cpu, regIFF1) != 0});
    }
    heard.otherPorts = machine.otherPort;
    heard.interruptsAfterwards = z80ex_get_reg(cpu, regIFF1) != 0;
    z80ex_destroy(cpu);
    return heard;
}
