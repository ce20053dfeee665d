#include "window/Window1.h"

#include "files/Files.h"
#include "platform/Application.h"
#include "platform/Texts.h"
#include "window/Targets.h"

#include <new>
#include <optional>

namespace {

constexpr MessagePair kNoMemory{.ger = "Dafür reicht der Speicher nicht.",
                                .eng = "There is not enough memory for this."};
constexpr MessagePair kNoOrdinaryFile{.ger = "Das ist keine gewöhnliche Datei.", .eng = "This is no ordinary file."};
constexpr MessagePair kBeingChanged{.ger = "Die Datei wird gerade von einem anderen Programm geändert.",
                                    .eng = "The file is being changed by another program."};
constexpr MessagePair kWriteProtected{.ger = "Diese Datei ist schreibgeschützt.",
                                      .eng = "This file is write-protected."};
constexpr MessagePair kFolderProtected{.ger = "In diesem Ordner kann keine Datei angelegt werden.",
                                       .eng = "No file can be made in this folder."};
constexpr MessagePair kExists{.ger = "Unter diesem Namen gibt es inzwischen eine Datei.",
                              .eng = "By now there is a file of this name."};

/// None where only the system has words for it.
std::optional<MessagePair> ReasonOf(files::IOException::Kind kind)
{
    using Kind = files::IOException::Kind;
    switch (kind) {
    case Kind::NoOrdinaryFile: return kNoOrdinaryFile;
    case Kind::BeingChanged: return kBeingChanged;
    case Kind::WriteProtected: return kWriteProtected;
    case Kind::FolderProtected: return kFolderProtected;
    case Kind::Exists: return kExists;
    case Kind::IsTheSource: // of nothing that the window writes
    case Kind::System: break;
    }
    return std::nullopt;
}

} // namespace

Window1::Window1(platform::EventGate& gate, MainMenuBar& menuBar, platform::Dialogs& dialogs)
    : Window(gate, menuBar, kWindow),
      menuBar_(menuBar),
      dialogs_(dialogs),
      RuntimeBackgroundTask([this] { dialogs_.RuntimeBackgroundTask(); })
{
    Label1.SpeakAsNameOf(TextFieldAudioAdresse);
    Label4.SpeakAsDescriptionOf(TextFieldAudioAdresse);
    AddHandlers();
    Event_Open();
}

void Window1::AddHandlers()
{
    TextFieldAudioAdresse.SetKeyDown([this](std::u32string_view key) { return TextFieldAudioAdresse_KeyDown(key); });
    for (const auto* const row : kTargets) {
        (this->*row->radioButton).SetAction([this, row] { (this->*row->radioAction)(); });
        (menuBar_.*row->menuItem).SetHandler([this, row] { return (this->*row->menuAction)(); });
    }
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

void Window1::TellOfFailure(const std::exception& failure)
{
    if (const auto* const file = dynamic_cast<const files::IOException*>(&failure)) {
        const auto text = platform::ErrorText(file->Error);
        if (const auto reason =
                TextFor(Language, ReasonOf(file->ErrorKind).value_or(MessagePair{.ger = text, .eng = text})))
            dialogs_.MsgBox(platform::ShownName(platform::NameOf(file->File)) + ": " + std::string(*reason));
    } else if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) {
        ShowMessage(kNoMemory);
    } else {
        dialogs_.MsgBox(failure.what());
    }
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

bool Window1::ListingWanted() const
{
    return menuBar_.OptionDefBWindow.HasCheckMark();
}

// The text of a listing that nobody wants any more stays.
void Window1::EmptyListing()
{
    if (ListingWanted()) TextAreaCodeAusgabe.SetText("");
}
