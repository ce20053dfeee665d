#include "support/Program.h"
#include "support/Pty.h"

#include <future>

namespace {

class SendProgram : public Program {
protected:
    SendProgram() : Program(SEND_PROGRAM)
    {
        const auto write = [this](const char* name, const std::string& bytes) {
            std::ofstream(folder / "files" / name, std::ios::binary) << bytes;
        };
        write("SOUND.bin", kSoundFile);
        write("pokemul.bin", kPlayer + kRunBytes);
        write("cut.bin", kSoundFile.substr(0, 140));
    }
};

TEST_F(SendProgram, RefusesWithAMessageAndSendsNothing)
{
    ExpectRefusals({
        {1, "P none.bin --now", "none.bin: No such file or directory"},
        {1, "P cut.bin --port null", "cut.bin: no sound file: the end mark is missing"},
        {1, "P pokemul.bin --port null",
         "pokemul.bin: This is a file for PokEmul. The machine takes one for the PC-16"},
        {1, "P SOUND.bin --port null", "tonfloss-send: null: This is no serial port."},
        {1, "P SOUND.bin --port tonfloss-none", "tonfloss-send: tonfloss-none: There is no such port. Th"},
        {2, "P", "tonfloss-send: SOUND.bin is required\nTry 'tonfloss-send --help'.\n"},
        {2, "P SOUND.bin --port ''", "--port: the name is empty"},
        {2, "P SOUND.bin --baud 9601", "--baud: 9601 is none of 50, 75, 110, 150, 200, 300, 600, 1200, 2400, 4800, "},
        {2, "P SOUND.bin --baud 09600", "--baud: 09600 is none of 50"},
    });
}

TEST_F(SendProgram, ShowsWhatToTypeWaitsForReturnAndSends)
{
    Pty pty;
    const auto port = "--port " + pty.Name;
    const auto arrives = [&] { return pty.Read(kSoundFile.size()); };
    auto arrived = std::async(std::launch::async, arrives);
    EXPECT_EQ(Shell("echo | P SOUND.bin " + port), 0);
    EXPECT_EQ(out, "Type on the machine:\n"
                   "  (in PRO mode reserve 152 bytes from 80C5 up with NEW; how that is said with the 32 KB module "
                   "isn't known here)\n"
                   "  SETCOM\"COM1:\",9600,8,N,1,N,N\n"
                   "  OUTSTAT\"COM1:\"\n"
                   "  SNDSTAT\"COM1:\",28\n"
                   "  RCVSTAT\"COM1:\",28\n"
                   "  INIT\"COM1:\",8192\n"
                   "  BLOAD\"COM1:\"\n"
                   "  (when it has arrived, and if it doesn't start by itself)\n"
                   "  CALL &80C5\n"
                   "Press Return here when BLOAD waits.\n"
                   "sent: 154 bytes to " +
                       pty.Name + '\n');
    EXPECT_EQ(err, "");
    EXPECT_EQ(arrived.get(), kSoundFile);

    // Without the module; the window's file isn't laid out for it, but it can be sent.
    const auto high = kSoundFile.substr(0, 8) + "\xC5\xC0" + kSoundFile[10] + "\xC5\xC0" + kSoundFile.substr(13);
    std::ofstream(folder / "files/high.bin", std::ios::binary) << high;
    arrived = std::async(std::launch::async, arrives);
    EXPECT_EQ(Shell("P high.bin --now --baud 4800 " + port + " </dev/null"), 0);
    EXPECT_THAT(out, testing::HasSubstr("\n  (in PRO mode)\n  NEW\"S0:\",&15D\n  SETCOM\"COM1:\",4800,8,N,1,N,N\n"));
    EXPECT_THAT(out, testing::HasSubstr("\n  CALL &C0C5\nsent: 154"));
    EXPECT_THAT(err, testing::HasSubstr("high.bin: warning: "));
    EXPECT_EQ(arrived.get(), high);

    EXPECT_EQ(Shell("P SOUND.bin " + port + " </dev/null"), 1);
    EXPECT_EQ(err, "tonfloss-send: Nothing was sent, since no Return came; with --now it doesn't wait for it.\n");
    EXPECT_TRUE(pty.IsAsBefore());
}

TEST_F(SendProgram, EndsWithinASecondOfASignalAndGivesThePortBack)
{
    for (const auto* const signal : {"INT", "TERM", "HUP"}) {
        const Pty pty;
        pty.Fill();
        const std::string name = signal;
        Shell("env --default-signal=" + name + " '" SEND_PROGRAM "' SOUND.bin --now --port " + pty.Name +
              " & sleep 0.7; kill -" + name + " $!; timeout 1 tail --pid=$! -s 0.05 -f /dev/null; echo late $? >&2; " +
              "wait $!; echo status $? >&2");
        const auto* const status = name == "INT" ? "130" : name == "TERM" ? "143" : "129";
        EXPECT_EQ(err, "tonfloss-send: " + pty.Name + ": It was stopped. What the machine has got isn't whole.\n" +
                           "late 0\nstatus " + status + '\n');
        EXPECT_TRUE(pty.IsAsBefore()) << signal;
    }
}

} // namespace
