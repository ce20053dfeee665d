// The choice of the target by menu and by radio button, the listing option, and the About box.
#include "window/SharedTexts.h"
#include "window/Window1.h"

namespace {

// The menu's English titles differ from those of the radio buttons; the German ones agree.
constexpr MessagePair kMenuTitlePC1600{.ger = kTitlePC1600.ger, .eng = "Tonfloss für PC-1600"};
constexpr MessagePair kMenuTitlePokEmul{.ger = kTitlePokEmul.ger, .eng = "Tonfloss für PokEmul"};

} // namespace

void Window1::RadioButtonPC1600_Action()
{
    if (RadioButtonPC1600.Value()) ChooseTarget(SoundTarget::PC1600, kTitlePC1600);
}

void Window1::RadioButtonPokEmul_Action()
{
    if (RadioButtonPokEmul.Value()) ChooseTarget(SoundTarget::PokEmul, kTitlePokEmul);
}

bool Window1::OptionAudioSharp_Action()
{
    if (menuBar_.OptionAudioPokEmul.HasCheckMark()) ChooseTarget(SoundTarget::PC1600, kMenuTitlePC1600);
    return true;
}

bool Window1::OptionAudioPokEmul_Action()
{
    if (menuBar_.OptionAudioSharp.HasCheckMark()) ChooseTarget(SoundTarget::PokEmul, kMenuTitlePokEmul);
    return true;
}

void Window1::SetTarget(SoundTarget target)
{
    menuBar_.OptionAudioSharp.SetHasCheckMark(target == SoundTarget::PC1600);
    menuBar_.OptionAudioPokEmul.SetHasCheckMark(target == SoundTarget::PokEmul);
    (target == SoundTarget::PC1600 ? RadioButtonPC1600 : RadioButtonPokEmul).SetValue(true);
}

void Window1::ChooseTarget(SoundTarget target, const MessagePair& title)
{
    SetTarget(target);
    SetTitleText(title);
    // The image that waits for its address was made for the other target and would fit neither.
    if (addressEntry_ != AddressEntry::Closed) CloseAddressEntry();
}

bool Window1::OptionDefBWindow_Action()
{
    menuBar_.OptionDefBWindow.SetHasCheckMark(!ListingWanted());
    return true;
}

bool Window1::InfoUeber_Action()
{
    static constexpr MessagePair kAbout{
        .ger = "V.1.00 / 2023\n"
               "\n"
               "Das Programm wandelt Microsoft Wave Soundfiles in Sharp PC-1600 Sondfiles.\n"
               "\n"
               "Geschrieben von Jorin Falkenau\n"
               "Erstellt mit C++ und Qt\n"
               "Lauffähig ab Windows 7 und OS X ab 10.7\n"
               "\n"
               "Mail: tonfloss@example.org\n"
               "WEB: https://tonfloss.example.org",
        .eng = "V.1.00 / 2023\n"
               "\n"
               "These application converts Microsoft Wave sound files into Sharp PC-1600 sound files.\n"
               "\n"
               "The application was programmed by Jorin Falkenau\n"
               "Made with C++ and Qt\n"
               "Run up Windows 7 and OS X up 10.7\n"
               "\n"
               "Mail: tonfloss@example.org\n"
               "WEB: https://tonfloss.example.org"};
    ShowMessage(kAbout);
    return true;
}
