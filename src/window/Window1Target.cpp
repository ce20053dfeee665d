// The choice of the target by menu and by radio button, the listing option, and the About box.
#include "window/Targets.h"

#include <algorithm>
#include <iterator>

const TargetRow* Window1::Target() const
{
    const auto* const marked =
        std::ranges::find_if(kTargets, [this](const auto* row) { return (menuBar_.*row->menuItem).HasCheckMark(); });
    return marked == std::end(kTargets) ? nullptr : *marked;
}

void Window1::RadioButtonPC1600_Action()
{
    if (RadioButtonPC1600.Value()) ChooseTarget(kTargetPC1600, kTargetPC1600.title);
}

void Window1::RadioButtonPokEmul_Action()
{
    if (RadioButtonPokEmul.Value()) ChooseTarget(kTargetPokEmul, kTargetPokEmul.title);
}

bool Window1::OptionAudioSharp_Action()
{
    if (Target() != &kTargetPC1600) ChooseTarget(kTargetPC1600, kTargetPC1600.menuTitle);
    return true;
}

bool Window1::OptionAudioPokEmul_Action()
{
    if (Target() != &kTargetPokEmul) ChooseTarget(kTargetPokEmul, kTargetPokEmul.menuTitle);
    return true;
}

void Window1::SetTarget(const TargetRow& target)
{
    for (const auto* const row : kTargets)
        (menuBar_.*row->menuItem).SetHasCheckMark(row == &target);
    (this->*target.radioButton).SetValue(true);
}

void Window1::ChooseTarget(const TargetRow& target, const MessagePair& title)
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
