// Window1.h: the one window, and the one home of the conversion.
//
// All conversion state is in the properties below; each event handler works on them from start to end, one handler at a
// time. Headers and run bytes are kept as HexTokenText until the moment of saving.
#pragma once

#include "core/BackgroundTask.h"
#include "core/MessagePair.h"
#include "platform/Controls.h"
#include "platform/Dialogs.h"
#include "platform/Window.h"
#include "window/MainMenuBar.h"
#include "window/WindowLayout.h"

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

struct TargetRow;

class Window1 : public platform::Window {
public:
    Window1(platform::EventGate& gate, MainMenuBar& menuBar, platform::Dialogs& dialogs);

    // The properties.
    bool mDragInside = false;        // a drag has entered, or a drop has begun
    std::string strZeile;            // bytes of the dropped file; after the tests its samples only
    std::u32string AdresseAudioFile; // the typed address while it is tested
    std::int64_t Datengroesse = 0;   // run bytes; from FinishImage on with the header, but not for PokEmul
    std::string HeaderPC1600;        // 131 tokens
    std::string HeaderPokeMul;       // 115 tokens
    std::string HighByteDatenAnfang; // load address, one token
    std::string LowByteDatenAnfang;  // load address, one token
    std::string PrgLngLowByte;       // program length, one token
    std::string PrgLngHighByte;      // program length, one token
    std::string BinZeile;            // the run bytes as tokens, the end mark last
    std::string BinStringPC1600;     // the file's bytes, whatever the target
    std::int64_t HeaderLaenge = 0;   // tokens of the target's header
    std::string Language = "ger";    // of every text that the window itself chooses: "ger" or "eng"

    // The controls, in the order of creation.
    platform::Label LabelDragAndDrop{*this, RowOf("LabelDragAndDrop")};
    platform::TextArea TextAreaCodeAusgabe{*this, RowOf("TextAreaCodeAusgabe")};
    platform::Canvas Canvas1{TextAreaCodeAusgabe, RowOf("Canvas1"), "Start1"};
    platform::TextField TextFieldAudioAdresse{*this, RowOf("TextFieldAudioAdresse")};
    platform::Label Label2{*this, RowOf("Label2")};
    platform::Label Label1{*this, RowOf("Label1")};
    platform::Label Label3{*this, RowOf("Label3")};
    platform::RadioButton RadioButtonPC1600{*this, RowOf("RadioButtonPC1600")};
    platform::RadioButton RadioButtonPokEmul{*this, RowOf("RadioButtonPokEmul")};
    platform::Label Label4{*this, RowOf("Label4")};

    // window/Window1.cpp
    /// Tells the user of an exception that has ended an event or a save.
    void TellOfFailure(const std::exception& failure);

    // window/Window1Drag.cpp
    bool Event_DragEnter() override;
    bool Event_DragOver() override;
    void Event_DragExit() override;

    // window/Window1Drop.cpp
    void Event_DropObject(const platform::DragItem& item) override;

    // window/Window1Address.cpp
    bool TextFieldAudioAdresse_KeyDown(std::u32string_view key);

    // window/Window1Target.cpp
    /// The target whose menu item has the check mark; nullptr where none has, which no choice of the user leads to.
    [[nodiscard]] const TargetRow* Target() const;
    void SetTarget(const TargetRow& target);
    void RadioButtonPC1600_Action();
    void RadioButtonPokEmul_Action();
    bool OptionAudioSharp_Action();
    bool OptionAudioPokEmul_Action();
    bool OptionDefBWindow_Action();
    bool InfoUeber_Action();

private:
    // window/Window1.cpp
    void AddHandlers();
    void Event_Open();
    void ShowMessage(const MessagePair& message);
    void SetText(platform::Label& label, const MessagePair& text);
    void SetTitleText(const MessagePair& title);
    [[nodiscard]] bool ListingWanted() const;
    void EmptyListing();

    // window/Window1Drop.cpp
    void RefuseTooLarge();
    void LoadHeaders();
    void PatchHeader(std::string_view RateToken, std::string_view NameTokens);
    void EncodePeriods();

    // window/Window1Finish.cpp
    void FinishImage();
    void PatchProgramLength();
    void ShowSize(const MessagePair& message);
    void ShowPrompts();
    void RefuseImage();

    // window/Window1Address.cpp
    void PatchAddress(std::int64_t address);
    void ForgetAddress();
    void OpenAddressEntry();
    void CloseAddressEntry();

    // window/Window1Save.cpp
    [[nodiscard]] bool DoSaveAS();

    // window/Window1Target.cpp
    void ChooseTarget(const TargetRow& target, const MessagePair& title);

    // The prompts for the address stay open when a further drop is refused. There is nothing to save then: the headers
    // are templates again, and the run bytes are those of the recording before.
    enum class AddressEntry { Closed, WithoutImage, WithImage };

    MainMenuBar& menuBar_;
    platform::Dialogs& dialogs_;
    AddressEntry addressEntry_ = AddressEntry::Closed;
    core::BackgroundTask RuntimeBackgroundTask;
};
