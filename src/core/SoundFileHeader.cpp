#include "core/SoundFileHeader.h"

#include "core/HexTokenText.h"
#include "core/LoadAddress.h"
#include "machine/Memory.h"

#include <algorithm>
#include <array>

namespace core {
namespace {

// clang-format off
// One instruction a line, with its address when the player lies at 80C5.
constexpr std::string_view kHeaderPC1600 =
    "&Hff&H10&H00&H00&H10"
    "&H65&H14"                             // program length, always replaced
    "&H00"
    "&Hc5&H80"                             // load address
    "&H00"
    "&Hc5&H80"                             // start address
    "&H00&H00&H0f"
    "&Hcd&H0f&H81"                         // 80C5  CALL 810F        title routine
    "&Hf3"                                 // 80C8  DI
    "&H21&H38&H81"                         // 80C9  LD HL,8138       first run byte
    "&H7e"                                 // 80CC  LD A,(HL)        next run byte
    "&Hfe&Hff"                             // 80CD  CP FF
    "&Hca&Hf3&H80"                         // 80CF  JP Z,80F3        end mark: leave
    "&H47"                                 // 80D2  LD B,A
    "&H3e&Hc0"                             // 80D3  LD A,C0
    "&Hd3&H18"                             // 80D5  OUT (18),A       first half is high
    "&Hcd&Hf5&H80"                         // 80D7  CALL 80F5        one delay
    "&H10&Hfb"                             // 80DA  DJNZ 80D7        as many as the byte says
    "&H7e"                                 // 80DC  LD A,(HL)
    "&H47"                                 // 80DD  LD B,A
    "&Hfe&Hfe"                             // 80DE  CP FE
    "&H20&H04"                             // 80E0  JR NZ,80E6
    "&H3e&Hc0"                             // 80E2  LD A,C0          254: stays high
    "&H18&H02"                             // 80E4  JR 80E8
    "&H3e&H40"                             // 80E6  LD A,40          any other byte: low
    "&Hd3&H18"                             // 80E8  OUT (18),A       second half
    "&Hcd&Hf5&H80"                         // 80EA  CALL 80F5        one delay
    "&H10&Hfb"                             // 80ED  DJNZ 80EA        as many as the byte says
    "&H23"                                 // 80EF  INC HL
    "&Hc3&Hcc&H80"                         // 80F0  JP 80CC
    "&Hfb"                                 // 80F3  EI
    "&Hc9"                                 // 80F4  RET
    "&Hc5"                                 // 80F5  PUSH BC          delay routine
    "&He5"                                 // 80F6  PUSH HL
    "&H21&H0e&H81"                         // 80F7  LD HL,810E       rate byte
    "&H7e"                                 // 80FA  LD A,(HL)
    "&H06&H0c"                             // 80FB  LD B,0C          12 passes
    "&Hfe&H06"                             // 80FD  CP 06
    "&H28&H08"                             // 80FF  JR Z,8109        at 6000 Hz
    "&H06&H05"                             // 8101  LD B,05          5 passes
    "&Hfe&H08"                             // 8103  CP 08
    "&H28&H02"                             // 8105  JR Z,8109        at 8000 Hz
    "&H06&H01"                             // 8107  LD B,01          1 pass at 11025 Hz
    "&H10&Hfe"                             // 8109  DJNZ 8109
    "&He1"                                 // 810B  POP HL
    "&Hc1"                                 // 810C  POP BC
    "&Hc9"                                 // 810D  RET
    "&H0b"                                 // 810E  rate byte, always replaced
    "&Hcd&H12&H01"                         // 810F  CALL 0112        title routine
    "&Hcd&H09&H01"                         // 8112  CALL 0109
    "&H3e&H0d"                             // 8115  LD A,0D
    "&H11&H1e&H81"                         // 8117  LD DE,811E       title
    "&Hcd&Heb&H00"                         // 811A  CALL 00EB
    "&Hc9"                                 // 811D  RET
    "&H20&H20&H20&H20&H20&H20&H20&H20&H20" // 811E  title, 25 blanks, always replaced
    "&H20&H20&H20&H20&H20&H20&H20&H20"
    "&H20&H20&H20&H20&H20&H20&H20&H20"
    "&H0d";                                // 8137  its end; the run bytes follow at 8138
// clang-format on

static_assert(kHeaderPC1600.size() == kTokensPC1600 * kTokenLength);

// Where the operands stand that are addresses within the image, when the player lies at 80C5: what each points to is
// what stands there above. The three CALLs to 0112, 0109 and 00EB go into the machine and stay.
constexpr std::array kOperands{
    0x80C6, // title routine
    0x80CA, // first run byte
    0x80D0, // end
    0x80D8, // delay routine
    0x80EB, // delay routine
    0x80F1, // next run byte
    0x80F8, // rate byte
    0x8118, // title
};

/// Of an operand, as bytes from the player's first one.
constexpr std::size_t OffsetOf(int operand)
{
    return static_cast<std::size_t>(operand - machine::kPlayerAddress);
}

/// What an operand points to, as bytes from the player's first one.
constexpr std::int64_t TargetOf(int operand)
{
    const auto token = kFileHeaderTokens + OffsetOf(operand);
    return ByteOfToken(kHeaderPC1600, token) + 0x100 * ByteOfToken(kHeaderPC1600, token + 1) - machine::kPlayerAddress;
}

constexpr auto kPlayer = kHeaderPC1600.substr(kFileHeaderTokens * kTokenLength);
constexpr std::string_view kTitleEnd = "&H0d";

} // namespace

constinit const HeaderLayout kLayoutPC1600{.tokens = kHeaderPC1600, .absent = 0};
constinit const HeaderLayout kLayoutPokeMul{.tokens = kPlayer, .absent = kFileHeaderTokens};

std::string WithRateAndTitle(std::string_view header, const HeaderLayout& layout, std::string_view rateToken,
                             std::string_view nameTokens)
{
    return Splice(Splice(header, kRateToken - layout.absent, rateToken), kTitleToken - layout.absent,
                  std::string(nameTokens) + std::string(kTitleEnd));
}

std::optional<WordTokens> WordTokensOf(std::int64_t number)
{
    if (number > 0xFFFF) return std::nullopt;
    return WordTokens{.low = std::string(TokenOf(static_cast<std::uint8_t>(number & 0xFF))),
                      .high = std::string(TokenOf(static_cast<std::uint8_t>(number >> 8)))};
}

std::string WithProgramLength(std::string_view header, const WordTokens& length)
{
    return Splice(header, kProgramLengthToken, length.low + length.high);
}

std::string WithAddress(std::string_view header, const WordTokens& address)
{
    const auto tokens = address.low + address.high;
    return Splice(Splice(header, kLoadAddressToken, tokens), kStartAddressToken, tokens);
}

std::string WithPlayerAt(std::string_view header, const HeaderLayout& layout, std::int64_t address)
{
    std::string laidOut(header);
    for (const auto operand : kOperands) {
        const auto tokens = WordTokensOf(address + TargetOf(operand)).value();
        const auto token = kFileHeaderTokens - layout.absent + OffsetOf(operand);
        laidOut.replace(token * kTokenLength, 2 * kTokenLength, tokens.low + tokens.high);
    }
    return laidOut;
}

std::optional<std::int64_t> PlayerAddressOf(std::string_view player)
{
    const auto byteAt = [&](std::size_t offset) { return static_cast<std::uint8_t>(player[offset]); };
    const auto addressBy = [&](int operand) {
        return byteAt(OffsetOf(operand)) + 0x100 * byteAt(OffsetOf(operand) + 1) - TargetOf(operand);
    };
    const auto address = addressBy(kOperands.front());
    const bool isOne = std::ranges::all_of(kOperands, [&](int operand) { return addressBy(operand) == address; });
    if (!isOne || RefusalOf(address, 0)) return std::nullopt;
    return address;
}

} // namespace core
