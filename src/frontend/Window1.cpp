#include "Window1.h"

#include "Application.h"

Window1::Window1(platform::EventGate& gate, MainMenuBar& menuBar, platform::Dialogs& dialogs)
    : Window(gate, menuBar, kWindow),
      menuBar_(menuBar),
      dialogs_(dialogs),
      RuntimeBackgroundTask([this] { dialogs_.RuntimeBackgroundTask(); })
{
    RadioButtonPC1600.SetValue(true);
    Label1.SetNames(TextFieldAudioAdresse);
    Label4.SetDescribes(TextFieldAudioAdresse);
    AddHandlers();
    Event_Open();
}

void Window1::AddHandlers()
{
    TextFieldAudioAdresse.SetKeyDown([this](std::u32string_view key) { return TextFieldAudioAdresse_KeyDown(key); });
    RadioButtonPC1600.SetAction([this] { RadioButtonPC1600_Action(); });
    RadioButtonPokEmul.SetAction([this] { RadioButtonPokEmul_Action(); });
    menuBar_.OptionAudioSharp.SetHandler([this] { return OptionAudioSharp_Action(); });
    menuBar_.OptionAudioPokEmul.SetHandler([this] { return OptionAudioPokEmul_Action(); });
    menuBar_.InfoUeber.SetHandler([this] { return InfoUeber_Action(); });
    menuBar_.OptionDefBWindow.SetHandler([this] { return OptionDefBWindow_Action(); });
}

void Window1::Event_Open()
{
    AcceptFileDrop();
    const auto screen = platform::FirstScreen();
    SetLeft(CentredOn(screen.Width, kWindow.width));
    SetTop(CentredOn(screen.Height, kWindow.height));
}

void Window1::ShowMessage(const MessagePair& message)
{
    if (const auto text = TextFor(Language, message)) dialogs_.MsgBox(*text);
}

void Window1::SetText(platform::Label& label, const MessagePair& text)
{
    if (const auto chosen = TextFor(Language, text)) label.SetText(*chosen);
}

void Window1::SetTitleText(const MessagePair& title)
{
    if (const auto text = TextFor(Language, title)) SetTitle(*text);
}
