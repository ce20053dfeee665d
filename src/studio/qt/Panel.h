// Panel.h: beside the pictures: the part in numbers, what it is for, what it has become, and where that goes.
#pragma once

#include "core/MessagePair.h"
#include "studio/Studio.h"
#include "studio/Words.h"

#include <QWidget>

#include <array>
#include <functional>

class QAbstractButton;
class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace studio {

class Panel : public QWidget {
public:
    struct Actions {
        std::function<void()> changed; // the studio was told something
        std::function<void(Output)> save;
        std::function<void()> send;
    };

    Panel(Studio& studio, Language language, Actions actions);

    /// As the studio is now.
    void Refresh();
    /// Whether there is a serial port.
    void SetHasPort(bool hasPort);

private:
    QGroupBox* MakePart();
    QGroupBox* MakeKind();
    QGroupBox* MakeMachine();
    QGroupBox* MakeReport();
    QGroupBox* MakeResult();
    QGroupBox* MakeHandOver();

    void RefreshPart();
    void RefreshChoices();
    void RefreshReport();
    void RefreshResult();
    void RefreshHandOver();

    [[nodiscard]] const State& Now() const { return studio_.Now(); }
    [[nodiscard]] QString Say(const MessagePair& pair) const;
    QLineEdit* MakeTimeField(const MessagePair& name, bool (Studio::*type)(std::string_view));
    QPushButton* MakeButton(const MessagePair& text, const MessagePair& description, std::function<void()> action);

    Studio& studio_;
    Language language_;
    Actions actions_;

    QGroupBox* part_ = nullptr;
    QLineEdit* from_ = nullptr;
    QLineEdit* to_ = nullptr;
    QLabel* length_ = nullptr;
    QPushButton* whole_ = nullptr;
    QPushButton* undo_ = nullptr;

    QGroupBox* kind_ = nullptr;
    std::array<QAbstractButton*, prepare::kKinds.size()> kinds_{};
    QLabel* explanation_ = nullptr;

    QGroupBox* machine_ = nullptr;
    QComboBox* target_ = nullptr;
    QComboBox* rate_ = nullptr;

    QGroupBox* report_ = nullptr;
    QFormLayout* reportLines_ = nullptr;
    const Result* reported_ = nullptr;

    QGroupBox* result_ = nullptr;
    QProgressBar* meter_ = nullptr;
    QLabel* meterText_ = nullptr;
    QPushButton* takeWhatFits_ = nullptr;
    QLabel* workText_ = nullptr;
    QProgressBar* work_ = nullptr;
    QPushButton* cancel_ = nullptr;

    QGroupBox* handOver_ = nullptr;
    QPushButton* saveFile_ = nullptr;
    QPushButton* saveRecording_ = nullptr;
    QPushButton* drag_ = nullptr;
    QPushButton* send_ = nullptr;
    bool hasPort_ = false;
};

} // namespace studio
